#include "libvornwout/export/output_export_eps_data.h"

#include <utility>

#include "libvornwout/export/export_file_keywords.h"
#include "libvornwout/export/export_measures.h"
#include "libvornwout/frame/yes_or_no.h"

namespace vornwout {
namespace {

constexpr const char* kEps = "EPS";
constexpr const char* kWidth = "WIDTH";
constexpr const char* kPreview = "PREVIEW";
constexpr const char* kFontHandling = "FONTHANDLING";
constexpr const char* kPercent = "PERCENT";

using Unit = ExportEPSSpec::WIDTH_UNIT;

ParamDescriptor widthKeyword() {
  ParamDescriptor width = exportKeyword(kWidth, UPSpecTypes::kMeasure);
  for (const char* name : Keywords<Unit>::kNames) {
    ParamDescriptor unit = exportKeyword(name, UPSpecTypes::kNumber);
    unit.setLowerBoundary(0.0);
    if (unit.name() == kPercent) unit.setUpperBoundary(kMaxPercent);
    width.addQualifDesc(std::move(unit));
  }
  return width;
}

}  // namespace

OutputExportEPSData::OutputExportEPSData(CommandDescriptor& command, ExportEPSSpec& option)
    : option_(option) {
  SubComDescriptor subcommand = imageSubcommand(kEps);
  subcommand.addParamDesc(widthKeyword());
  subcommand.addParamDesc(yesOrNo(kPreview));
  subcommand.addParamDesc(enumerationKeyword<ExportEPSSpec::FONT_HANDLING>(kFontHandling));
  command.addSubComDesc(std::move(subcommand));
}

int OutputExportEPSData::populateSpecification(CommandSpec& spec, const ParserMessage& messages,
                                               bool imageRootRequired, std::string& imageRoot) {
  const SubComObj* subcommand = spec.getSubComObj(kEps);
  if (subcommand == nullptr) return 0;
  readImageRootInto(option_, imageRoot, *subcommand, messages, imageRootRequired);
  const bool accepted = readWidth(*subcommand, messages);
  readFlag(*subcommand, kPreview, option_, &ExportEPSSpec::setPreview);
  readEnumeration(*subcommand, kFontHandling, option_, &ExportEPSSpec::setFontHandling);
  return countOption(option_, accepted);
}

bool OutputExportEPSData::readWidth(const SubComObj& subcommand, const ParserMessage& messages) {
  const ParamObj* param = subcommand.getParamObj(kWidth);
  if (param == nullptr) return true;
  std::string token;
  ParamObj unit;
  if (!splitGivenMeasure(*param, subcommand, messages, token, unit)) return false;
  const Unit unitValue = unitOf<Unit>(unit);
  double width = 0;
  if (unitValue == Unit::PERCENT) {
    if (!readPercent(unit, token, kPercent, messages, width)) return false;
  } else if (!readAboveZero(unit, token, messages, width)) {
    return false;
  }
  option_.setWidth(unitValue, token, width);
  return true;
}

}  // namespace vornwout
