#include "libvornwout/stbprint/stb_print_data.h"

#include <utility>

namespace vornwout {
namespace {

constexpr const char* kProcedure = "PROCEDURE";
constexpr const char* kLanguage = "LANGUAGE";

std::string textOf(const SubComObj& main, const char* keyword) {
  std::string text;
  bool literal = false;
  if (const ParamObj* param = main.getParamObj(keyword)) param->getStringOrLiteral(text, literal);
  return text;
}

}  // namespace

void STBPrintGlobalData::declare(CommandDescriptor& command) {
  SubComDescriptor main("", UPSpecTypes::kKeywords, false, false);
  for (const char* keyword : {kProcedure, kLanguage}) {
    main.addParamDesc(keyword, UPSpecTypes::kRawTokens, false, true, UPSpecTypes::kBracketsRaw);
  }
  command.addSubComDesc(std::move(main));
}

STBPrintGlobalData STBPrintGlobalData::read(const CommandSpec& spec) {
  const SubComObj* main = spec.getSubComObj("");
  if (main == nullptr) return {};
  return {textOf(*main, kProcedure), textOf(*main, kLanguage)};
}

}  // namespace vornwout
