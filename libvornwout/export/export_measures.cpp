#include "libvornwout/export/export_measures.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "libvornwout/frame/blame.h"

namespace vornwout {
namespace {

ParamDescriptor lengthKeyword(const char* name, UPSpecTypes::ParamSpec numbers) {
  ParamDescriptor keyword = exportKeyword(name, UPSpecTypes::kMeasure);
  for (const char* unitName : Keywords<MEASUREMENT_TYPE>::kNames) {
    ParamDescriptor unit = exportKeyword(unitName, numbers);
    unit.setLowerBoundary(0.0);
    keyword.addQualifDesc(std::move(unit));
  }
  return keyword;
}

/// One number of a size; false after reporting one that is not above 0.
bool readSide(const TokenInfoObj& token, const ParamObj& unit, const ParserMessage& messages,
              PageMeasure& side) {
  side = {unitOf<MEASUREMENT_TYPE>(unit), 0, token.getSourceText()};
  if (readNumber(side.text, side.value) && side.value > 0) return true;
  blame(token);
  reportNotAboveZero(messages, side.text, unit.getParamName());
  return false;
}

}  // namespace

ParamDescriptor sizeKeyword(const char* name) {
  return lengthKeyword(name, UPSpecTypes::kNumberList);
}

void addMarginKeywords(SubComDescriptor& subcommand) {
  for (const char* margin : kMarginKeywords) {
    subcommand.addParamDesc(lengthKeyword(margin, UPSpecTypes::kNumber));
  }
}

bool splitGivenMeasure(const ParamObj& param, const SubComObj& subcommand,
                       const ParserMessage& messages, std::string& text, ParamObj& unit) {
  if (param.getStringAndQual(text, unit)) return true;
  messages.InvalidParamValue(param.writtenText(), param.getParamName(), subcommand.name());
  return false;
}

bool readAboveZero(const ParamObj& unit, const std::string& token, const ParserMessage& messages,
                   double& number) {
  if (unit.getNumberValue(number) && number > 0) return true;
  reportNotAboveZero(messages, token, unit.getParamName());
  return false;
}

bool readLength(const SubComObj& subcommand, const char* keyword, const ParserMessage& messages,
                std::optional<PageMeasure>& length) {
  const ParamObj* param = subcommand.getParamObj(keyword);
  if (param == nullptr) return true;
  PageMeasure given;
  ParamObj unit;
  if (!splitGivenMeasure(*param, subcommand, messages, given.text, unit)) return false;
  if (!readAboveZero(unit, given.text, messages, given.value)) return false;
  given.unit = unitOf<MEASUREMENT_TYPE>(unit);
  length = std::move(given);
  return true;
}

bool readSize(const SubComObj& subcommand, const char* keyword, const ParserMessage& messages,
              std::optional<PageSize>& size) {
  const ParamObj* param = subcommand.getParamObj(keyword);
  if (param == nullptr) return true;
  std::string text;
  ParamObj unit;
  if (!splitGivenMeasure(*param, subcommand, messages, text, unit)) return false;
  std::vector<TokenInfoObj> tokens;
  unit.getTokenList(tokens);
  const bool areNumbers = std::all_of(tokens.begin(), tokens.end(),
                                      [](const TokenInfoObj& token) { return token.IsNumber(); });
  if (tokens.size() != 2 || !areNumbers) {
    // The spelling is deliberate, and so is that the keyword comes as the only argument and is not
    // shown: the message has no place but a second one.
    messages.GenericError("Parameter ^2 requrires two dimensions, width and height.", keyword);
    return false;
  }
  PageSize given;
  if (!readSide(tokens[0], unit, messages, given.width) ||
      !readSide(tokens[1], unit, messages, given.height)) {
    return false;
  }
  size = std::move(given);
  return true;
}

}  // namespace vornwout
