#include "libvornwout/commands/output_comment_data.h"

#include <algorithm>
#include <string_view>

#include "libvornwout/modify/xml/xml_utilities.h"
#include "platform/pivot/cell_color.h"
#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

constexpr const char* kLine = "LINE";
constexpr const char* kText = "TEXT";
constexpr const char* kColor = "COLOR";
constexpr const char* kBackgroundColor = "BGCOLOR";
constexpr const char* kBold = "BOLD";
constexpr const char* kWidth = "WIDTH";

constexpr int kLowestWidth = 10;  // points
constexpr int kHighestWidth = 1000;

ParamDescriptor boldDescriptor() {
  ParamDescriptor bold(kBold, UPSpecTypes::kDeclaredValue, false, true);
  for (const char* value : {"YES", "NO", "TRUE", "FALSE"}) bold.addStringValue(value);
  return bold;
}

/// Reads a text and replaces its date and time tokens; false after reporting when it is no one
/// text.
bool readText(const SubComObj& subcommand, const ParserMessage& messages, std::string& text) {
  const ParamObj* param = subcommand.getParamObj(kText);
  if (param == nullptr) return true;
  std::string written;
  bool literal = false;
  if (!param->getStringOrLiteral(written, literal)) {
    messages.WrongValueType(kText, "");
    return false;
  }
  text = XMLUtilities::insertDateTime(written);
  return true;
}

/// Reads a colour; one that is not known is reported and not used, and is no error.
void readColor(const SubComObj& subcommand, const char* keyword, const ParserMessage& messages,
               std::string& color) {
  const ParamObj* param = subcommand.getParamObj(keyword);
  if (param == nullptr) return;
  std::string value;
  bool literal = false;
  const bool isOneToken = param->getStringOrLiteral(value, literal);
  // Only one token can be a colour, whatever several would make together.
  if (isOneToken && isCommentColor(value)) {
    color = value;
  } else {
    messages.IgnoredParamValue(keyword, "",
                               isOneToken ? MessageArgument(value) : param->writtenText());
  }
}

void readBold(const SubComObj& subcommand, lineInfo& line) {
  const ParamObj* param = subcommand.getParamObj(kBold);
  if (param == nullptr) return;
  line.boldGiven = true;
  line.bold = param->isStringValueCase("YES") || param->isStringValueCase("TRUE");
}

int characterCount(const std::string& text) {
  int count = 0;
  for (const char* at = text.c_str(); *at != '\0'; at += VORNMBmbclen_A(at)) ++count;
  return count;
}

bool hasHexDigit(const std::string& text) {
  constexpr std::string_view kHexDigits = "0123456789abcdefABCDEF";
  // Searched for as characters: a trail byte may have the value of a digit.
  return std::any_of(kHexDigits.begin(), kHexDigits.end(),
                     [&](char digit) { return VORNMBstrchr_A(text.c_str(), digit) != nullptr; });
}

bool readLine(const SubComObj& subcommand, const ParserMessage& messages, lineInfo& line) {
  const bool textRead = readText(subcommand, messages, line.text);
  readColor(subcommand, kColor, messages, line.textColor);
  readColor(subcommand, kBackgroundColor, messages, line.backgroundColor);
  readBold(subcommand, line);
  return textRead;
}

}  // namespace

OutputCommentGlobalData::OutputCommentGlobalData(CommandDescriptor& descriptor) {
  SubComDescriptor main("", UPSpecTypes::kKeywords, false, false);
  main.addParamDesc(kColor, UPSpecTypes::kRawTokens, false, true);
  main.addParamDesc(kBackgroundColor, UPSpecTypes::kRawTokens, false, true);
  main.addParamDesc(kWidth, UPSpecTypes::kNumber, false, true);
  main.addParamDesc(boldDescriptor());
  main.addParamDesc(kText, UPSpecTypes::kRawTokens, false, true);
  descriptor.addSubComDesc(main);
}

bool OutputCommentGlobalData::populateSpecification(const CommandSpec& spec,
                                                    const ParserMessage& messages,
                                                    std::vector<lineInfo>& lines) {
  const SubComObj* main = spec.getSubComObj("");
  if (main == nullptr) return true;
  bool valid = readText(*main, messages, settings_.text);
  valid = readWidth(*main, messages) && valid;
  readColor(*main, kColor, messages, settings_.textColor);
  readColor(*main, kBackgroundColor, messages, settings_.backgroundColor);
  readBold(*main, settings_);
  // An empty quoted text is a text that was given. Colours and boldness reach this line, as every
  // other, as the command's own settings.
  if (main->getParamObj(kText) != nullptr) lines.emplace_back().text = settings_.text;
  return valid;
}

bool OutputCommentGlobalData::readWidth(const SubComObj& subcommand,
                                        const ParserMessage& messages) {
  const ParamObj* param = subcommand.getParamObj(kWidth);
  if (param == nullptr) return true;
  int width = 0;
  std::string written;
  if (!param->getIntegerValue(width) && param->getIntegerText(written)) {
    // An integer that no int holds lies outside the bounds all the same.
    messages.ParamValueBreakBdry(written, kLowestWidth, kHighestWidth, kWidth, "");
    return false;
  }
  if (!param->getIntegerValue(width, subcommand.name(), messages)) return false;
  if (width < kLowestWidth || width > kHighestWidth) {
    messages.ParamValueBreakBdry(width, kLowestWidth, kHighestWidth, kWidth, "");
    return false;
  }
  width_ = width;
  return true;
}

OutputCommentLineData::OutputCommentLineData(CommandDescriptor& descriptor) {
  SubComDescriptor line("", UPSpecTypes::kKeywords, false, false);
  line.setSubComName(kLine);
  line.setSubComRequired(false);
  line.setSubComRepeatable(true);
  line.addParamDesc(kText, UPSpecTypes::kRawTokens, false, true);
  line.addParamDesc(kColor, UPSpecTypes::kRawTokens, false, true);
  line.addParamDesc(kBackgroundColor, UPSpecTypes::kRawTokens, false, true);
  line.addParamDesc(boldDescriptor());
  descriptor.addSubComDesc(line);
}

bool OutputCommentLineData::populateSpecification(const CommandSpec& spec,
                                                  const ParserMessage& messages,
                                                  std::vector<lineInfo>& lines) {
  std::vector<const SubComObj*> subcommands;
  spec.getSubComObj(kLine, subcommands);
  bool valid = true;
  for (const SubComObj* subcommand : subcommands) {
    lineInfo& line = lines.emplace_back();
    valid = readLine(*subcommand, messages, line) && valid;
  }
  return valid;
}

bool isCommentColor(const std::string& value) {
  // Deliberately this lenient: one hexadecimal digit among the six characters suffices.
  if (value.starts_with('#') && characterCount(value) == 7 && hasHexDigit(value)) return true;
  // The 26 names are compared exactly, each in two spellings: "Black" is deliberately none of them.
  return namedCellColor(value).has_value();
}

}  // namespace vornwout
