#include "libvornwout/export/output_export_global_data.h"

#include "libvornwout/export/export_keywords.h"
#include "libvornwout/frame/constants.h"
#include "libvornwout/modify/xml/xml_utilities.h"

namespace vornwout {
namespace {

constexpr const char* kMain = "";
constexpr const char* kPrint = "PRINT";

}  // namespace

OutputExportGlobalData::OutputExportGlobalData(CommandDescriptor& command, ExportGlobalSpec& option)
    : option_(option) {
  SubComDescriptor main(kMain, UPSpecTypes::kKeywords, false, false);
  main.addParamDesc(kKeywordName, UPSpecTypes::kRawTokens, false, true);
  // Handed over twice, deliberately: first with NAME alone, then with PRINT as well, which takes
  // the place of the first.
  command.addSubComDesc(main);
  main.addParamDesc(enumerationKeyword<ExportGlobalSpec::PRINT_OPTION>(kPrint));
  command.addSubComDesc(main);
}

int OutputExportGlobalData::populateSpecification(CommandSpec& spec,
                                                  const ParserMessage& /*messages*/) {
  const SubComObj* main = spec.getSubComObj(kMain);
  if (main == nullptr) return 0;
  if (const ParamObj* name = main->getParamObj(kKeywordName)) {
    std::string text;
    bool literal = false;
    if (name->getStringOrLiteral(text, literal)) option_.setName(XMLUtilities::escapeHTML(text));
  }
  readEnumeration(*main, kPrint, option_, &ExportGlobalSpec::setPrintOption);
  option_.setOptionPresent(true);
  return 1;
}

}  // namespace vornwout
