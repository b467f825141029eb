#include "platform/text/shown_text.h"

#include <algorithm>

#include "platform/text/display_width.h"

namespace vornwout {

std::string shownText(std::string_view utf8) {
  std::string text;
  text.reserve(utf8.size());
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    if (utf8[i] == '\r' && i + 1 < utf8.size() && utf8[i + 1] == '\n') continue;
    text += utf8[i];
  }
  return sanitizeForTerminal(text, NewlineHandling::kKeep);
}

std::string shownLine(std::string_view utf8) {
  std::string text = shownText(utf8);
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

int widestLine(std::string_view shown) {
  int widest = 0;
  for (std::size_t start = 0; start <= shown.size();) {
    const std::size_t end = std::min(shown.find('\n', start), shown.size());
    widest = std::max(widest, displayWidth(shown.substr(start, end - start)));
    start = end + 1;
  }
  return widest;
}

}  // namespace vornwout
