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
#include "platform/strings/localized.h"
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
    if (length == 0) refuse(localized("line ^1 is not valid UTF-8", lineAt(bytes, i)));
    i += static_cast<std::size_t>(length);
    i += asciiPrefixLength(bytes.substr(i));
  }
}

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

/// What stands between the blanks around it, which XML Schema does not count.
std::string_view withoutBlanksAround(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

/// XML Schema allows a sign also for what is not negative.
std::string_view withoutPlus(std::string_view text) {
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  return text;
}

bool isBlankText(pugi::xml_node node) {
  if (node.type() != pugi::node_pcdata) return false;
  const std::string_view text = node.value();
  return std::all_of(text.begin(), text.end(), isBlank);
}

void dropBlanksBesideElements(pugi::xml_document& document) {
  // Without recursion: how deep a foreign element is, is not known here.
  pugi::xml_node node = document.root();
  while (node) {
    pugi::xml_node next = node.first_child();
    bool hasElement = false;
    for (const pugi::xml_node child : node.children()) {
      hasElement = hasElement || child.type() == pugi::node_element;
    }
    while (hasElement && next) {
      const pugi::xml_node child = next;
      next = child.next_sibling();
      if (isBlankText(child)) node.remove_child(child);
    }
    next = node.first_child();
    while (!next && node) {
      next = node.next_sibling();
      node = node.parent();
    }
    node = next;
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
  const bool isParted = checkXml(bytes, maxNodes);
  // A line end is one line feed, as XML has it: the writer escapes a carriage return that belongs
  // to a text. Blanks between elements cost as much as these, so they are kept only where they may
  // be a piece of a text.
  constexpr unsigned int kFlags =
      pugi::parse_escapes | pugi::parse_cdata | pugi::parse_eol | pugi::parse_wconv_attribute;
  const pugi::xml_parse_result result = document.load_buffer_inplace(
      bytes.data(), bytes.size(),
      kFlags | (isParted ? pugi::parse_ws_pcdata : pugi::parse_ws_pcdata_single),
      pugi::encoding_utf8);
  if (!result) {
    // Parsing in place has moved some bytes, so the line is about right.
    const auto offset = std::min(
        static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, result.offset)), bytes.size());
    std::string reason = result.description();
    if (!reason.empty()) reason[0] = static_cast<char>(std::tolower(reason[0]));
    refuse(localized("near line ^1: ^2", lineAt(bytes, offset), reason));
  }
  if (isParted) dropBlanksBesideElements(document);
}

void refuseElement(pugi::xml_node node, const std::string& what) {
  refuse(fmt::format("{}: {}", node.name(), what));
}

pugi::xml_node rootElement(const pugi::xml_document& document, const char* name) {
  const pugi::xml_node root = document.document_element();
  if (std::strcmp(root.name(), name) != 0) {
    refuse(localized("its element is ^1 where ^2 is expected", root.name(), name));
  }
  if (std::strcmp(root.attribute("xmlns").value(), kDocumentNamespace) != 0) {
    refuseElement(root, localized("its namespace is not ^1", kDocumentNamespace));
  }
  return root;
}

std::string textAttribute(pugi::xml_node node, const char* name) {
  const pugi::xml_attribute plain = node.attribute(name);
  const std::string encoded = std::string(name) + "-base64";
  const pugi::xml_attribute base64 = node.attribute(encoded.c_str());
  if (plain && base64) refuseElement(node, localized("it has ^1 twice", name));
  if (plain) return plain.value();
  return base64 ? decodeBase64(node, base64.value()) : std::string();
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
  const std::string_view text = withoutBlanksAround(attribute.value());
  if (text == "true" || text == "1") return true;
  if (text == "false" || text == "0") return false;
  refuseElement(node, localized("its ^1 is neither true nor false", attribute.name()));
}

double parseDouble(pugi::xml_node node, std::string_view text) {
  double value = 0;
  if (parseNumber(text, value)) return value;
  text = withoutBlanksAround(text);
  if (text == "NaN") return std::numeric_limits<double>::quiet_NaN();
  if (text == "INF") return std::numeric_limits<double>::infinity();
  if (text == "-INF") return -std::numeric_limits<double>::infinity();
  if (!parseNumber(withoutPlus(text), value))
    refuseElement(node, localized("a value is not a number"));
  return value;
}

std::int64_t parseInteger(pugi::xml_node node, std::string_view text, std::int64_t min,
                          std::int64_t max) {
  text = withoutPlus(withoutBlanksAround(text));
  std::int64_t value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size() || value < min ||
      value > max) {
    refuseElement(node, localized("a number is not an integer, or out of bounds"));
  }
  return value;
}

std::string elementText(pugi::xml_node node) {
  const pugi::xml_attribute encoding = node.attribute("encoding");
  if (encoding && std::strcmp(encoding.value(), "base64") != 0) {
    refuseElement(node, localized("its encoding is unknown"));
  }
  std::string joined;
  std::string_view text = node.first_child().value();
  if (node.first_child() != node.last_child() || node.first_child().type() == pugi::node_element) {
    for (const pugi::xml_node child : node.children()) {
      if (child.type() == pugi::node_element) refuseChild(child);
      joined += child.value();
    }
    text = joined;
  }
  return encoding ? decodeBase64(node, text) : std::string(text);
}

void refuseChild(pugi::xml_node child) {
  if (isBlankText(child)) return;
  if (child.type() == pugi::node_element) {
    refuseElement(child.parent(), localized("it holds an element ^1", child.name()));
  }
  refuseElement(child.parent(), localized("it holds a text where none may stand"));
}

std::string decodeBase64(pugi::xml_node node, std::string_view text) {
  if (std::any_of(text.begin(), text.end(), isBlank)) {
    std::string digits(text);
    digits.erase(std::remove_if(digits.begin(), digits.end(), isBlank), digits.end());
    return decodeBase64(node, digits);
  }
  if (text.size() % 4 != 0) refuseElement(node, localized("its base64 is not whole"));
  std::size_t padding = 0;
  while (padding < 2 && padding < text.size() && text[text.size() - 1 - padding] == '=') ++padding;
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3);
  const std::size_t digits = text.size() - padding;
  std::uint32_t group = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int digit = i < digits ? base64Digit(text[i]) : 0;
    if (digit < 0) refuseElement(node, localized("its base64 has other characters"));
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
