#include "runner/terminal/style.h"

#include <charconv>
#include <cstdlib>

#include <sys/ioctl.h>
#include <unistd.h>

namespace vornwout {
namespace {

constexpr int kUsualWidth = 80;
constexpr int kLargestWidth = 10'000;

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

/// A whole number of columns from 1 on, 0 for any other text.
int parseColumns(const std::string& text) {
  int columns = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, columns);
  if (error != std::errc() || stop != end || columns < 1 || columns > kLargestWidth) return 0;
  return columns;
}

bool isStyled(StyleMode mode, const TerminalFacts& facts) {
  switch (mode) {
    case StyleMode::kAlways:
      return true;
    case StyleMode::kNever:
      return false;
    case StyleMode::kAuto:
      break;
  }
  return facts.isTerminal && facts.noColor.empty() && facts.term != "dumb";
}

int chooseWidth(const TerminalFacts& facts) {
  // A file or pipe has no columns; what COLUMNS says is about the terminal beside it.
  if (!facts.isTerminal) return 0;
  if (facts.windowColumns > 0) return facts.windowColumns;
  const int columns = parseColumns(facts.columns);
  return columns > 0 ? columns : kUsualWidth;
}

}  // namespace

std::optional<StyleMode> parseStyleMode(const std::string& text) {
  if (text == "auto") return StyleMode::kAuto;
  if (text == "always") return StyleMode::kAlways;
  if (text == "never") return StyleMode::kNever;
  return std::nullopt;
}

TerminalFacts readTerminalFacts(int fileDescriptor) {
  TerminalFacts facts;
  facts.isTerminal = isatty(fileDescriptor) == 1;
  winsize window{};
  if (facts.isTerminal && ioctl(fileDescriptor, TIOCGWINSZ, &window) == 0) {
    facts.windowColumns = window.ws_col;
  }
  facts.columns = variable("COLUMNS");
  facts.noColor = variable("NO_COLOR");
  facts.term = variable("TERM");
  facts.colorTerm = variable("COLORTERM");
  return facts;
}

TerminalStyle chooseStyle(StyleMode mode, const TerminalFacts& facts) {
  TerminalStyle style;
  style.width = chooseWidth(facts);
  if (isStyled(mode, facts)) {
    const bool isTrueColor = facts.colorTerm == "truecolor" || facts.colorTerm == "24bit";
    style.depth = isTrueColor ? ColorDepth::kTrueColor : ColorDepth::k256;
  }
  return style;
}

}  // namespace vornwout
