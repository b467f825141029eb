#include "platform/exportspec/xml_text.h"

#include <array>
#include <cstddef>

#include "platform/text/utf8.h"

namespace vornwout {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// Bytes that cannot be copied as they stand; those beyond ASCII are looked at one by one.
constexpr std::array<bool, 256> makeStops() {
  std::array<bool, 256> stops{};
  for (std::size_t i = 0; i < 0x20; ++i) stops[i] = true;
  for (std::size_t i = 0x80; i < 0x100; ++i) stops[i] = true;
  stops['&'] = stops['<'] = stops['>'] = stops['"'] = true;
  return stops;
}
constexpr std::array<bool, 256> kStops = makeStops();

std::string_view replacementOf(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\t':
      return "&#9;";
    case '\n':
      return "&#10;";
    case '\r':
      return "&#13;";
    default:
      return kReplacement;
  }
}

}  // namespace

void appendXmlAttribute(std::string& xml, std::string_view name, std::string_view value) {
  xml += ' ';
  xml += name;
  xml += "=\"";
  std::size_t plain = 0;  // from where on nothing was appended yet
  for (std::size_t i = 0; i < value.size();) {
    if (!kStops[static_cast<unsigned char>(value[i])]) {
      ++i;
      continue;
    }
    const int length = validUtf8Length(value.substr(i));
    const std::string_view character = value.substr(i, 3);
    if (length > 1 && character != "\xEF\xBF\xBE" && character != "\xEF\xBF\xBF") {
      i += static_cast<std::size_t>(length);
      continue;
    }
    xml += value.substr(plain, i - plain);
    xml += replacementOf(value[i]);
    i += length > 0 ? static_cast<std::size_t>(length) : 1;
    plain = i;
  }
  xml += value.substr(plain);
  xml += '"';
}

}  // namespace vornwout
