#include "host/looks/svg_uses.h"

#include <algorithm>
#include <initializer_list>

#include "host/looks/svg_style.h"

namespace vornwout {
namespace {

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

bool isElement(pugi::xml_node node) { return node.type() == pugi::node_element; }

constexpr int kMaxMaskDepth = 8;

/// The identifier that a `use` refers to, within the chart.
std::string_view targetOf(pugi::xml_node use) {
  for (const pugi::xml_attribute attribute : use.attributes()) {
    if (svgLocalName(attribute.name()) != "href") continue;
    const std::string_view target = attribute.value();
    if (target.starts_with('#')) return target.substr(1);
  }
  return {};
}

}  // namespace

bool isSvgShapeName(std::string_view localName) {
  return isOneOf(localName, {"path", "rect", "circle", "ellipse", "line", "polyline", "polygon"});
}

void SvgUses::note(pugi::xml_node node) {
  if (const pugi::xml_attribute id = node.attribute("id")) {
    if (identified_.emplace(id.value(), node).second) order_.emplace_back(id.value());
  }
  if (svgLocalName(node.name()) != "use") return;
  const std::string_view target = targetOf(node);
  if (target.empty()) return;
  used_.insert(target);
  // Within a group of it, too; more depth no mask has.
  pugi::xml_node outer = node.parent();
  for (int i = 0; i < kMaxMaskDepth && outer; ++i, outer = outer.parent()) {
    if (svgLocalName(outer.name()) == "mask") masks_.insert(target);
  }
}

void SvgUses::settle() {
  for (const std::string_view id : order_) {
    // Something that is used within itself leaves nothing open there.
    if (used_.count(id) == 0 || !openInks_.try_emplace(id).second) continue;
    const SvgOpenInks open = openInksWithin(identified_.at(id));
    openInks_[id] = open;
  }
}

pugi::xml_node SvgUses::elementOf(std::string_view id) const {
  const auto found = identified_.find(id);
  return found == identified_.end() ? pugi::xml_node() : found->second;
}

std::string_view SvgUses::lastingIdentifier(std::string_view id) const {
  const auto found = identified_.find(id);
  return found == identified_.end() ? std::string_view() : found->first;
}

SvgGlyph SvgUses::glyphOf(pugi::xml_node use) const {
  const std::string_view target = targetOf(use);
  if (target.find("glyph") != std::string_view::npos) return SvgGlyph::kNamed;
  pugi::xml_node drawn = elementOf(target);
  if (!drawn) return SvgGlyph::kNone;
  const SvgProperties properties(use, &sheet_);
  if (properties.get("fill") || properties.get("stroke")) return SvgGlyph::kNone;
  if (svgLocalName(drawn.name()) == "symbol" && isBare(drawn)) {
    drawn = drawn.find_child(isElement);
    for (pugi::xml_node next = drawn.next_sibling(); next; next = next.next_sibling()) {
      if (isElement(next)) return SvgGlyph::kNone;
    }
  }
  const bool isPath = svgLocalName(drawn.name()) == "path";
  return isPath && isBare(drawn) ? SvgGlyph::kBare : SvgGlyph::kNone;
}

SvgOpenInks SvgUses::openInksOf(pugi::xml_node use) const {
  const auto found = openInks_.find(targetOf(use));
  return found == openInks_.end() ? SvgOpenInks() : found->second;
}

SvgOpenInks SvgUses::openInksWithin(pugi::xml_node node) {
  const std::string_view name = svgLocalName(node.name());
  SvgOpenInks open;
  if (name == "text") {
    open.text = true;
  } else if (name == "use") {
    open = openInksOf(node);
  } else if (isSvgShapeName(name)) {
    open.fill = name != "line";
    open.stroke = true;
  } else if (isOneOf(name, {"svg", "g", "a", "switch", "symbol"})) {
    for (const pugi::xml_node child : node.children()) {
      if (!isElement(child) || svgLocalName(child.name()) == "symbol") continue;
      const std::string_view id = child.attribute("id").value();
      const bool isTarget = used_.count(id) > 0 && identified_.at(id) == child;
      const auto known = isTarget ? openInks_.find(id) : openInks_.end();
      const SvgOpenInks inner = known == openInks_.end() ? openInksWithin(child) : known->second;
      if (isTarget) openInks_.try_emplace(id, inner);
      open.fill = open.fill || inner.fill;
      open.stroke = open.stroke || inner.stroke;
      open.text = open.text || inner.text;
    }
  } else {
    return open;
  }
  const SvgProperties properties(node, &sheet_);
  if (properties.get("fill")) open.fill = open.text = false;
  if (properties.get("stroke")) open.stroke = false;
  return open;
}

/// Whether an element leaves it to others what it is drawn with.
bool SvgUses::isBare(pugi::xml_node node) const {
  const SvgProperties properties(node, &sheet_);
  return !properties.get("fill") && properties.get("stroke").value_or("none") == "none";
}

}  // namespace vornwout
