// What a host answers an export with, and what it is asked for: any bytes are refused with a
// reason, or mean something that reads back as the same. The first byte says which of the two it
// is.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/fuzz_check.h"
#include "platform/exportspec/export_xml.h"
#include "platform/exportspec/response_spec.h"
#include "platform/exportspec/schema_reader.h"

namespace vornwout {
namespace {

void readDocument(std::string_view xml) {
  std::string written;
  try {
    ExportXML().convertToXML(readExportXml(xml), written);
  } catch (const XmlError& error) {
    VORN_FUZZ_CHECK(!std::string_view(error.what()).empty());
    return;
  }
  // What was taken is written as what it means, which is then all that it says.
  std::string again;
  ExportXML().convertToXML(readExportXml(written), again);
  VORN_FUZZ_CHECK(again == written);
}

void readResponse(const std::string& xml) {
  ResponseSpec response;
  if (!response.processResponse(xml)) {
    VORN_FUZZ_CHECK(!response.getParserError().empty());
    return;
  }
  VORN_FUZZ_CHECK(response.getParserError().empty());
  VORN_FUZZ_CHECK(response.getImageCount() >= 0);
  ExportResponse same;
  same.success = response.getSuccessCode();
  same.errorCode = response.getErrorCode();
  same.name = response.getName();
  same.documentFile = response.getDocumentFile();
  for (std::size_t i = 0; i < kWarningCodes; ++i) {
    same.warnings[i] = response.getWarnings(static_cast<WARNING_CODE>(i));
  }
  ResponseSpec again;
  VORN_FUZZ_CHECK(again.processResponse(exportResponseXml(same)));
  VORN_FUZZ_CHECK(again.getSuccessCode() == same.success && again.getErrorCode() == same.errorCode);
  VORN_FUZZ_CHECK(again.getName() == same.name && again.getDocumentFile() == same.documentFile);
  VORN_FUZZ_CHECK(again.warningsFound() == response.warningsFound());
}

}  // namespace
}  // namespace vornwout

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string xml(reinterpret_cast<const char*>(data) + 1, size - 1);
  if (data[0] % 2 == 0) {
    vornwout::readDocument(xml);
  } else {
    vornwout::readResponse(xml);
  }
  return 0;
}
