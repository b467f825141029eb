// What a host answers to a modify document: a text that holds, in free form, the numbers of objects
// that were selected, modified and deleted, as "(3,2,1)", and notes on values that the host could
// not use, as "Invalid format (F99)" and "Invalid font (Foo)".
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vornwout {

struct ModifyResult {
  /// The values of the notes, in their order.
  std::vector<std::string> invalidFormats;
  std::vector<std::string> invalidFonts;
  /// False when the text holds no counts; a count that is missing among them is 0.
  bool hasCounts = false;
  long selected = 0;
  long modified = 0;
  long deleted = 0;
};

/// Reads an answer; every text is one, be it empty. The counts stand in the first parentheses.
ModifyResult readModifyResult(const std::string& text);

}  // namespace vornwout
