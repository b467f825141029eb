#include "libvornwout/modify/modify_table_cells.h"

#include <array>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include "libvornwout/frame/constants.h"
#include "libvornwout/modify/xml/xml_element.h"
#include "libvornwout/modify/xml/xml_utilities.h"
#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

constexpr const char* kTableCells = "TABLECELLS";
constexpr const char* kSelect = "SELECT";
constexpr const char* kPosition = "POSITION";
constexpr const char* kSelectDimension = "SELECTDIMENSION";
constexpr const char* kColumns = "COLUMNS";
constexpr const char* kRows = "ROWS";
constexpr const char* kBoth = "BOTH";
constexpr const char* kSelectCondition = "SELECTCONDITION";
constexpr const char* kAll = "ALL";
constexpr const char* kSysmis = "SYSMIS";
constexpr const char* kTop = "TOP";
constexpr const char* kBottom = "BOTTOM";
constexpr const char* kColumnWidth = "COLUMNWIDTH";
constexpr const char* kApplyTo = "APPLYTO";
constexpr const char* kRevertToDefault = "REVERTTODEFAULT";
constexpr const char* kFormat = "FORMAT";
constexpr const char* kFont = "FONT";
constexpr const char* kFontSize = "FONTSIZE";
constexpr const char* kTextColor = "TEXTCOLOR";
constexpr const char* kBackgroundColor = "BACKGROUNDCOLOR";
constexpr const char* kReplace = "REPLACE";

/// A kind of cell.
struct CellKind {
  const char* keyword;
  bool tableCell::*flag;
  const char* attribute = nullptr;  ///< none for a plural, which is another keyword of its kind
  std::size_t turn = 0;             ///< where the attribute stands among those of the kinds
};

/// In the order of their declaration; "body" is deliberately written before "significance".
constexpr std::array kCellKinds = {
    CellKind{"CORRELATION", &tableCell::correlation, "correlation", 0},
    CellKind{"CORRELATIONS", &tableCell::correlation},
    CellKind{"COUNT", &tableCell::count, "count", 1},
    CellKind{"MEAN", &tableCell::mean, "mean", 2},
    CellKind{"MEDIAN", &tableCell::median, "median", 3},
    CellKind{"PERCENT", &tableCell::percent, "percent", 4},
    CellKind{"RESIDUAL", &tableCell::residual, "residual", 5},
    CellKind{"RESIDUALS", &tableCell::residual},
    CellKind{"SIGNIFICANCE", &tableCell::significance, "significance", 7},
    CellKind{"BODY", &tableCell::body, "body", 6},
    CellKind{"HEADERS", &tableCell::headers, "headers", 8},
    CellKind{"FOOTNOTES", &tableCell::footnotes, "footnotes", 9},
    CellKind{"TITLE", &tableCell::title, "title", 10},
    CellKind{"CAPTION", &tableCell::caption, "caption", 11},
};

constexpr auto kWrittenKinds = [] {
  std::array<CellKind, 12> written{};
  for (const CellKind& kind : kCellKinds) {
    if (kind.attribute != nullptr) written[kind.turn] = kind;
  }
  return written;
}();

ParamDescriptor selectDescriptor() {
  ParamDescriptor select = modifierKeyword(kSelect, UPSpecTypes::kRawTokens);
  for (const CellKind& kind : kCellKinds) select.addStringValue(kind.keyword);
  select.addQualifDesc(modifierKeyword(kPosition, UPSpecTypes::kQualifierLists));
  return select;
}

ParamDescriptor conditionDescriptor() {
  ParamDescriptor condition = modifierKeyword(kSelectCondition, UPSpecTypes::kRawTokens);
  condition.addQualifDesc(modifierKeyword(kAll, UPSpecTypes::kNoValue));
  condition.addQualifDesc(modifierKeyword(kSysmis, UPSpecTypes::kNoValue));
  ParamDescriptor top = modifierKeyword(kTop, UPSpecTypes::kNumber);
  top.setLowerBoundary(1, kLowerInclusive);
  condition.addQualifDesc(std::move(top));
  ParamDescriptor bottom = modifierKeyword(kBottom, UPSpecTypes::kInteger);
  bottom.setLowerBoundary(1, kLowerInclusive);
  condition.addQualifDesc(std::move(bottom));
  return condition;
}

