#include "libvornwout/modify/modify_graphs.h"

#include <utility>

#include "libvornwout/modify/modify_values.h"
#include "libvornwout/modify/xml/xml_modify_graphs.h"
#include "libvornwout/modify/xml/xml_utilities.h"

namespace vornwout {
namespace {

constexpr const char* kGraphs = "GRAPHS";
constexpr const char* kTemplate = "CTEMPLATE";
constexpr const char* kStyleSheet = "VIZSTYLESHEET";

}  // namespace

ModifyGraphs::ModifyGraphs(GroupComDescriptor& group) {
  SubComDescriptor subcommand(kGraphs, UPSpecTypes::kKeywords, false, false);
  ParamDescriptor templates = modifierKeyword(kTemplate, UPSpecTypes::kLiteralList);
  templates.setBracketOption(UPSpecTypes::kBracketsOptionalList);
  subcommand.addParamDesc(std::move(templates));
  subcommand.addParamDesc(modifierKeyword(kStyleSheet, UPSpecTypes::kString));
  group.addSubComDesc(std::move(subcommand), false);
}

bool ModifyGraphs::populateSpecification(const GroupComObj& group, const ParserMessage& messages) {
  data_ = {};
  const SubComObj* subcommand = group.getSubComObj(kGraphs);
  if (subcommand == nullptr) return true;
  data_.specified = true;
  if (const ParamObj* templates = subcommand->getParamObj(kTemplate)) {
    std::vector<TokenInfoObj> tokens;
    templates->getTokenList(tokens);
    for (const TokenInfoObj& token : tokens) {
      std::string path = token.getString();
      if (!XMLUtilities::getFilePath(path, ".qgt")) {
        blame(token);
        messages.FileNameInvalid(path);
        return false;
      }
      data_.templatePaths.push_back(std::move(path));
    }
  }
  if (const ParamObj* styleSheet = subcommand->getParamObj(kStyleSheet)) {
    data_.styleSheet = readText(*styleSheet);
  }
  return true;
}

void ModifyGraphs::write(xmlModifyEvent& event) const {
  event.addGraphsObject();
  xmlModifyGraphs(event.document()).populateGraphInfo(getChartTemplates(), getStyleSheet());
}

std::vector<std::string> ModifyGraphs::getChartTemplates() const {
  std::vector<std::string> contents;
  for (const std::string& path : data_.templatePaths) {
    contents.push_back(fetchFrom(path, "<template"));
  }
  return contents;
}

}  // namespace vornwout
