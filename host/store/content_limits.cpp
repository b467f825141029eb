#include "host/store/content_limits.h"

#include <algorithm>
#include <array>

#include "host/store/xml_reader.h"

namespace vornwout {
namespace {

constexpr std::array<std::string_view, 6> kCounted = {"run",      "paragraph", "footnote",
                                                      "argument", "item",      "note"};

bool isCounted(std::string_view name) {
  return std::find(kCounted.begin(), kCounted.end(), name) != kCounted.end();
}

}  // namespace

std::size_t textElementCount(std::string_view written) {
  constexpr std::string_view kNameEnds = " />";
  std::size_t count = 0;
  for (std::size_t at = written.find('<'); at != std::string_view::npos;
       at = written.find('<', at + 1)) {
    // The longest of the names, and what ends it.
    const std::string_view tag = written.substr(at + 1, 10);
    if (isCounted(tag.substr(0, tag.find_first_of(kNameEnds)))) ++count;
  }
  return count;
}

void checkTextElements(pugi::xml_node content) {
  // Without recursion: how deep a foreign element is, is not known here.
  std::size_t count = 0;
  pugi::xml_node node = content;
  for (;;) {
    if (isCounted(node.name()) && ++count > kMaxTextElements) {
      refuseElement(content, "it holds more than 1,000,000 runs, footnotes and the like");
    }
    if (const pugi::xml_node child = node.first_child()) {
      node = child;
      continue;
    }
    while (node != content && !node.next_sibling()) node = node.parent();
    if (node == content) return;
    node = node.next_sibling();
  }
}

}  // namespace vornwout
