#include "runner/terminal/heading_line.h"

#include <algorithm>
#include <vector>

#include "platform/text/display_width.h"
#include "runner/terminal/color.h"
#include "runner/terminal/terminal_text.h"

namespace vornwout {
namespace {

constexpr std::string_view kHeading = "1;2";
constexpr std::string_view kRule = "2";
constexpr int kUsualRule = 72;
constexpr int kShortestRule = 2;

}  // namespace

void printRule(std::ostream& out, std::string_view name, const TerminalStyle& style) {
  const int width = style.width > 0 ? style.width : kUsualRule;
  std::string rule;
  if (!name.empty()) {
    // Two columns of line and a blank before the name, at least as much behind it.
    const int room = std::max(1, width - 2 * (kShortestRule + 1));
    std::vector<std::string> lines = shownLines(shownLine(name), room);
    rule = "── " + lines.front() + (lines.size() > 1 ? "… " : " ");
  }
  rule += repeated("─", width - displayWidth(rule));
  out << withStyle(rule, kRule, style) << '\n';
}

void printHeading(std::ostream& out, std::string_view text, const TerminalStyle& style) {
  for (const std::string& line : shownLines(shownLine(text), style.width)) {
    out << withStyle(line, kHeading, style) << '\n';
  }
}

}  // namespace vornwout
