#include "libvornwout/export/output_export_ppt_data.h"

#include <utility>

#include "libvornwout/export/export_file_keywords.h"
#include "libvornwout/export/export_measures.h"
#include "libvornwout/frame/yes_or_no.h"

namespace vornwout {
namespace {

constexpr const char* kPpt = "PPT";
constexpr const char* kSlideTitles = "SLIDETITLES";
// SLIDESIZE here is what PAGESIZE is to DOC, and messages name it so, deliberately.
constexpr const char* kSlideSize = "SLIDESIZE";

}  // namespace

OutputExportPPTData::OutputExportPPTData(CommandDescriptor& command, ExportPPTSpec& option)
    : option_(option) {
  SubComDescriptor subcommand = documentSubcommand(kPpt);
  subcommand.addParamDesc(yesOrNo(kNotesCaptions));
  subcommand.addParamDesc(yesOrNo(kSlideTitles));
  subcommand.addParamDesc(wideTablesKeyword());
  subcommand.addParamDesc(sizeKeyword(kSlideSize));
  addMarginKeywords(subcommand);
  command.addSubComDesc(std::move(subcommand));
}

int OutputExportPPTData::populateSpecification(CommandSpec& spec, const ParserMessage& messages,
                                               std::string& documentFile) {
  const SubComObj* subcommand = spec.getSubComObj(kPpt);
  if (subcommand == nullptr) return 0;
  bool accepted = readDocumentFileInto(option_, documentFile, *subcommand, messages);
  readFlag(*subcommand, kNotesCaptions, option_, &ExportPPTSpec::setNotesAndCaptions);
  readFlag(*subcommand, kSlideTitles, option_, &ExportPPTSpec::setSlideTitles);
  readEnumeration(*subcommand, kWideTables, option_, &ExportPPTSpec::setWideTables);
  std::optional<PageSize> size;
  accepted = readSize(*subcommand, kSlideSize, messages, size) && accepted;
  if (size) {
    option_.setSlideSizeWidth(size->width.unit, size->width.value, size->width.text);
    option_.setSlideSizeHeight(size->height.unit, size->height.value, size->height.text);
  }
  accepted = readMargins(*subcommand, messages, option_) && accepted;
  return countOption(option_, accepted);
}

}  // namespace vornwout
