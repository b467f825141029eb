#include "host/store/xml_reader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

#include <fmt/format.h>

#include "host/store/content_names.h"
#include "host/store/number_text.h"
#include "host/store/store_error.h"
#include "host/store/xml_check.h"
#include "platform/text/utf8.h"

namespace vornwout {
namespace {

[[noreturn]] void refuse(const std::string& reason) {
  throw StoreError(StoreError::Kind::kDamaged, reason);
}

std::size_t lineAt(std::string_view bytes, std::size_t offset) {
  const std::string_view before = bytes.substr(0, offset);
  return 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
}

void checkUtf8(std::string_view bytes) {
  for (std::size_t i = asciiPrefixLength(bytes); i < bytes.size();) {
    const int length = validUtf8Length(bytes.substr(i));
    if (length == 0) refuse(fmt::format("line {} is not valid UTF-8", lineAt(bytes, i)));
    i += static_cast<std::size_t>(length);
    i += asciiPrefixLength(bytes.substr(i));
  }
}

int base64Digit(char c) {
  if (c >= 'A' && c <= 'Z') return c - 'A';
  if (c >= 'a' && c <= 'z') return c - 'a' + 26;
  if (c >= '0' && c <= '9') return c - '0' + 52;
  if (c == '+') return 62;
  return c == '/' ? 63 : -1;
}

}  // namespace

void parseXml(std::string& bytes, pugi::xml_document& document, std::size_t maxNodes) {
  checkUtf8(bytes);
  checkXml(bytes, maxNodes);
  // Line ends stay as they are: the writer escapes a carriage return that belongs to a text. A text
  // of blanks alone counts only where nothing else stands beside it.
  constexpr unsigned int kFlags =
      pugi::parse_escapes | pugi::parse_cdata | pugi::parse_ws_pcdata_single;
  const pugi::xml_parse_result result =
      document.load_buffer_inplace(bytes.data(), bytes.size(), kFlags, pugi::encoding_utf8);
  if (!result) {
    // Parsing in place has put zeros among the bytes but moved no line break before the place.
    const auto offset = std::min(
        static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, result.offset)), bytes.size());
    std::string reason = result.description();
    if (!reason.empty()) reason[0] = static_cast<char>(std::tolower(reason[0]));
    refuse(fmt::format("near line {}: {}", lineAt(bytes, offset), reason));
  }
}

void refuseElement(pugi::xml_node node, const std::string& what) {
  refuse(fmt::format("{}: {}", node.name(), what));
}

pugi::xml_node rootElement(const pugi::xml_document& document, const char* name) {
  const pugi::xml_node root = document.document_element();
  if (std::strcmp(root.name(), name) != 0) {
    refuse(fmt::format("its element is {} where {} is expected", root.name(), name));
  }
  if (std::strcmp(root.attribute("xmlns").value(), kDocumentNamespace) != 0) {
    refuseElement(root, fmt::format("its namespace is not {}", kDocumentNamespace));
  }
  return root;
}

std::string textAttribute(pugi::xml_node node, const char* name) {
  if (const pugi::xml_attribute plain = node.attribute(name)) return plain.value();
  const std::string encoded = std::string(name) + "-base64";
  if (const pugi::xml_attribute base64 = node.attribute(encoded.c_str())) {
    return decodeBase64(node, base64.value());
  }
  return {};
}

bool flagAttribute(pugi::xml_node node, const char* name, bool absent) {
  const pugi::xml_attribute attribute = node.attribute(name);
  return attribute ? parseFlag(node, attribute) : absent;
}

std::int64_t integerAttribute(pugi::xml_node node, const char* name, std::int64_t absent,
                              std::int64_t min, std::int64_t max) {
  const pugi::xml_attribute attribute = node.attribute(name);
  return attribute ? parseInteger(node, attribute.value(), min, max) : absent;
}

bool parseFlag(pugi::xml_node node, pugi::xml_attribute attribute) {
  if (std::strcmp(attribute.value(), "true") == 0) return true;
  if (std::strcmp(attribute.value(), "false") == 0) return false;
  refuseElement(node, fmt::format("its {} is neither true nor false", attribute.name()));
}

double parseDouble(pugi::xml_node node, std::string_view text) {
  if (text == "NaN") return std::numeric_limits<double>::quiet_NaN();
  if (text == "INF") return std::numeric_limits<double>::infinity();
  if (text == "-INF") return -std::numeric_limits<double>::infinity();
  const std::optional<double> value = parseNumber(text);
  if (!value) refuseElement(node, "a value is not a number");
  return *value;
}

std::int64_t parseInteger(pugi::xml_node node, std::string_view text, std::int64_t min,
                          std::int64_t max) {
  std::int64_t value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size() || value < min ||
      value > max) {
    refuseElement(node, "a number is not an integer, or out of bounds");
  }
  return value;
}

std::string elementText(pugi::xml_node node) {
  const pugi::xml_attribute encoding = node.attribute("encoding");
  if (!encoding) return node.text().get();
  if (std::strcmp(encoding.value(), "base64") != 0) refuseElement(node, "its encoding is unknown");
  return decodeBase64(node, node.text().get());
}

std::string decodeBase64(pugi::xml_node node, std::string_view text) {
  if (text.size() % 4 != 0) refuseElement(node, "its base64 is not whole");
  std::size_t padding = 0;
  while (padding < 2 && padding < text.size() && text[text.size() - 1 - padding] == '=') ++padding;
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3);
  const std::size_t digits = text.size() - padding;
  std::uint32_t group = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int digit = i < digits ? base64Digit(text[i]) : 0;
    if (digit < 0) refuseElement(node, "its base64 has other characters");
    group = (group << 6) | static_cast<std::uint32_t>(digit);
    if (i % 4 != 3) continue;
    bytes += static_cast<char>(group >> 16);
    bytes += static_cast<char>(group >> 8);
    bytes += static_cast<char>(group);
    group = 0;
  }
  bytes.resize(bytes.size() - padding);
  return bytes;
}

}  // namespace vornwout
