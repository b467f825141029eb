// Writes the response XML that a host answers an export with.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vornwout {

/// What an export response says; texts are UTF-8. The default is a plain success.
struct ExportResponse {
  bool success = true;
  int errorCode = 0;
  std::string name;
  std::string documentFile;
  std::string imageRoot;
  std::string imageFormat;
  std::optional<int> imageCount;
  std::array<std::vector<std::string>, 3> warnings;  ///< names, by warning code
};

/// The response as XML, without a declaration. A text or count that was not given has no attribute.
/// All texts must satisfy isXmlText().
std::string exportResponseXml(const ExportResponse& response);

/// True when XML can hold every character of the valid UTF-8 text.
bool isXmlText(std::string_view utf8);

}  // namespace vornwout
