#include "runner/terminal/terminal_text.h"

#include <algorithm>
#include <limits>

#include "platform/text/display_width.h"

namespace vornwout {
namespace {

/// The bytes of a line that are looked at: marks without width may be piled up without limit.
std::size_t mostBytes(int columns) {
  return 1024 + 16 * static_cast<std::size_t>(std::max(0, columns));
}

/// The start of a line of which something will be missing, with an ellipsis.
std::string cutStart(const std::string& line, int columns) {
  if (columns <= 0) return {};
  std::string kept = wrapToWidth(line, std::max(1, columns - 1)).front();
  // A character of two columns may not fit beside the ellipsis.
  if (displayWidth(kept) > columns - 1) kept.clear();
  return kept + "…";
}

}  // namespace

std::string_view startOf(std::string_view utf8, std::size_t bytes) {
  if (utf8.size() <= bytes) return utf8;
  // Bytes that continue nothing are no characters, however many there are.
  constexpr std::size_t kLongestCharacter = 4;
  std::size_t end = bytes;
  while (end > 0 && bytes - end < kLongestCharacter &&
         (static_cast<unsigned char>(utf8[end]) & 0xC0) == 0x80) {
    --end;
  }
  return utf8.substr(0, end);
}

std::string shownStart(std::string_view utf8, int columns) {
  const std::string_view start = startOf(utf8, mostBytes(columns));
  const std::string line = shownLine(start);
  return start.size() < utf8.size() ? cutStart(line, columns) : cutLine(line, columns);
}

std::vector<std::string> shownLines(const std::string& shown, int columns) {
  return wrapToWidth(shown, columns > 0 ? columns : std::numeric_limits<int>::max());
}

std::string cutLine(const std::string& line, int columns) {
  const std::string_view start = startOf(line, mostBytes(columns));
  if (start.size() < line.size()) return cutStart(std::string(start), columns);
  return displayWidth(line) <= columns ? line : cutStart(line, columns);
}

std::string repeated(std::string_view text, int times) {
  std::string result;
  for (int i = 0; i < times; ++i) result += text;
  return result;
}

}  // namespace vornwout
