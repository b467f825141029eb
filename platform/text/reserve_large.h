// Room for texts of many megabytes.
#pragma once

#include <cstddef>
#include <string>

namespace vornwout {

/// Reserves `capacity` bytes, and asks the system to back a large text with large pages: fresh
/// memory comes page by page, and fetching small ones takes longer than filling them with text.
void reserveLarge(std::string& text, std::size_t capacity);

}  // namespace vornwout
