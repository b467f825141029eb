// Looks as style attributes: colours, weight, slant, line and font of a text.
//
// A document may come from anywhere, so nothing of it reaches a style as it stands: colours are
// parsed, sizes are numbers within what can be read, and a font's name stands between quotes and
// only where it has nothing but letters, digits, blanks, hyphens and underscores.
#pragma once

#include <string>

#include "platform/pivot/text_look.h"

namespace vornwout {

/// "font-family:'Arial';font-size:12pt;", without what is not set or cannot be used.
std::string fontCss(const std::string& family, double size);

struct LookCss {
  std::string style;
  /// The text has a colour and no background, and needs a light one on a dark page: class "ink".
  bool needsLight = false;
};

/// What is set in the look, and nothing else.
LookCss lookCss(const TextLook& look);

}  // namespace vornwout
