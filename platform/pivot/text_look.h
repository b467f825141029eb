// How one text of a table looks where it differs from the table's own look.
//
// A command gives thousands of cells the same look at once, so cells share it. Of the operations of
// Shared only edit() makes a copy.
#pragma once

#include <optional>
#include <string>

#include "platform/pivot/shared.h"

namespace vornwout {

/// What is not set is left to the table's look, and to whoever shows it.
struct TextLook {
  std::string textColor;        ///< a colour name or "#rrggbb", empty for none
  std::string backgroundColor;  ///< likewise
  std::optional<bool> bold;
  std::optional<bool> italic;
  std::optional<bool> underlined;
  std::string font;  ///< a family's name, empty for none
  double size = 0;   ///< points, 0 for none
  friend bool operator==(const TextLook&, const TextLook&) = default;
};

using SharedLook = Shared<TextLook>;

}  // namespace vornwout
