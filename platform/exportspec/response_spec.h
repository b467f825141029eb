// The answer of a host to an export: ExportResponse is what it says, exportResponseXml() writes it,
// and ResponseSpec is how the command reads it.
//
// docs/export-response.xsd is the schema of what is written and read.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vornwout {

/// By the numbers that a response has: what could not be written whole.
enum class WARNING_CODE { LONG_ROW_LABEL, TOO_MANY_COLUMNS, TOO_LONG_CELL };
inline constexpr std::size_t kWarningCodes = 3;

/// What an export response says; texts are UTF-8. The default is a plain success.
struct ExportResponse {
  bool success = true;
  int errorCode = 0;
  std::string name;
  std::string documentFile;
  std::string imageRoot;
  std::string imageFormat;
  std::optional<int> imageCount;
  std::array<std::vector<std::string>, kWarningCodes> warnings;  ///< names, by warning code
};

/// The response as XML, without a declaration. A text or count that was not given has no attribute.
/// A character that XML cannot hold becomes U+FFFD.
std::string exportResponseXml(const ExportResponse& response);

/// A decoded response. Its texts are in the encoding that is current when it is decoded.
class ResponseSpec {
 public:
  /// Decodes a response; false when it is not valid, and getParserError() then says why.
  bool processResponse(const std::string& xml);
  /// One line, UTF-8; empty when the response was decoded.
  std::string getParserError() const { return parserError_; }

  bool getSuccessCode() const { return response_.success; }
  int getErrorCode() const { return response_.errorCode; }
  bool warningsFound() const;
  /// The names of the tables that it is about.
  const std::vector<std::string>& getWarnings(WARNING_CODE code) const {
    return response_.warnings.at(static_cast<std::size_t>(code));
  }
  /// The name of the document that was exported.
  const std::string& getName() const { return response_.name; }
  const std::string& getDocumentFile() const { return response_.documentFile; }
  const std::string& getImageRoot() const { return response_.imageRoot; }
  const std::string& getImageFormat() const { return response_.imageFormat; }
  bool isImageCountPresent() const { return response_.imageCount.has_value(); }
  /// 0 when there is none.
  int getImageCount() const { return response_.imageCount.value_or(0); }

 private:
  ExportResponse response_;
  std::string parserError_;
};

}  // namespace vornwout
