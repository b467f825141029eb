#include "libvornwout/modify/modify_properties.h"

#include <array>
#include <utility>
#include <vector>

#include "libvornwout/frame/constants.h"
#include "libvornwout/modify/modify_values.h"
#include "libvornwout/modify/xml/xml_element.h"
#include "libvornwout/modify/xml/xml_utilities.h"
#include "platform/strings/localized.h"
#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

constexpr const char* kObjectProperties = "OBJECTPROPERTIES";
constexpr const char* kVisible = "VISIBLE";
constexpr const char* kOutlineLabel = "OUTLINELABEL";
constexpr const char* kSize = "SIZE";
constexpr const char* kPercent = "PERCENT";
constexpr const char* kProportional = "PROPORTIONAL";

/// Stands for percent among the factors to points, and is taken off again, so that percent stay as
/// given.
constexpr double kPercentFactor = 100;
constexpr double kMaxPercent = 400;
constexpr double kMaxPoints = 2000;
constexpr double kLeastWidth = 1;   // points
constexpr double kLeastHeight = 0;  // a height may deliberately be less than a width

using Visible = ModifyProperties::Visible;

struct Visibility {
  Visible visible;
  const char* keyword;
  const char* written;
};

constexpr std::array kVisibilities = {
    Visibility{Visible::kAsIs, "ASIS", "asis"},
    Visibility{Visible::kYes, vornwout::kYes, "yes"},
    Visibility{Visible::kNo, vornwout::kNo, "no"},
};

/// One member of a size into `member`; false after reporting.
bool readMember(const TokenInfoObj& token, double factor, double least, const char* tooSmall,
                const ParserMessage& messages, double& member) {
  if (token.IsNumber()) {
    member = token.getNumber() * factor;
    if (member >= least) return true;
    blame(token);
    messages.GenericError(tooSmall);
    return false;
  }
  if (AreStringsEqualCase(token.getUpperString(), kProportional)) {
    member = 0;
    return true;
  }
  blame(token);
  messages.InvalidParam(kSize, kObjectProperties);
  return false;
}

void positiveAttribute(XmlElement& element, const char* name, double value) {
  if (value > 0) element.attribute(name, value);
}

}  // namespace

bool ModifyProperties::Data::getSize(const TokenInfoObj& widthToken,
                                     const TokenInfoObj& heightToken, const ParserMessage& messages,
                                     double factor) {
  if (!readMember(widthToken, factor, kLeastWidth,
                  localizable("Value for WIDTH must be a positive number"), messages, width)) {
    return false;
  }
  const bool accepted =
      readMember(heightToken, factor, kLeastHeight,
                 localizable("Value for HEIGHT must be a positive number"), messages, height);
  if (factor == kPercentFactor) {
    widthPCT = width / kPercentFactor;
    heightPCT = height / kPercentFactor;
    width = -1;
    height = -1;
  }
  return accepted;
}

ModifyProperties::ModifyProperties(GroupComDescriptor& group) {
  SubComDescriptor subcommand(kObjectProperties, UPSpecTypes::kKeywords, false, false);
  ParamDescriptor visible = modifierKeyword(kVisible, UPSpecTypes::kDeclaredValue);
  for (const Visibility& known : kVisibilities) visible.addStringValue(known.keyword);
  subcommand.addParamDesc(std::move(visible));
  subcommand.addParamDesc(modifierKeyword(kOutlineLabel, UPSpecTypes::kString));
  ParamDescriptor size = modifierKeyword(kSize, UPSpecTypes::kMeasure);
  size.addQualifDesc(modifierKeyword(kPercent, UPSpecTypes::kRawTokens));
  for (const LengthUnit& unit : kLengthUnits) {
    size.addQualifDesc(modifierKeyword(unit.keyword, UPSpecTypes::kRawTokens));
  }
  subcommand.addParamDesc(std::move(size));
  group.addSubComDesc(std::move(subcommand), false);
}

bool ModifyProperties::populateSpecification(const GroupComObj& group,
                                             const ParserMessage& messages) {
  data_ = {};
  const SubComObj* subcommand = group.getSubComObj(kObjectProperties);
  if (subcommand == nullptr) return true;
  data_.specified = true;
  if (const ParamObj* visible = subcommand->getParamObj(kVisible)) {
    for (const Visibility& known : kVisibilities) {
      if (visible->isStringValueCase(known.keyword)) data_.visible = known.visible;
    }
  }
  data_.label = readExpandedText(*subcommand, kOutlineLabel).value_or("");
  const ParamObj* size = subcommand->getParamObj(kSize);
  return size == nullptr || readSize(*size, messages);
}

bool ModifyProperties::readSize(const ParamObj& size, const ParserMessage& messages) {
  std::string text;
  ParamObj unit;
  const bool hasUnit = size.getStringAndQual(text, unit);
  std::vector<TokenInfoObj> tokens;
  size.getTokenList(tokens);
  if (tokens.size() != 2) {
    messages.InvalidParam(kSize, kObjectProperties);
    return false;
  }
  // A size without a unit is ignored, deliberately.
  if (hasUnit) {
    const bool isPercent = AreStringsEqualCase(unit.getParamName(), kPercent);
    const double factor =
        isPercent ? kPercentFactor : pointsOfUnit(unit.getParamName()).value_or(1);
    // Deliberately without regard to the result: a bad member is reported and the rest is sent.
    data_.getSize(tokens[0], tokens[1], messages, factor);
  }
  const bool isTooWide = data_.widthPCT > kMaxPercent || data_.width > kMaxPoints;
  const bool isTooHigh = data_.heightPCT > kMaxPercent || data_.height > kMaxPoints;
  if (!isTooWide && !isTooHigh) return true;
  blame(tokens[isTooWide ? 0 : 1]);
  messages.InvalidParam(kSize, kObjectProperties);
  return false;
}

void ModifyProperties::write(xmlModifyEvent& event) const {
  event.addObjectPropertiesObject();
  populateObjectProperties(event.document());
}

void ModifyProperties::populateObjectProperties(std::string& document) const {
  if (!data_.specified) return;
  XmlElement element(document, "objectProperties");
  for (const Visibility& known : kVisibilities) {
    if (known.visible == data_.visible) element.attribute("visible", known.written);
  }
  positiveAttribute(element, "sizeWidth", data_.width);
  positiveAttribute(element, "sizeHeight", data_.height);
  positiveAttribute(element, "sizeWidthPCT", data_.widthPCT);
  positiveAttribute(element, "sizeHeightPCT", data_.heightPCT);
  if (!data_.label.empty()) element.attribute("label", XMLUtilities::genericToUTF8(data_.label));
  element.end();
}

}  // namespace vornwout
