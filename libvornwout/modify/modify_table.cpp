#include "libvornwout/modify/modify_table.h"

#include "libvornwout/frame/constants.h"
#include "libvornwout/modify/modify_values.h"
#include "libvornwout/modify/xml/xml_modify_table.h"
#include "libvornwout/modify/xml/xml_utilities.h"
#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

constexpr const char* kTable = "TABLE";
constexpr const char* kTableTitle = "TABLETITLE";
constexpr const char* kTableSummary = "TABLESUMMARY";
constexpr const char* kTranspose = "TRANSPOSE";
constexpr const char* kFormat = "FORMAT";
constexpr const char* kTableLook = "TLOOK";
constexpr const char* kSelectedLayer = "SELECTEDLAYER";
constexpr const char* kSort = "SORT";
constexpr const char* kColLabel = "COLLABEL";
constexpr const char* kColPosition = "COLPOSITION";
constexpr const char* kSortDirection = "SORTDIRECTION";
constexpr const char* kAscending = "ASCENDING";
constexpr const char* kDescending = "DESCENDING";
constexpr const char* kNone = "NONE";

ParamDescriptor sortDescriptor() {
  ParamDescriptor sort = modifierKeyword(kSort, UPSpecTypes::kQualifiers);
  sort.addQualifDesc(modifierKeyword(kColLabel, UPSpecTypes::kString));
  sort.addQualifDesc(modifierKeyword(kColPosition, UPSpecTypes::kInteger));
  return sort;
}

/// A layer or a category of a pair.
struct LayerMember {
  std::string label;
  std::int32_t position = -1;  ///< what a label leaves; 0 for the member's keyword
};

/// False after reporting a token that is no member; `keyword` is ALL for a layer, LAST for a
/// category.
bool readMember(const TokenInfoObj& token, const char* keyword, const ParserMessage& messages,
                LayerMember& member) {
  if (token.IsInteger()) {
    member.position = token.getInteger();
    if (member.position >= 1) return true;
    blame(token);
    messages.ParamNeedInteger(kSelectedLayer, kTable);
    return false;
  }
  if (token.IsLiteral()) {
    member.label = XMLUtilities::escapeHTML(token.getString());
    return true;
  }
  if (AreStringsEqualCase(token.getUpperString(), keyword)) {
    member.position = 0;
    return true;
  }
  blame(token);
  messages.InvalidParam(kSelectedLayer, kTable);
  return false;
}

}  // namespace

ModifyTable::ModifyTable(GroupComDescriptor& group) : sortDescriptor_(sortDescriptor()) {
  SubComDescriptor subcommand(kTable, UPSpecTypes::kKeywords, false, false);
  subcommand.addParamDesc(modifierKeyword(kTableTitle, UPSpecTypes::kString));
  subcommand.addParamDesc(modifierKeyword(kTableSummary, UPSpecTypes::kString));
  subcommand.addParamDesc(modifierKeyword(kTranspose, UPSpecTypes::kDeclaredValue, {kYes, kNo}));
  subcommand.addParamDesc(modifierKeyword(kFormat, UPSpecTypes::kString));
  subcommand.addParamDesc(modifierKeyword(kTableLook, UPSpecTypes::kRawTokens, {kNone}));
  subcommand.addParamDesc(modifierKeyword(kSelectedLayer, UPSpecTypes::kRawTokens));
  subcommand.addParamDesc(sortDescriptor_);
  subcommand.addParamDesc(
      modifierKeyword(kSortDirection, UPSpecTypes::kDeclaredValue, {kAscending, kDescending}));
  group.addSubComDesc(std::move(subcommand), false);
}

bool ModifyTable::populateSpecification(const GroupComObj& group, const ParserMessage& messages) {
  data_ = {};
  const SubComObj* subcommand = group.getSubComObj(kTable);
  if (subcommand == nullptr) return true;
  data_.specified = true;
  data_.tableTitle = readExpandedText(*subcommand, kTableTitle).value_or("");
  data_.tableSummary = readExpandedText(*subcommand, kTableSummary).value_or("");
  if (const ParamObj* transpose = subcommand->getParamObj(kTranspose)) {
    data_.transpose = transpose->isStringValueCase(kYes);
  }
  if (const ParamObj* format = subcommand->getParamObj(kFormat)) {
    data_.format = format->getUpStringToken();
  }
  bool accepted = true;
  if (const ParamObj* look = subcommand->getParamObj(kTableLook)) {
    accepted = readLook(*look, messages);
  }
  if (const ParamObj* sort = subcommand->getParamObj(kSort); sort != nullptr && accepted) {
    accepted = readSort(*sort, messages);
  }
  if (const ParamObj* direction = subcommand->getParamObj(kSortDirection);
      direction != nullptr && accepted) {
    accepted = readSortDirection(*direction, messages);
  }
  // Whatever came before, layers are looked at, so that their mistakes are told at once.
  if (const ParamObj* layers = subcommand->getParamObj(kSelectedLayer)) {
    accepted = readLayers(*layers, messages, accepted);
  }
  return accepted;
}

