#include "platform/exportspec/xml_bounds.h"

#include <cstddef>

#include <fmt/format.h>

#include "platform/exportspec/schema_reader.h"

namespace vornwout {
namespace {

constexpr int kMaxDepth = 16;
constexpr int kMaxAttributes = 64;

}  // namespace

void checkXmlBounds(std::string_view xml) {
  if (xml.size() > kMaxXmlBytes) {
    throw XmlError(fmt::format("it is larger than {} MiB", kMaxXmlBytes >> 20U));
  }
  int depth = 0;
  for (std::size_t at = xml.find('<'); at != std::string_view::npos; at = xml.find('<', at)) {
    const std::string_view rest = xml.substr(at);
    if (rest.starts_with("<!--") || rest.starts_with("<?")) {
      // What ends nowhere is left to the parser.
      const std::string_view end = rest[1] == '!' ? "-->" : "?>";
      // Where the end may begin: "<!-->" is no comment, for XML parsers neither.
      at = xml.find(end, at + (rest[1] == '!' ? 4 : 2));
      if (at == std::string_view::npos) return;
      continue;
    }
    if (rest.starts_with("<!")) {
      // A CDATA section has nothing that an export could say.
      throw XmlError("it has a document type declaration or a CDATA section");
    }
    const bool isEnd = rest.starts_with("</");
    int attributes = 0;
    char quote = '\0';
    for (++at; at < xml.size(); ++at) {
      const char c = xml[at];
      if (quote != '\0') {
        if (c == quote) quote = '\0';
      } else if (c == '"' || c == '\'') {
        quote = c;
        ++attributes;
      } else if (c == '>') {
        break;
      }
    }
    if (attributes > kMaxAttributes) throw XmlError("an element has too many attributes");
    if (isEnd) {
      --depth;
    } else if (at < xml.size() && xml[at - 1] != '/' && ++depth > kMaxDepth) {
      throw XmlError("its elements stand too deep in each other");
    }
  }
}

}  // namespace vornwout
