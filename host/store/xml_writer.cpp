#include "host/store/xml_writer.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

#include "host/store/number_text.h"
#include "platform/text/xml_text.h"

namespace vornwout {

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
    appendXmlEscaped(out_, value, true);
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
  appendXmlEscaped(out_, value, false);
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