bool ModifyTable::readLook(const ParamObj& look, const ParserMessage& messages) {
  bool quoted = false;
  const bool isText = look.getStringOrLiteral(data_.tableLook, quoted);
  // In quotes NONE is a file of that name.
  if (!quoted && AreStringsEqualCase(data_.tableLook, kNone)) {
    data_.tableLook.clear();
    data_.useDefaultTableLook = true;
    return true;
  }
  if (isText && XMLUtilities::getFilePath(data_.tableLook, ".qtt")) return true;
  messages.FileNameInvalid(isText ? MessageArgument(data_.tableLook) : look.writtenText());
  return false;
}

bool ModifyTable::readSort(const ParamObj& sort, const ParserMessage& messages) {
  data_.sortSpecified = true;
  std::vector<ParamObj> qualifiers;
  bool accepted = sort.getStringQualList(sortDescriptor_, messages, qualifiers);
  for (const ParamObj& qualifier : qualifiers) {
    if (AreStringsEqualCase(qualifier.getParamName(), kColLabel)) {
      std::string label;
      if (qualifier.getLiteral(label)) {
        data_.sortLabel = XMLUtilities::escapeHTML(label);
      } else {
        blame(qualifier.placeToken());
        messages.InvalidParamValue(data_.sortLabel, kColLabel, kTable);
        accepted = false;
      }
    } else if (AreStringsEqualCase(qualifier.getParamName(), kColPosition)) {
      blame(qualifier.placeToken());
      accepted = qualifier.getIntegerValue(data_.sortPosition, kTable, messages) && accepted;
    }
  }
  // Position 0 beside a label is deliberately no contradiction: the label counts.
  if (data_.sortPosition > 0 && !data_.sortLabel.empty()) {
    blame(sort.placeToken());
    messages.ParamExclusive(kColPosition, kColLabel, kSort);
    accepted = false;
  }
  return accepted;
}

bool ModifyTable::readSortDirection(const ParamObj& direction, const ParserMessage& messages) {
  const bool descending = direction.isStringValueCase(kDescending);
  // The parser lets no other value pass. One that is declared some day and not read here is told
  // then, instead of being taken for ascending.
  if (!descending && !direction.isStringValueCase(kAscending)) {
    messages.InvalidParamValue(direction.writtenText(), kSortDirection, kSort);
    return false;
  }
  data_.sortAscending = !descending;
  return true;
}

bool ModifyTable::readLayers(const ParamObj& layers, const ParserMessage& messages, bool accepted) {
  std::vector<TokenInfoObj> tokens;
  layers.getTokenList(tokens);
  const std::size_t count = tokens.size();
  if (count % 2 != 0) {
    blame(tokens.back());
    messages.InvalidParamValue(tokens.back().messageText(), kSelectedLayer, kTable);
    return false;
  }
  if (count < 4) {
    messages.InvalidParamValue("", kSelectedLayer, kTable);
    return false;
  }
  if (tokens.front().token().code != OperatorCode::kLeftBracket ||
      tokens.back().token().code != OperatorCode::kRightBracket) {
    messages.SquareBracketRequired(kSelectedLayer, kTable);
    return false;
  }
  for (std::size_t i = 1; i + 1 < count; i += 2) {
    LayerMember layer;
    LayerMember category;
    accepted = readMember(tokens[i], "ALL", messages, layer) && accepted;
    accepted = readMember(tokens[i + 1], "LAST", messages, category) && accepted;
    if (!accepted) continue;
    // An empty label is deliberately none: it counts as position -1.
    if (layer.label.empty() && category.label.empty()) {
      data_.layerIntInt.emplace_back(layer.position, category.position);
    } else if (layer.label.empty()) {
      data_.layerIntStr.emplace_back(layer.position, std::move(category.label));
    } else if (category.label.empty()) {
      data_.layerStrInt.emplace_back(std::move(layer.label), category.position);
    } else {
      data_.layerStrStr.emplace_back(std::move(layer.label), std::move(category.label));
    }
  }
  return accepted;
}

void ModifyTable::write(xmlModifyEvent& event) const {
  event.addTableObject();
  xmlModifyTable(event.document()).populateTableInfo(*this);
}

std::string ModifyTable::getTableLook() const {
  return data_.tableLook.empty() ? std::string() : fetchFrom(data_.tableLook, "<tableProperties");
}

bool ModifyTable::getLayerPositions() const {
  return !data_.layerStrStr.empty() || !data_.layerStrInt.empty() || !data_.layerIntStr.empty() ||
         !data_.layerIntInt.empty();
}

}  // namespace vornwout
