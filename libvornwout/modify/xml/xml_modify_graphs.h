// xmlModifyGraphs: writes the element that restyles charts.
//
// It takes the contents and the name rather than the modifier, for these are all there is to write;
// embedded files are written as they are, whatever they hold.
#pragma once

#include <string>
#include <vector>

namespace vornwout {

class xmlModifyGraphs {
 public:
  /// Keeps a reference to the document.
  explicit xmlModifyGraphs(std::string& document) : document_(document) {}

  /// Appends the element. The contents of the templates and the name of the style sheet are in the
  /// current encoding; both are written in UTF-8 and, deliberately, without escaping.
  void populateGraphInfo(const std::vector<std::string>& chartTemplates,
                         const std::string& styleSheet);

 private:
  std::string& document_;
};

}  // namespace vornwout
