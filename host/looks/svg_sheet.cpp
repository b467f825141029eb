#include "host/looks/svg_sheet.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/build/css_filter.h"

namespace vornwout {
namespace {

constexpr std::string_view kBlanks = " \t\r\n\f";
constexpr std::size_t kMaxRules = 200;
/// Rules that say nothing of what an element looks like where it stands still.
constexpr std::array<std::string_view, 5> kColorless = {"@font-face", "@page", "@keyframes",
                                                        "@charset", "@namespace"};
/// States in which nothing is that is only shown.
constexpr std::array<std::string_view, 5> kStates = {":hover", ":focus", ":active", ":target",
                                                     ":focus-visible"};
/// What an element has to be told by.
constexpr std::array<std::string_view, 9> kSeen = {
    "fill", "stroke", "color", "display", "visibility", "opacity", "font", "font-size", "all"};
/// Of one selector; none has more.
constexpr std::size_t kMaxCompounds = 20;

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

/// Behind the brace that closes the one at `open`.
std::size_t endOfBlock(std::string_view css, std::size_t open) {
  int depth = 0;
  for (std::size_t at = open; at < css.size(); ++at) {
    if (css[at] == '{') ++depth;
    if (css[at] == '}' && --depth == 0) return at + 1;
  }
  return css.size();
}

/// Whether the selector waits for a state that never comes.
bool isOfState(std::string_view selector) {
  return std::any_of(kStates.begin(), kStates.end(), [&](std::string_view state) {
    return selector.find(state) != std::string_view::npos;
  });
}

bool isNamePart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
         c == '_' || static_cast<unsigned char>(c) >= 0x80;
}

std::string_view takeName(std::string_view& text) {
  const auto* end = std::find_if_not(text.begin(), text.end(), isNamePart);
  const std::string_view name = text.substr(0, static_cast<std::size_t>(end - text.begin()));
  text.remove_prefix(name.size());
  return name;
}

/// Whether the list of names, with blanks between them, has this one.
bool hasName(std::string_view names, std::string_view wanted) {
  for (std::size_t at = names.find(wanted); at != std::string_view::npos;
       at = names.find(wanted, at + 1)) {
    const std::size_t end = at + wanted.size();
    const bool starts = at == 0 || kBlanks.find(names[at - 1]) != std::string_view::npos;
    const bool ends = end == names.size() || kBlanks.find(names[end]) != std::string_view::npos;
    if (starts && ends) return true;
  }
  return false;
}

}  // namespace

std::vector<SvgDeclaration> parseSvgDeclarations(std::string_view style) {
  std::vector<SvgDeclaration> declarations;
  for (std::size_t at = 0; at < style.size();) {
    const std::size_t end = endOfDeclaration(style, at);
    const std::string_view source = style.substr(at, end - at);
    at = end + 1;
    if (trimmed(source).empty()) continue;
    SvgDeclaration declaration;
    declaration.source = source;
    const std::size_t colon = source.find(':');
    if (colon != std::string_view::npos) {
      declaration.name = asciiLowered(trimmed(source.substr(0, colon)));
      const std::string_view value = source.substr(colon + 1);
      declaration.value = trimmed(value.substr(0, value.find('!')));
    }
    declarations.push_back(std::move(declaration));
  }
  return declarations;
}

