// Texts in XML: which ones it can hold, and the one escaper.
#pragma once

#include <string>
#include <string_view>

namespace vornwout {

/// Whether XML can hold the text: no control characters, valid UTF-8, no noncharacter at the end of
/// the first plane.
bool isXmlText(std::string_view text);

/// Appends a text that isXmlText() accepts. It reads back unchanged: returns, and in attributes
/// tabs and line ends, are written by number.
void appendXmlEscaped(std::string& out, std::string_view text, bool inAttribute);

/// Appends a blank, the name and the value in quotes. Characters and bytes of the value that XML
/// cannot hold become U+FFFD.
void appendXmlAttribute(std::string& out, std::string_view name, std::string_view value);

}  // namespace vornwout
