// Reads one element of a table look, a chart template or a style sheet, which anybody may have
// written, strictly: what is not asked for is refused.
//
// Entry points: parseLook() for the whole text, then LookElement for what stands in it. A reader
// asks for every attribute that an element may have and calls refuseOthers(), or refuseRest() where
// nothing stands below; children go through readChildren(), which refuses texts, unknown elements,
// and an element that stands twice. Values are what docs/table-look.xsd and docs/chart-template.xsd
// allow. All refusals are LookErrors that name the element.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <pugixml.hpp>

#include "platform/strings/localized.h"

namespace vornwout {

/// What a refusal of a look takes at most: before it stands which look it is about, and messages
/// show 80 columns of both.
inline constexpr int kLookReasonColumns = 43;

/// Why a look cannot be used, without a period, the element first; at most kLookReasonColumns.
class LookError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

inline constexpr std::size_t kMaxLookBytes = std::size_t{1} << 20;
inline constexpr double kMaxFontSize = 1000;  ///< points

class LookElement {
 public:
  explicit LookElement(pugi::xml_node node) : node_(node) {}

  std::string_view name() const { return node_.name(); }

  /// The attribute's text; nothing when it is absent.
  std::optional<std::string> text(const char* attribute);
  /// "#rrggbb" in lower case; empty when it is absent.
  std::string color(const char* attribute);
  /// The same, of an attribute that must be there.
  std::string requiredColor(const char* attribute);
  /// A family's name, of letters, digits, blanks and "-"; empty when it is absent.
  std::string font(const char* attribute);
  /// Points above 0; 0 when it is absent.
  double fontSize(const char* attribute);
  /// A decimal number with at most three decimals.
  double number(const char* attribute, double absent, double min, double max);
  int integer(const char* attribute, int absent, int min, int max);
  std::optional<bool> flag(const char* attribute);
  /// The one of `names` that the attribute says, as the value that stands beside it.
  template <typename Value, std::size_t kCount>
  Value choice(const char* attribute, Value absent,
               const std::array<std::pair<Value, std::string_view>, kCount>& names) {
    const std::optional<std::string> given = text(attribute);
    if (!given) return absent;
    for (const auto& [value, name] : names) {
      if (name == *given) return value;
    }
    refuseValue(attribute, localized("is not known"));
  }

  /// Refuses attributes that were not asked for.
  void refuseOthers() const;
  /// Gives every child to `read`, which answers whether there is such an element. An element whose
  /// name is `repeated` may stand any number of times, any other once.
  void readChildren(const std::function<bool(LookElement&)>& read,
                    std::string_view repeated = {}) const;
  /// Refuses attributes that were not asked for, and children.
  void refuseRest() const;

  /// Where, then what. Of `foreign`, which stands at "{}" in `what`, as much is shown as there is
  /// room for.
  [[noreturn]] void refuse(const std::string& what, std::string_view foreign = {}) const;
  /// `what` goes on behind the attribute and its value.
  [[noreturn]] void refuseValue(const char* attribute, const std::string& what) const;

 private:
  void expectWithin(const char* attribute, double value, double min, double max) const;

  pugi::xml_node node_;
  std::vector<std::string_view> asked_;
};

/// Parses the whole of `xml` and gives its root to `read`. Refuses another root than `root` and
/// another version than 1.
void parseLook(std::string_view xml, const char* root,
               const std::function<void(LookElement&)>& read);

}  // namespace vornwout
