// xmlModifyText: writes the element that changes text objects.
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
