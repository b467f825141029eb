// Which names output documents may have.
#pragma once

namespace vornwout {

/// Zero when `name` (current encoding) is a valid document name, another value otherwise: it starts
/// with a letter or a character of two or more bytes, goes on with those, digits and any of ". _ $
/// # @", and does not end with a period. A byte that is no valid character makes a name invalid.
int ValidateVORNNameCheckLastChar(const char* name);

}  // namespace vornwout
