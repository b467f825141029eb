#include "runner/response_xml.h"

#include <algorithm>

#include <fmt/format.h>

namespace vornwout {
namespace {

/// Line ends and tabs are written by number, for a reader turns bare ones in attributes into
/// blanks.
std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      case '\t':
        result += "&#9;";
        break;
      case '\n':
        result += "&#10;";
        break;
      case '\r':
        result += "&#13;";
        break;
      default:
        result += c;
    }
  }
  return result;
}

std::string attribute(std::string_view name, std::string_view value) {
  return fmt::format(" {}=\"{}\"", name, escaped(value));
}

std::string attributeIfGiven(std::string_view name, std::string_view value) {
  return value.empty() ? std::string() : attribute(name, value);
}

}  // namespace

std::string exportResponseXml(const ExportResponse& response) {
  std::string xml = "<outputExportResponse";
  xml += attribute("success", response.success ? "true" : "false");
  xml += attribute("errorCode", std::to_string(response.errorCode));
  xml += attributeIfGiven("name", response.name);
  xml += attributeIfGiven("documentFile", response.documentFile);
  xml += attributeIfGiven("imageRoot", response.imageRoot);
  xml += attributeIfGiven("imageFormat", response.imageFormat);
  if (response.imageCount) xml += attribute("imageCount", std::to_string(*response.imageCount));

  std::string children;
  for (std::size_t code = 0; code < response.warnings.size(); ++code) {
    for (const std::string& name : response.warnings[code]) {
      children +=
          "<warning" + attribute("code", std::to_string(code)) + attribute("name", name) + "/>";
    }
  }
  if (children.empty()) return xml + "/>";
  return xml + ">" + children + "</outputExportResponse>";
}

bool isXmlText(std::string_view utf8) {
  const bool hasControl = std::any_of(utf8.begin(), utf8.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r';
  });
  return !hasControl && utf8.find("\xEF\xBF\xBE") == std::string_view::npos &&
         utf8.find("\xEF\xBF\xBF") == std::string_view::npos;
}

}  // namespace vornwout
