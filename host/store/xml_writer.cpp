#include "host/store/xml_writer.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

#include "host/store/number_text.h"
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

/// Whether XML can hold the text: no control characters, valid UTF-8, no noncharacter at the end of
/// the first plane.
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

void appendEscaped(std::string& out, std::string_view text, bool inAttribute) {
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

}  // namespace

void appendBase64(std::string& out, std::string_view bytes) {
  static constexpr char kDigits[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const auto byteAt = [&](std::size_t i) {
    return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0u;
  };
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::uint32_t group = (byteAt(i) << 16) | (byteAt(i + 1) << 8) | byteAt(i + 2);
    out += kDigits[group >> 18];
    out += kDigits[(group >> 12) & 63];
    out += i + 1 < bytes.size() ? kDigits[(group >> 6) & 63] : '=';
    out += i + 2 < bytes.size() ? kDigits[group & 63] : '=';
  }
}

void XmlWriter::start(std::string_view name) {
  close();
  out_ += '<';
  out_ += name;
  isOpen_ = true;
}

void XmlWriter::end(std::string_view name) {
  if (isOpen_) {
    out_ += "/>";
    isOpen_ = false;
    return;
  }
  out_ += "</";
  out_ += name;
  out_ += '>';
}

void XmlWriter::attribute(std::string_view name, std::string_view value) {
  if (!isXmlText(value)) {
    beginAttribute(std::string(name) + "-base64");
    appendBase64(out_, value);
  } else {
    beginAttribute(name);
    appendEscaped(out_, value, true);
  }
  out_ += '"';
}

void XmlWriter::attribute(std::string_view name, std::int64_t value) {
  std::array<char, 24> digits;
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  beginAttribute(name);
  out_.append(digits.data(), result.ptr);
  out_ += '"';
}

void XmlWriter::attribute(std::string_view name, std::span<const int> values) {
  beginAttribute(name);
  std::array<char, 12> digits;
  const char* separator = "";
  for (const int value : values) {
    out_ += separator;
    separator = " ";
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    out_.append(digits.data(), result.ptr);
  }
  out_ += '"';
}

void XmlWriter::attribute(std::string_view name, double value) {
  beginAttribute(name);
  if (std::isnan(value)) {
    out_ += "NaN";
  } else if (std::isinf(value)) {
    out_ += value < 0 ? "-INF" : "INF";
  } else {
    appendNumber(out_, value);
  }
  out_ += '"';
}

void XmlWriter::text(std::string_view value) {
  if (value.empty()) return;
  if (!isXmlText(value)) {
    bytes(value);
    return;
  }
  close();
  appendEscaped(out_, value, false);
}

void XmlWriter::bytes(std::string_view value) {
  attribute("encoding", "base64");
  close();
  appendBase64(out_, value);
}

void XmlWriter::raw(std::string_view xml) {
  close();
  out_ += xml;
}

void XmlWriter::newLine() {
  close();
  out_ += '\n';
}

void XmlWriter::close() {
  if (isOpen_) out_ += '>';
  isOpen_ = false;
}

void XmlWriter::beginAttribute(std::string_view name) {
  out_ += ' ';
  out_ += name;
  out_ += "=\"";
}

}  // namespace vornwout