bool isOperator(const TokenInfoObj& token, OperatorCode code) { return token.token().code == code; }

/// True for a value in square brackets.
bool isBracketed(const std::vector<TokenInfoObj>& tokens) {
  return tokens.size() >= 2 && isOperator(tokens.front(), OperatorCode::kLeftBracket) &&
         isOperator(tokens.back(), OperatorCode::kRightBracket);
}

/// Reads one occurrence.
class CellReader {
 public:
  CellReader(const SubComObj& subcommand, const ParserMessage& messages)
      : subcommand_(subcommand), messages_(messages) {}

  /// The parameters in the order in which they are read. A mistake in SELECT hides none in
  /// SELECTDIMENSION, which has none to make; from the condition on the first mistake ends the
  /// reading.
  bool read() {
    const bool selected = readSelect();
    readDimension();
    return selected && readCondition() && readColumnWidth() && readTexts() && readFontSize() &&
           readStyle(subcommand_, cell_.style) &&
           readColor(subcommand_, kTextColor, kTableCells, messages_, cell_.textColor) &&
           readColor(subcommand_, kBackgroundColor, kTableCells, messages_,
                     cell_.backgroundColor) &&
           readReplacement();
  }

  tableCell& cell() { return cell_; }

 private:
  bool readSelect();
  bool readSelected(const std::vector<TokenInfoObj>& tokens, std::size_t& i);
  bool readPositions(const std::vector<TokenInfoObj>& tokens, std::size_t& i);
  void readDimension();
  bool readCondition();
  bool readExtremes(const ParamObj& condition);
  bool readExpression(const ParamObj& condition, const std::vector<TokenInfoObj>& tokens);
  bool readColumnWidth();
  bool readTexts();
  bool readFontSize();
  bool readReplacement();
  std::string upperText(const char* keyword) const;

  const SubComObj& subcommand_;
  const ParserMessage& messages_;
  tableCell cell_;
};

bool CellReader::readSelect() {
  const ParamObj* select = subcommand_.getParamObj(kSelect);
  if (select == nullptr) {
    blame(subcommand_.nameToken());
    messages_.ParamRequiredForSubCom(kSelect, kTableCells);
    return false;
  }
  std::vector<TokenInfoObj> tokens;
  select->getTokenList(tokens);
  if (!isBracketed(tokens)) {
    messages_.SquareBracketRequired(kSelect, kTableCells);
    return false;
  }
  bool accepted = true;
  for (std::size_t i = 1; i + 1 < tokens.size(); ++i) {
    accepted = readSelected(tokens, i) && accepted;
  }
  return accepted;
}

/// Reads what begins at token `i` and leaves `i` at its last token.
bool CellReader::readSelected(const std::vector<TokenInfoObj>& tokens, std::size_t& i) {
  const TokenInfoObj& token = tokens[i];
  if (token.IsLiteral()) {
    cell_.selectLabels.push_back(XMLUtilities::escapeHTML(token.getString()));
    return true;
  }
  const std::string keyword = token.getUpperString();
  if (AreStringsEqualCase(keyword, kPosition)) return readPositions(tokens, i);
  for (const CellKind& kind : kCellKinds) {
    if (!AreStringsEqualCase(keyword, kind.keyword)) continue;
    cell_.*kind.flag = true;
    return true;
  }
  blame(token);
  messages_.InvalidParam(token.getString(), kTableCells);
  return false;
}

bool CellReader::readPositions(const std::vector<TokenInfoObj>& tokens, std::size_t& i) {
  if (!isOperator(tokens[i + 1], OperatorCode::kLeftParen)) {
    blame(tokens[i]);
    messages_.ParenRequired(kTableCells);
    return false;
  }
  const TokenInfoObj& position = tokens[i];
  bool integers = true;
  bool any = false;
  for (i += 2; i + 1 < tokens.size() && !isOperator(tokens[i], OperatorCode::kRightParen); ++i) {
    any = true;
    if (tokens[i].IsInteger()) {
      cell_.selectPositions.push_back(tokens[i].getInteger());
    } else {
      if (integers) blame(tokens[i]);
      integers = false;
    }
  }
  if (!any) blame(position);
  if (any && integers) return true;
  messages_.ParamNeedIntegerList(kPosition, kTableCells);
  return false;
}

