#include "libvornwout/export/export_keywords.h"

#include "libvornwout/frame/constants.h"

namespace vornwout {
namespace {

constexpr const char* kZero = "0";

SubComDescriptor optionalSubcommand(const char* name) {
  return SubComDescriptor(name, UPSpecTypes::kKeywords, false, false);
}

}  // namespace

SubComDescriptor documentSubcommand(const char* name) {
  SubComDescriptor subcommand = optionalSubcommand(name);
  subcommand.addParamDesc(kDocumentFile, UPSpecTypes::kRawTokens, false, true);
  return subcommand;
}

SubComDescriptor imageSubcommand(const char* name) {
  SubComDescriptor subcommand = optionalSubcommand(name);
  subcommand.addParamDesc(kImageRoot, UPSpecTypes::kString, false, true);
  return subcommand;
}

ParamDescriptor exportKeyword(const char* name, UPSpecTypes::ParamSpec spec,
                              std::initializer_list<const char*> values) {
  ParamDescriptor keyword(name, spec, false, true);
  for (const char* value : values) keyword.addStringValue(value);
  return keyword;
}

ParamDescriptor wideTablesKeyword() {
  return exportKeyword(kWideTables, UPSpecTypes::kDeclaredValue, {"WRAP", "SHRINK", "ASIS"});
}

ParamDescriptor imageFormatKeyword() {
  return exportKeyword(kImageFormat, UPSpecTypes::kDeclaredValue, {"JPG", "BMP", "PNG"});
}

ParamDescriptor percentSizeKeyword() {
  ParamDescriptor percent(kPercentSize, UPSpecTypes::kNumber, false, false);
  percent.setLowerBoundary(0.0, kLowerInclusive);
  percent.setUpperBoundary(kMaxPercent, kUpperInclusive);
  return percent;
}

bool isKeywordValue(const ParamObj& param, std::string_view keyword) {
  if (keyword == "ALL") return param.isOperatorValue(static_cast<int>(OperatorCode::kAll));
  return param.isStringValueCase(keyword);
}

std::optional<bool> readYesNo(const SubComObj& subcommand, const char* keyword) {
  const ParamObj* param = subcommand.getParamObj(keyword);
  if (param == nullptr) return std::nullopt;
  if (param->isStringValueCase(kYes)) return true;
  if (param->isStringValueCase(kNo)) return false;
  return std::nullopt;
}

bool readPercent(const ParamObj& param, const std::string& token, const char* name,
                 const ParserMessage& messages, double& percent) {
  // The declared bounds let 0 through; a NaN passes neither comparison.
  if (param.getNumberValue(percent) && percent > 0 && percent <= kMaxPercent) return true;
  // The upper bound and the name run together in one argument, deliberately: hosts know the message
  // as it comes out, with nothing for its last placeholder.
  messages.GenericError(
      "Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4...", token, kZero,
      std::string("200") + name);
  return false;
}

void reportNotAboveZero(const ParserMessage& messages, const std::string& token,
                        const std::string& name) {
  messages.GenericError("Value ^1 should be greater than ^2 for parameter ^3...", token, kZero,
                        name);
}

}  // namespace vornwout
