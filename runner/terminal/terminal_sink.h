// Shows output on a terminal as it is produced: tables below a heading for their procedure.
//
// A procedure without tables shows nothing. Where the document that takes the output is another one
// than before, a rule names it. Messages are not shown here, for they go where errors go; see
// diagnostics.h.
#pragma once

#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "platform/adapter/output_sink.h"
#include "runner/terminal/style.h"

namespace vornwout {

class TerminalSink : public OutputSink {
 public:
  /// What to call the document that takes output, nothing where that needs no mention.
  using DocumentLabel = std::function<std::optional<std::string>()>;

  /// `out` must outlive the sink; a failure of writing is left in its state. `documentLabel` may be
  /// empty. A sink that makes documents is registered before this one.
  TerminalSink(std::ostream& out, const TerminalStyle& style, DocumentLabel documentLabel);

  void procedureOpened(const ProcedureRecord& procedure) override;
  void procedureClosed(const ProcedureRecord& procedure) override;
  void table(const std::shared_ptr<const PivotTable>& table) override;

 private:
  struct Procedure {
    std::string name;
    int id;
  };

  void showDocument();
  void showProcedure();
  void separate();

  std::ostream& out_;
  TerminalStyle style_;
  DocumentLabel documentLabel_;
  std::vector<Procedure> procedures_;
  int lastId_ = 0;
  int shownProcedure_ = 0;  ///< the one whose heading stands above what was shown last
  std::optional<std::string> shownDocument_;
  bool hasOutput_ = false;
};

}  // namespace vornwout
