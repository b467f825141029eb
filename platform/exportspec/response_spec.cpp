#include "platform/exportspec/response_spec.h"

#include <algorithm>
#include <charconv>
#include <span>

#include "platform/exportspec/schema_reader.h"
#include "platform/text/encoding.h"
#include "platform/text/xml_text.h"

namespace vornwout {
namespace {

constexpr const char* kRoot = "outputExportResponse";
constexpr const char* kWarning = "warning";
constexpr const char* kSuccess = "success";
constexpr const char* kErrorCode = "errorCode";
constexpr const char* kName = "name";
constexpr const char* kDocumentFile = "documentFile";
constexpr const char* kImageRoot = "imageRoot";
constexpr const char* kImageFormat = "imageFormat";
constexpr const char* kImageCount = "imageCount";
constexpr const char* kCode = "code";

void appendIfGiven(std::string& xml, std::string_view name, std::string_view value) {
  if (!value.empty()) appendXmlAttribute(xml, name, value);
}

/// A number that the schema has found to be one; it may have a sign and blanks about it.
int numberOf(std::string_view text) {
  constexpr std::string_view kBefore = " \t\r\n+";
  text.remove_prefix(std::min(text.find_first_not_of(kBefore), text.size()));
  int value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

void readRoot(std::span<const XmlAttribute> attributes, ExportResponse& response) {
  for (const auto& [name, value] : attributes) {
    if (name == kSuccess) {
      response.success = value == "true";
    } else if (name == kErrorCode) {
      response.errorCode = numberOf(value);
    } else if (name == kImageCount) {
      response.imageCount = numberOf(value);
    } else if (name == kName) {
      response.name = currentEncoding().fromUtf8(value);
    } else if (name == kDocumentFile) {
      response.documentFile = currentEncoding().fromUtf8(value);
    } else if (name == kImageRoot) {
      response.imageRoot = currentEncoding().fromUtf8(value);
    } else if (name == kImageFormat) {
      response.imageFormat = currentEncoding().fromUtf8(value);
    }
  }
}

void readWarning(std::span<const XmlAttribute> attributes, ExportResponse& response) {
  std::size_t code = 0;
  std::string name;
  for (const auto& [attribute, value] : attributes) {
    if (attribute == kCode) code = static_cast<std::size_t>(numberOf(value));
    if (attribute == kName) name = currentEncoding().fromUtf8(value);
  }
  response.warnings.at(code).push_back(std::move(name));
}

}  // namespace

std::string exportResponseXml(const ExportResponse& response) {
  std::string xml = "<";
  xml += kRoot;
  appendXmlAttribute(xml, kSuccess, response.success ? "true" : "false");
  appendXmlAttribute(xml, kErrorCode, std::to_string(response.errorCode));
  appendIfGiven(xml, kName, response.name);
  appendIfGiven(xml, kDocumentFile, response.documentFile);
  appendIfGiven(xml, kImageRoot, response.imageRoot);
  appendIfGiven(xml, kImageFormat, response.imageFormat);
  if (response.imageCount) {
    appendXmlAttribute(xml, kImageCount, std::to_string(*response.imageCount));
  }
  std::string children;
  for (std::size_t code = 0; code < response.warnings.size(); ++code) {
    for (const std::string& name : response.warnings[code]) {
      children += '<';
      children += kWarning;
      appendXmlAttribute(children, kCode, std::to_string(code));
      appendXmlAttribute(children, kName, name);
      children += "/>";
    }
  }
  if (children.empty()) return xml + "/>";
  return xml + ">" + children + "</" + kRoot + ">";
}

bool ResponseSpec::processResponse(const std::string& xml) {
  ExportResponse response;
  try {
    readValidXml(XmlSchema::kExportResponse, xml,
                 [&](std::string_view element, std::span<const XmlAttribute> attributes) {
                   if (element == kRoot) {
                     readRoot(attributes, response);
                   } else {
                     readWarning(attributes, response);
                   }
                 });
  } catch (const XmlError& error) {
    parserError_ = std::string("in the host's answer, ") + error.what();
    return false;
  }
  parserError_.clear();
  response_ = std::move(response);
  return true;
}

bool ResponseSpec::warningsFound() const {
  return std::any_of(response_.warnings.begin(), response_.warnings.end(),
                     [](const auto& names) { return !names.empty(); });
}

}  // namespace vornwout
