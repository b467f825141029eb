// Whether there is a font: what a change asks before it names one in a document.
//
// An empty function stands for "every font is there".
#pragma once

#include <functional>
#include <string>

namespace vornwout {

/// Whether a family of this name can be shown.
using FontCheck = std::function<bool(const std::string&)>;

}  // namespace vornwout
