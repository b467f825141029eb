// Style sheets and style attributes of a chart without what would load something.
#pragma once

#include <string>
#include <string_view>

namespace vornwout {

/// The style without comments, imports and addresses that lead outside, which become "none"; empty
/// when it cannot be judged: escapes that hide such a thing, an address without an end, functions
/// that load.
std::string filteredCss(std::string_view css);

/// ASCII letters in lower case, everything else as it is.
std::string asciiLowered(std::string_view text);

/// Whether an address stays: a fragment of the same chart, or a picture in PNG, JPEG, GIF or WebP
/// that is part of the address.
bool isInnerAddress(std::string_view address);

/// In lower case, without blanks and control characters: how a browser compares schemes.
std::string foldedAddress(std::string_view address);

}  // namespace vornwout
