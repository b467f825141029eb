// Style sheets and style attributes of a chart without what would load something.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vornwout {

/// The style without comments, imports and addresses that lead outside, which become "none"; empty
/// when it cannot be judged: escapes that hide such a thing, an address without an end, functions
/// that load.
std::string filteredCss(std::string_view css);

/// Where the declaration or rule that starts at `at` ends: at a semicolon outside of quotes and
/// brackets, or with the style.
std::size_t endOfDeclaration(std::string_view css, std::size_t at);

/// ASCII letters in lower case, everything else as it is.
std::string asciiLowered(std::string_view text);

/// Whether an address stays: a fragment of the same chart, or a picture in PNG, JPEG, GIF or WebP
/// that is part of the address.
bool isInnerAddress(std::string_view address);

/// In lower case, without blanks and control characters: how a browser compares schemes.
std::string foldedAddress(std::string_view address);

}  // namespace vornwout
