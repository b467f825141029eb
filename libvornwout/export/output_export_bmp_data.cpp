#include "libvornwout/export/output_export_bmp_data.h"

#include <utility>

#include "libvornwout/export/export_file_keywords.h"
#include "libvornwout/frame/yes_or_no.h"

namespace vornwout {
namespace {

constexpr const char* kBmp = "BMP";
constexpr const char* kCompress = "COMPRESS";

}  // namespace

OutputExportBMPData::OutputExportBMPData(CommandDescriptor& command, ExportBMPSpec& option)
    : option_(option) {
  SubComDescriptor subcommand = imageSubcommand(kBmp);
  subcommand.addParamDesc(percentSizeKeyword());
  subcommand.addParamDesc(yesOrNo(kCompress));
  command.addSubComDesc(std::move(subcommand));
}

int OutputExportBMPData::populateSpecification(CommandSpec& spec, const ParserMessage& messages,
                                               bool imageRootRequired, std::string& imageRoot) {
  const SubComObj* subcommand = spec.getSubComObj(kBmp);
  if (subcommand == nullptr) return 0;
  readImageRootInto(option_, imageRoot, *subcommand, messages, imageRootRequired);
  readFlag(*subcommand, kCompress, option_, &ExportBMPSpec::setCompress);
  const bool accepted = readPercentSize(*subcommand, messages, option_);
  return countOption(option_, accepted);
}

}  // namespace vornwout
