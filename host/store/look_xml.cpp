#include "host/store/look_xml.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

#include "host/store/content_names.h"
#include "host/store/xml_reader.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

constexpr std::array<std::string_view, 10> kNames = {
    "bold", "color", "background",  "italic",       "underlined",
    "font", "size",  "font-base64", "color-base64", "background-base64",
};

void writeFlag(XmlWriter& xml, std::string_view name, std::optional<bool> value) {
  if (value) xml.attribute(name, *value ? "true" : "false");
}

double parseSize(pugi::xml_node node, pugi::xml_attribute attribute) {
  const double size = parseDouble(node, attribute.value());
  if (!(size > 0 && size <= kMaxLookSize)) {
    refuseElement(node, localized("its size is not above 0 and at most 1,000 points"));
  }
  return size;
}

/// Takes one of the attributes; those of a text come under either of their names.
void readInto(TextLook& look, pugi::xml_node node, pugi::xml_attribute attribute) {
  const std::string_view name = attribute.name();
  if (name == "bold") {
    look.bold = parseFlag(node, attribute);
  } else if (name == "italic") {
    look.italic = parseFlag(node, attribute);
  } else if (name == "underlined") {
    look.underlined = parseFlag(node, attribute);
  } else if (name == "size") {
    look.size = parseSize(node, attribute);
  } else if (name.starts_with("color")) {
    look.textColor = textAttribute(node, "color");
  } else if (name.starts_with("background")) {
    look.backgroundColor = textAttribute(node, "background");
  } else {
    look.font = textAttribute(node, "font");
  }
}

bool areSame(const std::vector<pugi::xml_attribute>& left,
             const std::vector<pugi::xml_attribute>& right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](pugi::xml_attribute a, pugi::xml_attribute b) {
                      return std::strcmp(a.name(), b.name()) == 0 &&
                             std::strcmp(a.value(), b.value()) == 0;
                    });
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

SharedLook LookReader::look(pugi::xml_node node) {
  if (noted_.empty()) return {};
  // From the look that was given last on: looks that take turns come in the order in which they
  // came first.
  for (std::size_t i = 0; i < known_.size(); ++i) {
    const std::size_t index = (last_ + i) % known_.size();
    if (!areSame(noted_, known_[index].attributes)) continue;
    noted_.clear();
    last_ = index;
    return known_[index].look;
  }
  TextLook look;
  for (const pugi::xml_attribute attribute : noted_) readInto(look, node, attribute);
  last_ = made_++ % kKept;
  if (known_.size() < kKept) known_.emplace_back();
  Known& known = known_[last_];
  known.look = SharedLook(std::move(look));
  known.attributes.swap(noted_);
  noted_.clear();
  return known.look;
}

SharedLook LookReader::read(pugi::xml_node node) {
  for (const pugi::xml_attribute attribute : node.attributes()) note(attribute);
  return look(node);
}

}  // namespace vornwout
