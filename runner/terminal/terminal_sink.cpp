#include "runner/terminal/terminal_sink.h"

#include <algorithm>
#include <utility>

#include "host/layout/table_grid.h"
#include "platform/text/display_width.h"
#include "runner/terminal/color.h"
#include "runner/terminal/table_printer.h"
#include "runner/terminal/terminal_text.h"

namespace vornwout {
namespace {

constexpr std::string_view kHeading = "1;2";
constexpr std::string_view kRule = "2";
constexpr int kUsualRule = 72;
constexpr int kShortestRule = 2;

}  // namespace

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
  for (const TableGrid& grid : layoutTable(*table)) {
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
  const int width = style_.width > 0 ? style_.width : kUsualRule;
  std::string rule;
  if (shownDocument_) {
    // Two columns of line and a blank before the name, at least as much behind it.
    const int room = std::max(1, width - 2 * (kShortestRule + 1));
    std::vector<std::string> lines = shownLines(shownLine(*shownDocument_), room);
    rule = "── " + lines.front() + (lines.size() > 1 ? "… " : " ");
  }
  rule += repeated("─", width - displayWidth(rule));
  out_ << withStyle(rule, kRule, style_) << '\n';
}

void TerminalSink::showProcedure() {
  if (procedures_.empty() || procedures_.back().id == shownProcedure_) return;
  shownProcedure_ = procedures_.back().id;
  separate();
  for (const std::string& line : shownLines(shownLine(procedures_.back().name), style_.width)) {
    out_ << withStyle(line, kHeading, style_) << '\n';
  }
}

void TerminalSink::separate() {
  if (std::exchange(hasOutput_, true)) out_ << '\n';
}

}  // namespace vornwout