void CellReader::readDimension() {
  const ParamObj* dimension = subcommand_.getParamObj(kSelectDimension);
  if (dimension == nullptr) return;
  if (dimension->isStringValueCase(kColumns)) {
    cell_.selectColumns = true;
    cell_.selectBoth = false;
  } else if (dimension->isStringValueCase(kRows)) {
    cell_.selectColumns = false;
    cell_.selectBoth = false;
  } else {
    cell_.selectBoth = true;
  }
}

bool CellReader::readCondition() {
  const ParamObj* condition = subcommand_.getParamObj(kSelectCondition);
  if (condition == nullptr) return true;
  std::vector<TokenInfoObj> tokens;
  condition->getTokenList(tokens);
  const std::string first = tokens.empty() ? std::string() : tokens.front().getUpperString();
  if (AreStringsEqualCase(first, kAll)) {
    cell_.selectAll = true;
    return true;
  }
  if (AreStringsEqualCase(first, kSysmis)) {
    cell_.selectMissing = true;
    return true;
  }
  if (AreStringsEqualCase(first, kTop) || AreStringsEqualCase(first, kBottom)) {
    return readExtremes(*condition);
  }
  return readExpression(*condition, tokens);
}

bool CellReader::readExtremes(const ParamObj& condition) {
  std::vector<ParamObj> qualifiers;
  bool accepted = condition.getStringQualList(*condition.descriptor(), messages_, qualifiers);
  for (const ParamObj& qualifier : qualifiers) {
    const bool isTop = AreStringsEqualCase(qualifier.getParamName(), kTop);
    const bool isBottom = AreStringsEqualCase(qualifier.getParamName(), kBottom);
    if (!isTop && !isBottom) continue;
    if (!qualifier.getIntegerValue(isTop ? cell_.top : cell_.bottom)) {
      blame(qualifier.placeToken());
      // TOP is deliberately named for a bad BOTTOM, too.
      messages_.ParamNeedInteger(kTop, kTableCells);
      accepted = false;
    }
  }
  return accepted;
}

bool CellReader::readExpression(const ParamObj& condition,
                                const std::vector<TokenInfoObj>& tokens) {
  std::string expression;
  if (tokens.size() > 2 && isBracketed(tokens)) {
    // Nothing is put between the tokens: whoever reads the expression must part them.
    for (std::size_t i = 1; i + 1 < tokens.size(); ++i) expression += tokens[i].getString();
  }
  cell_.selectExpression = XMLUtilities::escapeHTML(expression);
  if (!cell_.selectExpression.empty()) return true;
  messages_.InvalidParamValue(condition.writtenText(), kSelectCondition, kTableCells);
  return false;
}

bool CellReader::readColumnWidth() {
  const ParamObj* width = subcommand_.getParamObj(kColumnWidth);
  if (width == nullptr) return true;
  std::string text;
  ParamObj unit;
  const bool hasUnit = width->getStringAndQual(text, unit);
  double number = 0;
  const bool isNumber = hasUnit ? unit.getNumberValue(number) : false;
  const double points = number * pointsOfUnit(unit.getParamName()).value_or(0);
  if (isNumber && points >= 1 && points < std::numeric_limits<std::int32_t>::max() + 1.0) {
    cell_.columnWidth = static_cast<std::int32_t>(points);
    return true;
  }
  // A width without a unit is none.
  messages_.InvalidParamValue(text, kColumnWidth, kTableCells);
  return false;
}

bool CellReader::readTexts() {
  cell_.applyTo = upperText(kApplyTo);
  if (const ParamObj* revert = subcommand_.getParamObj(kRevertToDefault)) {
    cell_.revertToDefault = revert->isStringValueCase(kYes);
  }
  cell_.format = upperText(kFormat);
  cell_.font = upperText(kFont);
  return true;
}

