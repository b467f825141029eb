// Numbers as stored documents write them: the shortest text that reads back as the same number.
//
// Most numbers of a table have a few decimals. Such a number is an integer divided by a power of
// ten, and one division of two exact numbers is rounded correctly, so both ways have a short cut
// that gives the very text or number that the standard library would.
#pragma once

#include <string>
#include <string_view>

namespace vornwout {

/// Appends a finite number.
void appendNumber(std::string& out, double value);

/// Reads the number that the whole of `text` is, as std::from_chars does; false for anything else.
bool parseNumber(std::string_view text, double& value);

}  // namespace vornwout
