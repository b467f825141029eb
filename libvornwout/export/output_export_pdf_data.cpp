#include "libvornwout/export/output_export_pdf_data.h"

#include <utility>

#include "libvornwout/export/export_file_keywords.h"
#include "libvornwout/frame/yes_or_no.h"

namespace vornwout {
namespace {

constexpr const char* kPdf = "PDF";
constexpr const char* kEmbedBookmarks = "EMBEDBOOKMARKS";
constexpr const char* kEmbedFonts = "EMBEDFONTS";

}  // namespace

OutputExportPDFData::OutputExportPDFData(CommandDescriptor& command, ExportPDFSpec& option)
    : option_(option) {
  SubComDescriptor subcommand = documentSubcommand(kPdf);
  subcommand.addParamDesc(yesOrNo(kEmbedBookmarks));
  subcommand.addParamDesc(yesOrNo(kEmbedFonts));
  command.addSubComDesc(std::move(subcommand));
}

int OutputExportPDFData::populateSpecification(CommandSpec& spec, const ParserMessage& messages,
                                               std::string& documentFile) {
  const SubComObj* subcommand = spec.getSubComObj(kPdf);
  if (subcommand == nullptr) return 0;
  const bool accepted = readDocumentFileInto(option_, documentFile, *subcommand, messages);
  readFlag(*subcommand, kEmbedBookmarks, option_, &ExportPDFSpec::setEmbedBookmarks);
  readFlag(*subcommand, kEmbedFonts, option_, &ExportPDFSpec::setEmbedFonts);
  return countOption(option_, accepted);
}

}  // namespace vornwout