bool CellReader::readFontSize() {
  const ParamObj* size = subcommand_.getParamObj(kFontSize);
  return size == nullptr || size->getNumberValue(cell_.fontSize, kTableCells, messages_);
}

bool CellReader::readReplacement() {
  const ParamObj* replace = subcommand_.getParamObj(kReplace);
  if (replace == nullptr) return true;
  cell_.replaceSpecified = true;
  if (replace->getLiteral(cell_.replaceString)) {
    cell_.replaceEmpty = cell_.replaceString.empty();
    return true;
  }
  if (replace->getNumberValue(cell_.replaceValue)) return true;
  std::vector<TokenInfoObj> tokens;
  replace->getTokenList(tokens);
  messages_.InvalidParamValue(tokens.empty() ? MessageArgument() : tokens.front().messageText(),
                              kReplace, kTableCells);
  return false;
}

std::string CellReader::upperText(const char* keyword) const {
  const ParamObj* param = subcommand_.getParamObj(keyword);
  return param == nullptr ? std::string() : param->getUpStringToken();
}

/// The colour's components, each where it was given.
void appendColor(std::string& document, const char* red, const char* green, const char* blue,
                 const RgbColor& color) {
  const auto component = [&](const char* name, int value) {
    if (value >= 0) ModifyTableCells::Data::append(document, name, value);
  };
  component(red, color.red);
  component(green, color.green);
  component(blue, color.blue);
}

void appendText(std::string& document, const char* name, const std::string& text) {
  if (!text.empty()) ModifyTableCells::Data::append(document, name, text);
}

/// The texts with ";" between them; an empty one keeps its place.
std::string joined(const std::vector<std::string>& texts) {
  std::string all;
  for (std::size_t i = 0; i < texts.size(); ++i) all.append(i == 0 ? "" : ";").append(texts[i]);
  return all;
}

std::string joined(const std::vector<std::int32_t>& numbers) {
  std::string all;
  for (const std::int32_t number : numbers) {
    all.append(all.empty() ? "" : ";").append(std::to_string(number));
  }
  return all;
}

/// Which cells. The labels go under a name that says "expression" and the expression under
/// "selectCondition", deliberately: a host reads these names.
void appendSelection(std::string& document, const tableCell& cell) {
  using Data = ModifyTableCells::Data;
  for (const CellKind& kind : kWrittenKinds) {
    if (cell.*kind.flag) Data::append(document, kind.attribute, "true");
  }
  if (!cell.selectLabels.empty()) {
    Data::append(document, "selectExpression", joined(cell.selectLabels));
  }
  if (!cell.selectPositions.empty()) {
    Data::append(document, "selectPosition", joined(cell.selectPositions));
  }
  Data::append(document, "selectColumns",
               cell.selectBoth ? "both" : (cell.selectColumns ? "true" : "false"));
}

/// Under which condition. TOP beside BOTTOM writes the attribute twice, deliberately.
void appendCondition(std::string& document, const tableCell& cell) {
  const auto append = [&](const std::string& value) {
    ModifyTableCells::Data::append(document, "selectCondition", value);
  };
  if (cell.selectAll) append("all");
  if (cell.selectMissing) append("missing");
  if (cell.top >= 1) append("top(" + std::to_string(cell.top) + ")");
  if (cell.bottom >= 1) {
    append("bottom(" + std::to_string(cell.bottom) + ")");
  } else if (!cell.selectExpression.empty()) {
    append(cell.selectExpression);
  }
}

/// What is done to the cells.
void appendChanges(std::string& document, const tableCell& cell) {
  using Data = ModifyTableCells::Data;
  if (cell.revertToDefault) Data::append(document, "revertToDefault", "true");
  const FontStyle& style = cell.style;
  if (style.boldSpecified) appendAttribute(document, "bold", style.bold);
  if (style.underlineSpecified) appendAttribute(document, "underline", style.underline);
  if (style.italicSpecified) appendAttribute(document, "italic", style.italic);
  if (cell.columnWidth > 0) Data::append(document, "columnWidth", cell.columnWidth);
  if (cell.fontSize > 0) appendAttribute(document, "fontSize", cell.fontSize);
  appendColor(document, "textRed", "textGreen", "textBlue", cell.textColor);
  appendColor(document, "backgroundRed", "backgroundGreen", "backgroundBlue", cell.backgroundColor);
  appendText(document, "applyTo", cell.applyTo);
  appendText(document, "format", cell.format);
  appendText(document, "font", cell.font);
  if (!cell.replaceSpecified) return;
  // An empty replacement goes as a number that says nothing, deliberately.
  if (!cell.replaceString.empty() && !cell.replaceEmpty) {
    Data::append(document, "replace", cell.replaceString);
  } else {
    appendAttribute(document, "replaceValue", cell.replaceValue);
  }
}

}  // namespace

