// The style sheet of HTML pages: light and dark, wide and narrow, on screen and on paper.
#pragma once

#include <string_view>

namespace vornwout {

/// The whole sheet, the same for every page; it refers to nothing outside the page.
std::string_view htmlStyleSheet();

}  // namespace vornwout
