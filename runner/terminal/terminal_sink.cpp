#include "runner/terminal/terminal_sink.h"

#include <stdexcept>
#include <utility>
#include <vector>

#include "host/layout/table_grid.h"
#include "platform/pivot/localized_content.h"
#include "platform/strings/localized.h"
#include "runner/terminal/content_printer.h"
#include "runner/terminal/heading_line.h"
#include "runner/terminal/table_printer.h"

namespace vornwout {

TerminalSink::TerminalSink(std::ostream& out, const TerminalStyle& style,
                           DocumentLabel documentLabel)
    : out_(out), style_(style), documentLabel_(std::move(documentLabel)) {}

void TerminalSink::procedureOpened(const ProcedureRecord& procedure) {
  procedures_.push_back({procedure.name, ++lastId_});
}

void TerminalSink::procedureClosed(const ProcedureRecord&) {
  if (!procedures_.empty()) procedures_.pop_back();
}

void TerminalSink::table(const std::shared_ptr<const PivotTable>& table) {
  showDocument();
  showProcedure();
  std::vector<TableGrid> grids;
  try {
    grids = layoutTable(*localizedTable(table));
  } catch (const std::logic_error& error) {
    separate();
    printRefusal(out_, localized("This table cannot be shown: ^1.", error.what()), style_);
  }
  for (const TableGrid& grid : grids) {
    separate();
    printTable(out_, grid, style_);
  }
  out_.flush();
}

void TerminalSink::showDocument() {
  std::optional<std::string> label = documentLabel_ ? documentLabel_() : std::nullopt;
  if (label == shownDocument_) return;
  shownDocument_ = std::move(label);
  shownProcedure_ = 0;
  separate();
  printRule(out_, shownDocument_.value_or(std::string()), style_);
}

void TerminalSink::showProcedure() {
  if (procedures_.empty() || procedures_.back().id == shownProcedure_) return;
  shownProcedure_ = procedures_.back().id;
  separate();
  printHeading(out_, procedures_.back().name, style_);
}

void TerminalSink::separate() {
  if (std::exchange(hasOutput_, true)) out_ << '\n';
}

}  // namespace vornwout