void ModifyTableCells::Data::append(std::string& document, const char* name,
                                    const std::string& value) {
  appendAttribute(document, name, value);
}

void ModifyTableCells::Data::append(std::string& document, const char* name, int value) {
  appendAttribute(document, name, value);
}

ModifyTableCells::ModifyTableCells(GroupComDescriptor& group) {
  SubComDescriptor subcommand(kTableCells, UPSpecTypes::kKeywords, false, true);
  subcommand.addParamDesc(selectDescriptor());
  subcommand.addParamDesc(
      modifierKeyword(kSelectDimension, UPSpecTypes::kDeclaredValue, {kColumns, kRows, kBoth}));
  subcommand.addParamDesc(conditionDescriptor());
  ParamDescriptor width = modifierKeyword(kColumnWidth, UPSpecTypes::kMeasure);
  for (const LengthUnit& unit : kLengthUnits) {
    width.addQualifDesc(modifierKeyword(unit.keyword, UPSpecTypes::kRawTokens));
  }
  // Handed over twice, deliberately, the second time with its bound; that one counts. The bound is
  // no bound of the number as it is given, but of the points that it makes.
  subcommand.addParamDesc(width);
  width.setLowerBoundary(1, kLowerInclusive);
  subcommand.addParamDesc(std::move(width));
  subcommand.addParamDesc(modifierKeyword(
      kApplyTo, UPSpecTypes::kDeclaredValue,
      {"CELL", "COLUMN", "ROW", "COLUMNDATA", "ROWDATA", "COLUMNHEADER", "ROWHEADER"}));
  subcommand.addParamDesc(
      modifierKeyword(kRevertToDefault, UPSpecTypes::kDeclaredValue, {kNo, kYes}));
  subcommand.addParamDesc(modifierKeyword(kFormat, UPSpecTypes::kString));
  subcommand.addParamDesc(modifierKeyword(kFont, UPSpecTypes::kString));
  ParamDescriptor fontSize = modifierKeyword(kFontSize, UPSpecTypes::kNumber);
  fontSize.setLowerBoundary(1, kLowerInclusive);
  subcommand.addParamDesc(std::move(fontSize));
  subcommand.addParamDesc(styleKeyword());
  subcommand.addParamDesc(colorKeyword(kTextColor));
  subcommand.addParamDesc(colorKeyword(kBackgroundColor));
  subcommand.addParamDesc(modifierKeyword(kReplace, UPSpecTypes::kRawTokens));
  group.addSubComDesc(std::move(subcommand), false);
}

bool ModifyTableCells::populateSpecification(const GroupComObj& group,
                                             const ParserMessage& messages) {
  data_.cells.clear();
  std::vector<const SubComObj*> occurrences;
  group.getSubComObj(kTableCells, occurrences);
  for (const SubComObj* occurrence : occurrences) {
    CellReader reader(*occurrence, messages);
    const bool accepted = reader.read();
    data_.cells.push_back(std::move(reader.cell()));
    if (!accepted) return false;
  }
  return true;
}

void ModifyTableCells::write(xmlModifyEvent& event) const {
  event.addTableCellsObject();
  populateTableCellsInfo(event.document());
}

void ModifyTableCells::populateTableCellsInfo(std::string& document) const {
  for (const tableCell& cell : data_.cells) {
    XmlElement element(document, "tableCells");
    appendSelection(document, cell);
    appendCondition(document, cell);
    appendChanges(document, cell);
    element.end();
  }
}

}  // namespace vornwout
