// The embedded host's output sink: turns what procedures produce into objects of the documents.
//
// Everything goes into the document that is active at the moment it arrives, below one heading per
// procedure and document. A command's log is no output: it is held back until its procedure's first
// output, in front of which it then stands, or until the procedure closes without any, and a log
// alone makes no document. Headings are remembered by the number of their document, never by
// address, because a command may close the document it has written to.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/controller/output_controller.h"
#include "platform/adapter/output_sink.h"

namespace vornwout {

class DocumentSink : public OutputSink {
 public:
  /// `controller` must outlive the sink.
  explicit DocumentSink(OutputController& controller) : controller_(controller) {}

  /// Tells which command comes next and its source text, both UTF-8; called before each command.
  /// The log of a command that had neither a procedure nor output is placed now.
  void setCommandLog(std::string commandName, std::string sourceText);

  /// Tells that objects are gone from the top level of a document: their positions as they were,
  /// ascending.
  void objectsRemoved(int documentNumber, const std::vector<std::size_t>& positions);

  void procedureOpened(const ProcedureRecord& procedure) override;
  void procedureClosed(const ProcedureRecord& procedure) override;
  void parserMessage(const ParserMessageRecord& message) override;
  void outputMessage(const OutputMessageRecord& message) override;
  void table(const std::shared_ptr<const PivotTable>& table) override;
  void note(const NoteRecord& note) override;

 private:
  struct Heading {
    int documentNumber;
    std::size_t position;
  };
  struct Procedure {
    std::string name;
    std::vector<Heading> headings;  ///< one per document that took output of the procedure
  };
  struct Run {
    int documentNumber;
    int run;
  };

  /// The heading of the current procedure in the document that takes output.
  DocumentObject& headingForOutput();
  void addMessage(MessageContent content);
  void placeLogAlone();
  int runIn(Document& document, const std::string& command);
  /// The command's name, or one made from the procedure's where nobody told it.
  std::string commandName(const Procedure& procedure) const;

  OutputController& controller_;
  std::vector<Procedure> procedures_;  ///< the open ones, innermost last
  Procedure outside_;                  ///< what comes while no procedure is open
  std::string command_;
  std::string pendingLog_;
  std::vector<Run> runs_;  ///< of the current command
};

}  // namespace vornwout
