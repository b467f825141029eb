#include "libvornwout/export/output_export_doc_data.h"

#include <utility>

#include "libvornwout/export/export_file_keywords.h"
#include "libvornwout/export/export_measures.h"
#include "libvornwout/frame/yes_or_no.h"

namespace vornwout {
namespace {

constexpr const char* kDoc = "DOC";
constexpr const char* kPageSize = "PAGESIZE";
constexpr const char* kPageBreaks = "PAGEBREAKS";

}  // namespace

OutputExportDocData::OutputExportDocData(CommandDescriptor& command, ExportDocSpec& option)
    : option_(option) {
  SubComDescriptor subcommand = documentSubcommand(kDoc);
  subcommand.addParamDesc(yesOrNo(kNotesCaptions));
  subcommand.addParamDesc(wideTablesKeyword());
  subcommand.addParamDesc(sizeKeyword(kPageSize));
  addMarginKeywords(subcommand);
  subcommand.addParamDesc(yesOrNo(kPageBreaks));
  command.addSubComDesc(std::move(subcommand));
}

int OutputExportDocData::populateSpecification(CommandSpec& spec, const ParserMessage& messages,
                                               std::string& documentFile) {
  const SubComObj* subcommand = spec.getSubComObj(kDoc);
  if (subcommand == nullptr) return 0;
  bool accepted = readDocumentFileInto(option_, documentFile, *subcommand, messages);
  readFlag(*subcommand, kNotesCaptions, option_, &ExportDocSpec::setNotesAndCaptions);
  readEnumeration(*subcommand, kWideTables, option_, &ExportDocSpec::setWideTables);
  std::optional<PageSize> size;
  accepted = readSize(*subcommand, kPageSize, messages, size) && accepted;
  if (size) {
    option_.setPageSizeWidth(size->width.unit, size->width.value, size->width.text);
    option_.setPageSizeHeight(size->height.unit, size->height.value, size->height.text);
  }
  accepted = readMargins(*subcommand, messages, option_) && accepted;
  readFlag(*subcommand, kPageBreaks, option_, &ExportDocSpec::setPageBreaks);
  return countOption(option_, accepted);
}

}  // namespace vornwout
