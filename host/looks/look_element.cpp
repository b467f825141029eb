#include "host/looks/look_element.h"

#include <algorithm>
#include <set>

#include <fmt/format.h>

#include "host/store/number_text.h"
#include "host/store/store_error.h"
#include "host/store/xml_reader.h"
#include "platform/strings/localized.h"
#include "platform/text/display_width.h"
#include "platform/text/shortened_text.h"

namespace vornwout {
namespace {

constexpr std::size_t kMaxLookNodes = 20'000;
constexpr std::size_t kMaxFontCharacters = 100;
/// Of what a message repeats, at least, and of an element that is not known.
constexpr int kLeastShown = 4;
constexpr int kNameColumns = 15;
constexpr std::size_t kMaxDecimals = 3;
constexpr std::size_t kMaxDigits = 6;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isHexDigit(char c) { return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

/// Whether a family's name can stand in any format that names one. What is not ASCII may: it is
/// valid UTF-8, and no format gives it a meaning, but for the controls and the blank below U+00A1.
bool isFontName(std::string_view name) {
  if (name.empty() || name.front() == ' ') return false;
  std::size_t characters = 0;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char c = name[i];
    const bool isHigh = static_cast<unsigned char>(c) >= 0x80;
    const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    if (!isHigh && !isLetter && !isDigit(c) && c != ' ' && c != '-') return false;
    if (c == '\xC2' && static_cast<unsigned char>(name[i + 1]) <= 0xA0) return false;
    const bool isContinued = (static_cast<unsigned char>(c) & 0xC0) == 0x80;
    if (!isContinued) ++characters;
  }
  return characters <= kMaxFontCharacters;
}

/// Digits, and a point with one to three more; nothing for any other text.
std::optional<double> plainNumber(std::string_view text) {
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::string_view whole = text.substr(0, point);
  const std::string_view decimals = text.substr(std::min(point + 1, text.size()));
  if (whole.empty() || whole.size() > kMaxDigits || decimals.size() > kMaxDecimals ||
      (point < text.size() && decimals.empty()) ||
      !std::all_of(whole.begin(), whole.end(), isDigit) ||
      !std::all_of(decimals.begin(), decimals.end(), isDigit)) {
    return std::nullopt;
  }
  double value = 0;
  return parseNumber(text, value) ? std::optional(value) : std::nullopt;
}

std::string_view withoutBlanksAround(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r\n") + 1 - first);
}

}  // namespace

std::optional<std::string> LookElement::text(const char* attribute) {
  asked_.emplace_back(attribute);
  const pugi::xml_attribute found = node_.attribute(attribute);
  return found ? std::optional<std::string>(found.value()) : std::nullopt;
}

std::string LookElement::color(const char* attribute) {
  std::optional<std::string> given = text(attribute);
  if (!given) return {};
  if (given->size() != 7 || given->front() != '#' ||
      !std::all_of(given->begin() + 1, given->end(), isHexDigit)) {
    refuseValue(attribute, localized("is no #rrggbb"));
  }
  for (char& c : *given) c = c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c;
  return *given;
}

std::string LookElement::requiredColor(const char* attribute) {
  std::string value = color(attribute);
  if (value.empty()) refuse(localized("it has no ^1", attribute));
  return value;
}

std::string LookElement::font(const char* attribute) {
  std::optional<std::string> given = text(attribute);
  if (!given) return {};
  if (!isFontName(*given)) refuseValue(attribute, localized("is no font"));
  return *given;
}

double LookElement::fontSize(const char* attribute) {
  return number(attribute, 0, 0.001, kMaxFontSize);
}

double LookElement::number(const char* attribute, double absent, double min, double max) {
  const std::optional<std::string> given = text(attribute);
  if (!given) return absent;
  const std::optional<double> value = plainNumber(withoutBlanksAround(*given));
  if (!value) refuseValue(attribute, localized("is not allowed"));
  expectWithin(attribute, *value, min, max);
  return *value;
}

int LookElement::integer(const char* attribute, int absent, int min, int max) {
  const std::optional<std::string> given = text(attribute);
  if (!given) return absent;
  const std::string_view digits = withoutBlanksAround(*given);
  const std::optional<double> value = plainNumber(digits);
  if (!value || digits.find('.') != std::string_view::npos) {
    refuseValue(attribute, localized("is not allowed"));
  }
  expectWithin(attribute, *value, min, max);
  return static_cast<int>(*value);
}

std::optional<bool> LookElement::flag(const char* attribute) {
  const std::optional<std::string> given = text(attribute);
  if (!given) return std::nullopt;
  const std::string_view value = withoutBlanksAround(*given);
  if (value == "true" || value == "1") return true;
  if (value == "false" || value == "0") return false;
  refuseValue(attribute, localized("is no flag"));
}

void LookElement::refuseOthers() const {
  for (const pugi::xml_attribute attribute : node_.attributes()) {
    if (std::find(asked_.begin(), asked_.end(), attribute.name()) == asked_.end()) {
      refuse(localized("unknown attribute {}"), attribute.name());
    }
  }
}

void LookElement::readChildren(const std::function<bool(LookElement&)>& read,
                               std::string_view repeated) const {
  std::set<std::string_view> seen;
  for (const pugi::xml_node child : node_.children()) {
    if (child.type() != pugi::node_element) {
      if (withoutBlanksAround(child.value()).empty()) continue;
      refuse(localized("it must not hold a text"));
    }
    LookElement element(child);
    if (element.name() != repeated && !seen.insert(element.name()).second) {
      refuse(localized("it holds {} twice"), element.name());
    }
    if (!read(element)) {
      refuse(localized("unknown element {}"), element.name());
    }
  }
}

void LookElement::refuseRest() const {
  refuseOthers();
  readChildren([](LookElement&) { return false; });
}

void LookElement::refuse(const std::string& what, std::string_view foreign) const {
  constexpr std::string_view kHole = "{}";
  std::string text = fmt::format("{}: {}", textHead(node_.name(), kNameColumns), what);
  if (const std::size_t hole = text.find(kHole); hole != std::string::npos) {
    const int room = kLookReasonColumns - displayWidth(text) + static_cast<int>(kHole.size());
    text.replace(hole, kHole.size(), textHead(foreign, std::max(kLeastShown, room)));
  }
  throw LookError(text);
}

void LookElement::refuseValue(const char* attribute, const std::string& what) const {
  refuse(fmt::format("{} \"{{}}\" {}", attribute, what), node_.attribute(attribute).value());
}

void LookElement::expectWithin(const char* attribute, double value, double min, double max) const {
  if (value < min) refuseValue(attribute, localized("is below ^1", min));
  if (value > max) refuseValue(attribute, localized("is above ^1", max));
}

void parseLook(std::string_view xml, const char* root,
               const std::function<void(LookElement&)>& read) {
  if (xml.size() > kMaxLookBytes) throw LookError(localized("^1: it is larger than 1 MiB", root));
  if (xml.starts_with("\xEF\xBB\xBF")) xml.remove_prefix(3);
  std::string bytes(xml);
  pugi::xml_document document;
  try {
    parseXml(bytes, document, kMaxLookNodes);
  } catch (const StoreError& error) {
    throw LookError(error.what());
  }
  LookElement element(document.document_element());
  if (element.name() != root) {
    element.refuse(localized("^1 is expected", root));
  }
  const std::optional<std::string> version = element.text("version");
  if (version && *version != "1") element.refuse(localized("its version is not known"));
  read(element);
}

}  // namespace vornwout
