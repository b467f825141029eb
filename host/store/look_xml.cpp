#include "host/store/look_xml.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

#include "host/store/content_names.h"
#include "host/store/xml_reader.h"

namespace vornwout {
namespace {

constexpr std::array<std::string_view, 10> kNames = {
    "bold", "color", "background",  "italic",       "underlined",
    "font", "size",  "font-base64", "color-base64", "background-base64",
};

void writeFlag(XmlWriter& xml, std::string_view name, std::optional<bool> value) {
  if (value) xml.attribute(name, *value ? "true" : "false");
}

std::optional<bool> readFlag(pugi::xml_node node, const char* name) {
  const pugi::xml_attribute attribute = node.attribute(name);
  return attribute ? std::optional(parseFlag(node, attribute)) : std::nullopt;
}

double readSize(pugi::xml_node node) {
  const pugi::xml_attribute attribute = node.attribute("size");
  if (!attribute) return 0;
  const double size = parseDouble(node, attribute.value());
  if (!(size > 0 && size <= kMaxLookSize)) {
    refuseElement(node, "its size is not above 0 and at most 1,000 points");
  }
  return size;
}

TextLook parseLook(pugi::xml_node node) {
  TextLook look;
  look.textColor = textAttribute(node, "color");
  look.backgroundColor = textAttribute(node, "background");
  look.bold = readFlag(node, "bold");
  look.italic = readFlag(node, "italic");
  look.underlined = readFlag(node, "underlined");
  look.font = textAttribute(node, "font");
  look.size = readSize(node);
  return look;
}

}  // namespace

void writeLook(XmlWriter& xml, const SharedLook& look) {
  if (look.empty()) return;
  xml.optionalAttribute("color", look->textColor);
  xml.optionalAttribute("background", look->backgroundColor);
  writeFlag(xml, "bold", look->bold);
  writeFlag(xml, "italic", look->italic);
  writeFlag(xml, "underlined", look->underlined);
  xml.optionalAttribute("font", look->font);
  if (look->size > 0) xml.attribute("size", std::min(look->size, kMaxLookSize));
}

void LookReader::note(pugi::xml_attribute attribute) {
  const std::string_view name = attribute.name();
  if (std::find(kNames.begin(), kNames.end(), name) != kNames.end()) noted_.push_back(attribute);
}

bool LookReader::areNotedAsBefore() const {
  return std::equal(noted_.begin(), noted_.end(), before_.begin(), before_.end(),
                    [](pugi::xml_attribute a, pugi::xml_attribute b) {
                      return std::strcmp(a.name(), b.name()) == 0 &&
                             std::strcmp(a.value(), b.value()) == 0;
                    });
}

SharedLook LookReader::look(pugi::xml_node node) {
  if (noted_.empty()) return {};
  if (!areNotedAsBefore()) {
    look_ = SharedLook(parseLook(node));
    std::swap(before_, noted_);
  }
  noted_.clear();
  return look_;
}

SharedLook LookReader::read(pugi::xml_node node) {
  for (const pugi::xml_attribute attribute : node.attributes()) note(attribute);
  return look(node);
}

}  // namespace vornwout
