#include "libvornwout/export/output_export_jpg_data.h"

#include <utility>

#include "libvornwout/export/export_file_keywords.h"
#include "libvornwout/frame/yes_or_no.h"

namespace vornwout {
namespace {

constexpr const char* kJpg = "JPG";
constexpr const char* kGrayscale = "GRAYSCALE";

}  // namespace

OutputExportJPGData::OutputExportJPGData(CommandDescriptor& command, ExportJPGSpec& option)
    : option_(option) {
  SubComDescriptor subcommand = imageSubcommand(kJpg);
  subcommand.addParamDesc(percentSizeKeyword());
  subcommand.addParamDesc(yesOrNo(kGrayscale));
  command.addSubComDesc(std::move(subcommand));
}

int OutputExportJPGData::populateSpecification(CommandSpec& spec, const ParserMessage& messages,
                                               bool imageRootRequired, std::string& imageRoot) {
  const SubComObj* subcommand = spec.getSubComObj(kJpg);
  if (subcommand == nullptr) return 0;
  readImageRootInto(option_, imageRoot, *subcommand, messages, imageRootRequired);
  const bool accepted = readPercentSize(*subcommand, messages, option_);
  readFlag(*subcommand, kGrayscale, option_, &ExportJPGSpec::setGrayscale);
  return countOption(option_, accepted);
}

}  // namespace vornwout