std::string_view svgLocalName(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

void SvgSheet::add(std::string_view css) {
  for (css = trimmed(css); !css.empty(); css = trimmed(css)) {
    const std::size_t open = css.find('{');
    if (css.front() == '@') {
      const bool canColor =
          std::none_of(kColorless.begin(), kColorless.end(), [&](std::string_view known) {
            return asciiLowered(css.substr(0, known.size())) == known;
          });
      if (canColor) isWhole_ = false;
      const std::size_t semicolon = css.find(';');
      const bool hasBlock = open != std::string_view::npos && open < semicolon;
      if (!hasBlock && semicolon == std::string_view::npos) return;
      css.remove_prefix(hasBlock ? endOfBlock(css, open) : semicolon + 1);
      continue;
    }
    if (open == std::string_view::npos) {
      isWhole_ = false;
      return;
    }
    const std::size_t end = std::min(css.find('}', open), css.size());
    addRule(css.substr(0, open), css.substr(open + 1, end - open - 1));
    css.remove_prefix(std::min(end + 1, css.size()));
  }
  std::stable_sort(rules_.begin(), rules_.end(),
                   [](const Rule& a, const Rule& b) { return a.weight < b.weight; });
}

void SvgSheet::addRule(std::string_view selectors, std::string_view block) {
  blocks_.push_back(parseSvgDeclarations(block));
  const bool isSeen =
      std::any_of(blocks_.back().begin(), blocks_.back().end(), [](const SvgDeclaration& said) {
        return std::find(kSeen.begin(), kSeen.end(), said.name) != kSeen.end();
      });
  for (std::size_t at = 0; at <= selectors.size();) {
    const std::size_t comma = std::min(selectors.find(',', at), selectors.size());
    const std::string_view selector = selectors.substr(at, comma - at);
    if (rules_.size() >= kMaxRules) isWhole_ = isWhole_ && !isSeen;
    if (rules_.size() < kMaxRules && !isOfState(selector)) {
      const bool wasWhole = isWhole_;
      addSelector(trimmed(selector));
      if (!isSeen) isWhole_ = wasWhole;
    }
    at = comma + 1;
  }
}

void SvgSheet::addSelector(std::string_view selector) {
  Rule rule;
  rule.block = blocks_.size() - 1;
  // A child is taken for any descendant; charts hardly tell one from the other.
  for (selector = trimmed(selector); !selector.empty(); selector = trimmed(selector)) {
    if (selector.front() == '>') {
      selector.remove_prefix(1);
      continue;
    }
    Compound compound;
    const std::size_t before = selector.size();
    if (selector.front() == '*') {
      selector.remove_prefix(1);
    } else {
      compound.type = takeName(selector);
      rule.weight += compound.type.empty() ? 0 : 1;
    }
    while (!selector.empty() && (selector.front() == '.' || selector.front() == '#')) {
      const bool isClass = selector.front() == '.';
      selector.remove_prefix(1);
      const std::string name(takeName(selector));
      if (name.empty()) break;
      if (isClass) {
        compound.classes.push_back(name);
      } else {
        compound.id = name;
      }
      rule.weight += isClass ? 100 : 10'000;
    }
    const bool ends = selector.empty() || selector.front() == '>' ||
                      kBlanks.find(selector.front()) != std::string_view::npos;
    if (!ends || selector.size() == before || rule.compounds.size() == kMaxCompounds) {
      isWhole_ = false;
      return;
    }
    rule.compounds.push_back(std::move(compound));
  }
  if (rule.compounds.empty()) {
    isWhole_ = false;
    return;
  }
  rules_.push_back(std::move(rule));
}

std::vector<const SvgSheet::Declarations*> SvgSheet::matching(pugi::xml_node node) const {
  std::vector<const Declarations*> found;
  for (const Rule& rule : rules_) {
    if (fits(node, rule)) found.push_back(&blocks_[rule.block]);
  }
  return found;
}

bool SvgSheet::fits(pugi::xml_node node, const Compound& compound) {
  if (!compound.type.empty() && svgLocalName(node.name()) != compound.type) return false;
  if (!compound.id.empty() && node.attribute("id").value() != compound.id) return false;
  const std::string_view names = node.attribute("class").value();
  return std::all_of(compound.classes.begin(), compound.classes.end(),
                     [&](const std::string& name) { return hasName(names, name); });
}

bool SvgSheet::fits(pugi::xml_node node, const Rule& rule) {
  if (!fits(node, rule.compounds.back())) return false;
  // The nearest ancestor that fits leaves the most to the others.
  std::size_t left = rule.compounds.size() - 1;
  for (pugi::xml_node outer = node.parent(); left > 0 && outer; outer = outer.parent()) {
    if (fits(outer, rule.compounds[left - 1])) --left;
  }
  return left == 0;
}

}  // namespace vornwout
