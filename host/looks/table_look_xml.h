// Table looks as the XML of a .qtt file, which docs/table-look.xsd describes.
//
// A look that was read, written, and read again is the same. Whatever the schema refuses is refused
// here, too, and widths whose least is above their greatest.
#pragma once

#include <string>
#include <string_view>

#include "host/looks/look_element.h"
#include "platform/pivot/table_look.h"

namespace vornwout {

/// The name of the look that tables have when nobody gave them another; Looks/ has it as a file.
inline constexpr std::string_view kDefaultLookName = "Standard";

/// Reads a whole file, or what is left of it from its root element on. Throws LookError.
TableLook parseTableLook(std::string_view xml);

/// The look as a file, without what is as in TableLook(). Its values must be such as
/// parseTableLook() gives.
std::string writeTableLook(const TableLook& look);

/// What the file of the name kDefaultLookName says, without a file.
TableLook defaultTableLook();

}  // namespace vornwout
