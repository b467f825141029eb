// xmlModifyTable: writes the element that changes whole tables.
//
// Layers go by the kinds of their pairs rather than in the order of the command, for the modifier
// holds them so; the table look is the last thing in the element.
#pragma once

#include <string>

namespace vornwout {

class ModifyTable;

class xmlModifyTable {
 public:
  /// Keeps a reference to the document.
  explicit xmlModifyTable(std::string& document) : document_(document) {}

  /// Appends the element. Its texts are, deliberately, written as they are held: escaped, but in
  /// the current encoding. The table look is embedded as it was read.
  void populateTableInfo(const ModifyTable& table);

 private:
  std::string& document_;
};

}  // namespace vornwout
