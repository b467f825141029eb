#include "libvornwout/export/output_export_png_data.h"

#include <utility>

#include "libvornwout/export/export_file_keywords.h"
#include "libvornwout/frame/yes_or_no.h"

namespace vornwout {
namespace {

constexpr const char* kPng = "PNG";
constexpr const char* kDepth = "DEPTH";

}  // namespace

OutputExportPNGData::OutputExportPNGData(CommandDescriptor& command, ExportPNGSpec& option)
    : option_(option) {
  SubComDescriptor subcommand = imageSubcommand(kPng);
  subcommand.addParamDesc(percentSizeKeyword());
  subcommand.addParamDesc(enumerationKeyword<ExportPNGSpec::DEPTH>(kDepth));
  command.addSubComDesc(std::move(subcommand));
}

int OutputExportPNGData::populateSpecification(CommandSpec& spec, const ParserMessage& messages,
                                               bool imageRootRequired, std::string& imageRoot) {
  const SubComObj* subcommand = spec.getSubComObj(kPng);
  if (subcommand == nullptr) return 0;
  readImageRootInto(option_, imageRoot, *subcommand, messages, imageRootRequired);
  const bool accepted = readPercentSize(*subcommand, messages, option_);
  readEnumeration(*subcommand, kDepth, option_, &ExportPNGSpec::setDepth);
  return countOption(option_, accepted);
}

}  // namespace vornwout
