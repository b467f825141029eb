#include "libvornwout/export/output_export_html_data.h"

#include <utility>

#include "libvornwout/export/export_file_keywords.h"
#include "libvornwout/frame/yes_or_no.h"

namespace vornwout {
namespace {

constexpr const char* kHtml = "HTML";
constexpr const char* kStyling = "STYLING";
constexpr const char* kInteractLayers = "INTERACTLAYERS";

}  // namespace

OutputExportHTMLData::OutputExportHTMLData(CommandDescriptor& command, ExportHTMLSpec& option)
    : option_(option) {
  SubComDescriptor subcommand = documentSubcommand(kHtml);
  subcommand.addParamDesc(yesOrNo(kNotesCaptions));
  subcommand.addParamDesc(imageFormatKeyword());
  subcommand.addParamDesc(yesOrNo(kStyling));
  subcommand.addParamDesc(yesOrNo(kInteractLayers));
  command.addSubComDesc(std::move(subcommand));
}

int OutputExportHTMLData::populateSpecification(CommandSpec& spec, const ParserMessage& messages,
                                                std::string& documentFile) {
  const SubComObj* subcommand = spec.getSubComObj(kHtml);
  if (subcommand == nullptr) return 0;
  const bool accepted = readDocumentFileInto(option_, documentFile, *subcommand, messages);
  readFlag(*subcommand, kNotesCaptions, option_, &ExportHTMLSpec::setNotesAndCaptions);
  readEnumeration(*subcommand, kImageFormat, option_, &ExportHTMLSpec::setImageFormat);
  readFlag(*subcommand, kStyling, option_, &ExportHTMLSpec::setStyling);
  readFlag(*subcommand, kInteractLayers, option_, &ExportHTMLSpec::setInteractiveLayers);
  return countOption(option_, accepted);
}

}  // namespace vornwout
