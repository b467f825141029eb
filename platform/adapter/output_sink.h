// Where output goes: finished tables, notes and messages reach every registered sink as plain data.
//
// Tables, notes and output messages arrive with the English originals of the system's own texts;
// whoever shows them to a person localizes them. Everything that reaches a sink is UTF-8: texts are
// converted from the current encoding when they enter the platform, and a byte that is not valid
// has become U+FFFD. Sinks are called in the order of their registration, on the command thread, at
// the moment a thing happens.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/pivot/cell_text.h"
#include "platform/pivot/pivot_table.h"

namespace vornwout {

/// How bad a message is. The values are those of the message levels.
enum class MessageSeverity { kInformation = 1, kWarning = 2, kError = 3 };

/// Where in a job something stands; lines and columns count from 1, 0 means unknown. A column is a
/// character of the line, whatever its width or length in bytes.
struct SourcePlace {
  int line = 0;
  int column = 0;
  friend bool operator==(const SourcePlace&, const SourcePlace&) = default;
};

/// A place with the bytes of the job's text that stand there.
struct SourceSpot {
  SourcePlace place;
  std::size_t offset = 0;
  std::size_t length = 0;  ///< 0 when the bytes are not known
  friend bool operator==(const SourceSpot&, const SourceSpot&) = default;
};

/// A message about the command's syntax or values, reported through a ParserMessage.
///
/// Its texts have "***" in place of what is secret, so that a sink that knows nothing of secrets
/// gives none away.
struct ParserMessageRecord {
  struct Texts {
    std::vector<std::string> arguments;
    std::string text;
  };

  std::string_view operation;          ///< "WrongValueType"; lives as long as the program
  std::vector<std::string> arguments;  ///< as passed; a list flat; generic ones without the text
  std::string messageTemplate;  ///< generic operations only: the English text with its placeholders
  MessageSeverity severity = MessageSeverity::kError;
  std::string text;                ///< in the current language, as the remedy is
  std::string shortened;           ///< the text with long arguments shortened; empty where none is
  std::optional<Texts> uncovered;  ///< where there are secrets: with them, for who may see them
  std::string_view remedy;         ///< what the user can do about it; lives as long as the program
  SourcePlace place;
  std::size_t offset = 0;  ///< of what the message is about, in bytes of the job's text
  std::size_t length = 0;  ///< 0 when the bytes are not known

  /// The text for a person to read.
  const std::string& briefText() const { return shortened.empty() ? text : shortened; }
};

/// A message written into the output.
struct OutputMessageRecord {
  CellText message;
  int show = 0;
  int level = 0;

  MessageSeverity severity() const;
  /// The message as it is shown, in the current language. A host's refusal without a text says at
  /// least that.
  std::string shownText() const;
  /// The same with long arguments shortened, for a person to read.
  std::string briefText() const;
};

/// A label and a value for the notes of the current procedure.
struct NoteRecord {
  int number = 0;
  CellText label;
  CellText value;
};

/// A procedure: the bracket around the output of one command.
struct ProcedureRecord {
  std::string name;
  int number = 0;
};

/// Takes output. The operations do nothing unless overridden.
class OutputSink {
 public:
  virtual ~OutputSink();
  virtual void procedureOpened(const ProcedureRecord&) {}
  virtual void procedureClosed(const ProcedureRecord&) {}
  virtual void parserMessage(const ParserMessageRecord&) {}
  virtual void outputMessage(const OutputMessageRecord&) {}
  /// Tables arrive finished, in the order in which they were begun.
  virtual void table(const std::shared_ptr<const PivotTable>&) {}
  virtual void note(const NoteRecord&) {}
  virtual void logFlushed() {}
};

/// Registers a sink while it lives.
class SinkRegistration {
 public:
  explicit SinkRegistration(OutputSink& sink);
  ~SinkRegistration();
  SinkRegistration(const SinkRegistration&) = delete;
  SinkRegistration& operator=(const SinkRegistration&) = delete;

 private:
  OutputSink* sink_;
};

/// Turns all sinks off while it lives: what a command would show goes nowhere.
class SinkSuspension {
 public:
  SinkSuspension();
  ~SinkSuspension();
  SinkSuspension(const SinkSuspension&) = delete;
  SinkSuspension& operator=(const SinkSuspension&) = delete;

 private:
  std::vector<OutputSink*> suspended_;
};

/// The registered sinks, in order of registration; what produces output calls each of them.
const std::vector<OutputSink*>& outputSinks();

}  // namespace vornwout

/// Brings the messages of the parser into the log before anything else is produced.
extern "C" void bp_flushlog_();
