// Whether output to a stream is styled, with how many colours, and how wide it may be.
//
// Entry points: readTerminalFacts() asks the system and the environment, chooseStyle() decides;
// they are apart so that every decision can be tested without a terminal.
#pragma once

#include <optional>
#include <string>

namespace vornwout {

/// What the user asked for.
enum class StyleMode { kAuto, kAlways, kNever };

enum class ColorDepth { kNone, k256, kTrueColor };

struct TerminalStyle {
  ColorDepth depth = ColorDepth::kNone;
  int width = 0;  ///< columns; 0 when nothing limits the width
  bool isStyled() const { return depth != ColorDepth::kNone; }
};

/// What is known of the stream and the environment; an unset variable is an empty text, as all
/// rules treat both alike.
struct TerminalFacts {
  bool isTerminal = false;
  int windowColumns = 0;  ///< as the terminal reports it, 0 when it does not
  std::string columns;    ///< COLUMNS
  std::string noColor;    ///< NO_COLOR
  std::string term;       ///< TERM
  std::string colorTerm;  ///< COLORTERM
};

/// "auto", "always" or "never"; nothing for any other text.
std::optional<StyleMode> parseStyleMode(const std::string& text);

TerminalFacts readTerminalFacts(int fileDescriptor);

/// Styles a terminal unless NO_COLOR is set or the terminal is dumb; what the user asked for
/// explicitly comes before both.
TerminalStyle chooseStyle(StyleMode mode, const TerminalFacts& facts);

}  // namespace vornwout
