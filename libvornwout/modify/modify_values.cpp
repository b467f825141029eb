#include "libvornwout/modify/modify_values.h"

#include <utility>
#include <vector>

#include "libvornwout/modify/xml/xml_utilities.h"
#include "platform/files/fetch_file.h"
#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

constexpr const char* kStyle = "STYLE";
constexpr const char* kRegular = "REGULAR";
constexpr const char* kBold = "BOLD";
constexpr const char* kItalic = "ITALIC";
constexpr const char* kUnderline = "UNDERLINE";

void applyStyle(const std::string& keyword, FontStyle& style) {
  if (AreStringsEqualCase(keyword, kRegular)) {
    style.regular = style.regularSpecified = true;
    style.bold = style.italic = style.underline = false;
    style.boldSpecified = style.italicSpecified = style.underlineSpecified = true;
  } else if (AreStringsEqualCase(keyword, kBold)) {
    style.bold = style.boldSpecified = true;
  } else if (AreStringsEqualCase(keyword, kItalic)) {
    style.italic = style.italicSpecified = true;
  } else if (AreStringsEqualCase(keyword, kUnderline)) {
    style.underline = style.underlineSpecified = true;
  }
}

}  // namespace

ParamDescriptor modifierKeyword(const char* name, UPSpecTypes::ParamSpec spec,
                                std::initializer_list<const char*> values) {
  ParamDescriptor keyword(name, spec, false, true);
  for (const char* value : values) keyword.addStringValue(value);
  return keyword;
}

std::optional<std::string> readExpandedText(const SubComObj& subcommand, const char* keyword) {
  const ParamObj* param = subcommand.getParamObj(keyword);
  if (param == nullptr) return std::nullopt;
  // The time is taken now, so that all that is written of this value says the same.
  return XMLUtilities::escapeHTML(XMLUtilities::insertDateTime(readText(*param)));
}

std::string readText(const ParamObj& param, bool* quoted) {
  std::string text;
  bool literal = false;
  param.getStringOrLiteral(text, literal);
  if (quoted != nullptr) *quoted = literal;
  return text;
}

std::string fetchFrom(const std::string& path, std::string_view startTag) {
  std::string content = FetchFile::fetch(path, true, true);
  const std::size_t start = content.find(startTag);
  if (start != std::string::npos) content.erase(0, start);
  return content;
}

ParamDescriptor colorKeyword(const char* name) {
  ParamDescriptor color = modifierKeyword(name, UPSpecTypes::kRawTokens);
  for (const char* keyword : XMLUtilities::colorKeywords()) color.addStringValue(keyword);
  return color;
}

bool readColor(const SubComObj& subcommand, const char* keyword, const char* reportedName,
               const ParserMessage& messages, RgbColor& color) {
  const ParamObj* param = subcommand.getParamObj(keyword);
  if (param == nullptr || XMLUtilities::getRGB(*param, color.red, color.green, color.blue)) {
    return true;
  }
  messages.GenericError("Subcommand ^1: Not a recognized RGB color", reportedName);
  return false;
}

ParamDescriptor styleKeyword() {
  return modifierKeyword(kStyle, UPSpecTypes::kDeclaredList,
                         {kRegular, kBold, kItalic, kUnderline});
}

bool readStyle(const SubComObj& subcommand, FontStyle& style) {
  const ParamObj* param = subcommand.getParamObj(kStyle);
  if (param == nullptr) return true;
  std::vector<std::string> keywords;
  if (!param->getStringList(keywords)) return false;
  for (const std::string& keyword : keywords) applyStyle(keyword, style);
  return true;
}

std::optional<double> pointsOfUnit(std::string_view keyword) {
  for (const LengthUnit& unit : kLengthUnits) {
    if (AreStringsEqualCase(unit.keyword, keyword)) return unit.points;
  }
  return std::nullopt;
}

}  // namespace vornwout
