#include "runner/terminal/terminal_text.h"

#include <algorithm>
#include <limits>

#include "platform/text/display_width.h"

namespace vornwout {

std::vector<std::string> shownLines(const std::string& shown, int columns) {
  return wrapToWidth(shown, columns > 0 ? columns : std::numeric_limits<int>::max());
}

std::string cutLine(const std::string& line, int columns) {
  if (displayWidth(line) <= columns) return line;
  if (columns <= 0) return {};
  std::string kept = wrapToWidth(line, std::max(1, columns - 1)).front();
  // A character of two columns may not fit beside the ellipsis.
  if (displayWidth(kept) > columns - 1) kept.clear();
  return kept + "…";
}

std::string repeated(std::string_view text, int times) {
  std::string result;
  for (int i = 0; i < times; ++i) result += text;
  return result;
}

}  // namespace vornwout
