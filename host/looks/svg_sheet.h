// The style sheets within an SVG chart, as far as charts use them: rules for elements by type,
// class and identifier, also below others of these.
//
// Entry points: SvgSheet::add() for the text of each style element, then matching(). Rules that
// are more than that (media, attributes) are passed over, and isWhole() says so, if they colour
// anything: what an element looks like is then not known where nothing else says it. States that
// need a hand, as ":hover" does, are not shown. A sheet of very many rules is
// not read at all, so that the time for an element is bounded.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

namespace vornwout {

/// One property of a rule or a style attribute.
struct SvgDeclaration {
  std::string name;    ///< in lower case, empty for what is none
  std::string value;   ///< without "!important"
  std::string source;  ///< as it stands
};

/// The declarations of a style attribute or between the braces of a rule.
std::vector<SvgDeclaration> parseSvgDeclarations(std::string_view style);

/// The name without a prefix.
std::string_view svgLocalName(std::string_view name);

class SvgSheet {
 public:
  using Declarations = std::vector<SvgDeclaration>;

  void add(std::string_view css);

  /// The declarations of all rules that fit the element, the ones that go before others last.
  std::vector<const Declarations*> matching(pugi::xml_node node) const;

  /// Whether there was nothing that is not understood.
  bool isWhole() const { return isWhole_; }

 private:
  struct Compound {
    std::string type;  ///< empty for any
    std::string id;
    std::vector<std::string> classes;
  };
  struct Rule {
    std::vector<Compound> compounds;  ///< from the outermost to the element itself
    int weight = 0;
    std::size_t block = 0;
  };

  void addRule(std::string_view selectors, std::string_view block);
  void addSelector(std::string_view selector);
  static bool fits(pugi::xml_node node, const Compound& compound);
  static bool fits(pugi::xml_node node, const Rule& rule);

  std::vector<Rule> rules_;  ///< those that go before others last
  std::vector<Declarations> blocks_;
  bool isWhole_ = true;
};

}  // namespace vornwout
