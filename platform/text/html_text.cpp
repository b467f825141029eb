#include "platform/text/html_text.h"

#include <array>
#include <cstddef>
#include <utility>

namespace vornwout {

std::string unescapedHtml(std::string_view text) {
  constexpr std::array<std::pair<std::string_view, char>, 5> kReferences{
      {{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}}};
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const std::string_view rest = text.substr(at);
    std::size_t taken = 1;
    char character = rest.front();
    for (const auto& [reference, meant] : kReferences) {
      if (!rest.starts_with(reference)) continue;
      taken = reference.size();
      character = meant;
    }
    result += character;
    at += taken;
  }
  return result;
}

}  // namespace vornwout
