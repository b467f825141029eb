// Attributes as the documents of an export have them.
#pragma once

#include <string>
#include <string_view>

namespace vornwout {

/// Appends a blank, the name and the value in quotes. The value is UTF-8; it reads back unchanged,
/// for tabs and line ends are written by number. What XML cannot hold becomes U+FFFD.
void appendXmlAttribute(std::string& xml, std::string_view name, std::string_view value);

}  // namespace vornwout
