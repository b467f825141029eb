// The numbers that objects are given in the outline: 3, c, C, iii or III.
#pragma once

#include <string>

#include "host/changes/modify_request.h"

namespace vornwout {

/// A number in a style. Letters count without a zero: z is followed by aa, az by ba. Roman numerals
/// go up to 4999; what a style has no writing for, 0 and below included, is a decimal number.
std::string indexText(IndexChange::Style style, int number);

}  // namespace vornwout
