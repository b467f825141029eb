// Reads the string tables of the installation: a bundle's keys, their texts and their help texts.
#pragma once

#include <string>
#include <vector>

#include "platform/strings/text_bundle.h"

namespace vornwout {

class FacSTStringTable {
 public:
  /// Fills `entries` from the bundle at a path, in the bundle's order and in the current encoding;
  /// what that cannot hold becomes its substitute. Backslashes in the path are separators where
  /// nothing has the name as it is written. No entries when the file is missing, unreadable, or no
  /// whole bundle; never a part of them.
  void GetKeysAndValues(const std::string& path, std::vector<keyValueGloss>& entries) const;
};

}  // namespace vornwout
