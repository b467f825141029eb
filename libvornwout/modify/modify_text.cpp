#include "libvornwout/modify/modify_text.h"

#include <utility>

#include "libvornwout/modify/xml/xml_modify_text.h"

namespace vornwout {
namespace {

constexpr const char* kTexts = "TEXTS";
constexpr const char* kText = "TEXT";
constexpr const char* kFont = "FONT";
constexpr const char* kFontSize = "FONTSIZE";
constexpr const char* kTextColor = "TEXTCOLOR";

std::string componentText(int component) {
  return component < 0 ? std::string() : std::to_string(component);
}

}  // namespace

ModifyText::ModifyText(GroupComDescriptor& group) {
  SubComDescriptor subcommand(kTexts, UPSpecTypes::kKeywords, false, false);
  subcommand.addParamDesc(modifierKeyword(kText, UPSpecTypes::kString));
  subcommand.addParamDesc(modifierKeyword(kFont, UPSpecTypes::kString));
  subcommand.addParamDesc(modifierKeyword(kFontSize, UPSpecTypes::kNumber));
  subcommand.addParamDesc(styleKeyword());
  subcommand.addParamDesc(colorKeyword(kTextColor));
  group.addSubComDesc(std::move(subcommand), false);
}

bool ModifyText::populateSpecification(const GroupComObj& group, const ParserMessage& messages) {
  data_ = {};
  const SubComObj* subcommand = group.getSubComObj(kTexts);
  if (subcommand == nullptr) return true;
  data_.specified = true;
  data_.textExpression = readExpandedText(*subcommand, kText).value_or("");
  if (const ParamObj* font = subcommand->getParamObj(kFont)) data_.fontFamily = readText(*font);
  // A size that is no number is ignored, deliberately; the same keyword of TABLECELLS refuses it.
  if (const ParamObj* size = subcommand->getParamObj(kFontSize)) {
    size->getNumberValue(data_.fontSize);
  }
  if (!readStyle(*subcommand, data_.style)) return false;
  // The message names the keyword TEXT, not the subcommand, deliberately.
  return readColor(*subcommand, kTextColor, kText, messages, data_.textColor);
}

void ModifyText::write(xmlModifyEvent& event) const {
  event.addTextObject();
  xmlModifyText(event.document()).populateTextInfo(*this);
}

std::string ModifyText::getTextRed() const { return componentText(data_.textColor.red); }
std::string ModifyText::getTextGreen() const { return componentText(data_.textColor.green); }
std::string ModifyText::getTextBlue() const { return componentText(data_.textColor.blue); }

}  // namespace vornwout
