// Writes what happens in a run as a trace: one JSON object per line, UTF-8, in the order of events.
//
// As an output sink the writer sees procedures, tables, notes and messages; what passes between the
// commands and the host is reported to it by a TracingAdapter, and the calls of the entries by
// whoever makes them. A line is handed to the system as a whole before the event's operation
// returns, so that a crash loses nothing that was reported. The first field of every line is
// "event"; the others stand in a fixed order.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

#include "platform/adapter/controller_messages.h"
#include "platform/adapter/output_sink.h"

namespace vornwout {

/// Writes a trace.
///
/// A failure to write does not disturb the run: the trace ends there, for a trace with a gap would
/// mislead, and failed() and error() tell of it.
class TraceWriter : public OutputSink {
 public:
  enum class Secrets {
    kHidden,
    kShown
  };  ///< whether passwords are written or "***" in their place

  /// Writes to `stream`, which must outlive the writer.
  explicit TraceWriter(std::ostream& stream, Secrets secrets = Secrets::kHidden);
  /// Writes to an open file, which stays the caller's.
  explicit TraceWriter(int fileDescriptor, Secrets secrets = Secrets::kHidden);

  /// An entry is about to be called; `line` is the first line of the command in its job. Names and
  /// commands are ASCII.
  void enter(std::string_view entry, std::string_view command, int line);
  /// The entry's call has returned.
  void leave(std::string_view entry, std::string_view command, int line);
  /// The host's unwind exception left the entry; takes the place of leave().
  void unwind(std::string_view entry);

  /// A request goes to the output controller; its texts are in the current encoding.
  void request(const VornwMsgOutputControllerRequest& request);
  /// An XML document goes to the host.
  void modify(std::string_view xml);
  void exportXml(std::string_view xml);

  void procedureOpened(const ProcedureRecord& procedure) override;
  void parserMessage(const ParserMessageRecord& message) override;
  void outputMessage(const OutputMessageRecord& message) override;
  void table(const std::shared_ptr<const PivotTable>& table) override;
  void note(const NoteRecord& note) override;
  void logFlushed() override;

  /// True once a line could not be written; nothing was written since.
  bool failed() const { return !error_.empty(); }
  /// Why, empty while nothing failed.
  const std::string& error() const { return error_; }

 private:
  friend class TraceLine;

  /// Writes one line; gives the reason of a failure, empty for success.
  using Output = std::function<std::string(std::string_view line)>;

  void write(std::string_view line);

  Output output_;
  Secrets secrets_;
  std::string error_;
};

}  // namespace vornwout
