// xmlModifyIf: writes the conditions of a group. They stand in the event one by one, with no
// element around them.
//
// They come by kind, each kind in the order of the command, and before every element that changes
// something: a host knows its objects before it reads what to do to them.
#pragma once

#include <string>

namespace vornwout {

class ModifyIf;

class xmlModifyIf {
 public:
  /// Keeps a reference to the document.
  explicit xmlModifyIf(std::string& document) : document_(document) {}

  /// Appends the conditions: commands, subtypes, labels, instances. Texts are written in UTF-8 and,
  /// deliberately, without escaping; a host must bear with what they hold.
  void populateConditionInfo(const ModifyIf& condition);

 private:
  std::string& document_;
};

}  // namespace vornwout
