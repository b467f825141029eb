#include "platform/text/xml_text.h"

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/text/utf8.h"

namespace vornwout {
namespace {

/// What a byte is to the escaper.
enum class ByteClass : std::uint8_t {
  kPlain,
  kMarkup,     ///< & < >
  kQuote,      ///< escaped in attributes only
  kBlank,      ///< tab, line feed: escaped in attributes only
  kReturn,     ///< escaped everywhere
  kForbidden,  ///< has no place in XML
  kHigh,       ///< part of a longer character, which is looked at
};

constexpr std::array<ByteClass, 256> makeClasses() {
  std::array<ByteClass, 256> classes{};
  for (std::size_t i = 0; i < 0x20; ++i) classes[i] = ByteClass::kForbidden;
  for (std::size_t i = 0x80; i < 0x100; ++i) classes[i] = ByteClass::kHigh;
  classes['\t'] = classes['\n'] = ByteClass::kBlank;
  classes['\r'] = ByteClass::kReturn;
  classes['&'] = classes['<'] = classes['>'] = ByteClass::kMarkup;
  classes['"'] = ByteClass::kQuote;
  return classes;
}

constexpr std::array<ByteClass, 256> kClasses = makeClasses();

ByteClass classOf(char c) { return kClasses[static_cast<unsigned char>(c)]; }

std::string_view escapeOf(char c) {
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
    default:
      return "&#13;";
  }
}

/// The text with U+FFFD for what XML cannot hold.
std::string xmlText(std::string_view text) {
  std::string held;
  while (!text.empty()) {
    const int length = validUtf8Length(text);
    const std::string_view character =
        text.substr(0, length == 0 ? 1 : static_cast<std::size_t>(length));
    held += isXmlText(character) ? character : std::string_view("\xEF\xBF\xBD");
    text.remove_prefix(character.size());
  }
  return held;
}

}  // namespace

bool isXmlText(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const ByteClass byteClass = classOf(text[i]);
    if (byteClass == ByteClass::kForbidden) return false;
    if (byteClass != ByteClass::kHigh) {
      ++i;
      continue;
    }
    const std::string_view rest = text.substr(i);
    const int length = validUtf8Length(rest);
    if (length == 0) return false;
    const char32_t codePoint = utf8CodePoint(rest, length);
    if (codePoint == 0xFFFE || codePoint == 0xFFFF) return false;
    i += static_cast<std::size_t>(length);
  }
  return true;
}

void appendXmlEscaped(std::string& out, std::string_view text, bool inAttribute) {
  std::size_t done = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const ByteClass byteClass = classOf(text[i]);
    if (byteClass == ByteClass::kPlain || byteClass == ByteClass::kHigh) continue;
    if (!inAttribute && (byteClass == ByteClass::kQuote || byteClass == ByteClass::kBlank))
      continue;
    out.append(text, done, i - done);
    out += escapeOf(text[i]);
    done = i + 1;
  }
  out.append(text, done, text.size() - done);
}

void appendXmlAttribute(std::string& out, std::string_view name, std::string_view value) {
  out += ' ';
  out += name;
  out += "=\"";
  if (isXmlText(value)) {
    appendXmlEscaped(out, value, true);
  } else {
    appendXmlEscaped(out, xmlText(value), true);
  }
  out += '"';
}

}  // namespace vornwout
