// xmlModifyText: writes the element that changes text objects.
//
// Everything is an attribute and is left out where it was not given; a colour is written only with
// all its three components.
#pragma once

#include <string>

namespace vornwout {

class ModifyText;

class xmlModifyText {
 public:
  /// Keeps a reference to the document.
  explicit xmlModifyText(std::string& document) : document_(document) {}

  /// Appends the element. The font's name is deliberately written without escaping.
  void populateTextInfo(const ModifyText& text);

 private:
  std::string& document_;
};

}  // namespace vornwout
