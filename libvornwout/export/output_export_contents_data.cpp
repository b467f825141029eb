#include "libvornwout/export/output_export_contents_data.h"

#include <utility>

#include "libvornwout/export/export_keywords.h"

namespace vornwout {
namespace {

constexpr const char* kContents = "CONTENTS";
constexpr const char* kExport = "EXPORT";
constexpr const char* kLayers = "LAYERS";
constexpr const char* kModelViews = "MODELVIEWS";

}  // namespace

OutputExportContentsData::OutputExportContentsData(CommandDescriptor& command,
                                                   ExportContentsSpec& option)
    : option_(option) {
  SubComDescriptor contents(kContents, UPSpecTypes::kKeywords, false, false);
  contents.addParamDesc(enumerationKeyword<ExportContentsSpec::EXPORT_TYPE>(kExport));
  contents.addParamDesc(enumerationKeyword<ExportContentsSpec::LAYERS_TYPE>(kLayers));
  contents.addParamDesc(enumerationKeyword<ExportContentsSpec::MODELVIEWS_TYPE>(kModelViews));
  command.addSubComDesc(std::move(contents));
}

int OutputExportContentsData::populateSpecification(CommandSpec& spec,
                                                    const ParserMessage& /*messages*/) {
  const SubComObj* contents = spec.getSubComObj(kContents);
  if (contents == nullptr) return 0;
  readEnumeration(*contents, kExport, option_, &ExportContentsSpec::setExport);
  readEnumeration(*contents, kLayers, option_, &ExportContentsSpec::setLayers);
  // The views alone are always set: hosts see by them that the subcommand was given.
  option_.setModelViews(ExportContentsSpec::MODELVIEWS_TYPE::PRINTSETTING);
  readEnumeration(*contents, kModelViews, option_, &ExportContentsSpec::setModelViews);
  option_.setOptionPresent(true);
  return 1;
}

}  // namespace vornwout
