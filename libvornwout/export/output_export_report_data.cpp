#include "libvornwout/export/output_export_report_data.h"

#include <array>
#include <utility>
#include <vector>

#include "libvornwout/export/export_file_keywords.h"
#include "libvornwout/frame/blame.h"
#include "libvornwout/frame/yes_or_no.h"
#include "libvornwout/modify/xml/xml_utilities.h"
#include "platform/strings/localized.h"
#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

constexpr const char* kReport = "REPORT";
constexpr const char* kTitle = "TITLE";
constexpr const char* kFilename = "FILENAME";
constexpr const char* kFormat = "FORMAT";
constexpr const char* kHtml = "HTML";
constexpr const char* kMht = "MHT";
constexpr const char* kExclude = "EXCLUDE";
constexpr const char* kUrl = "URL";
constexpr const char* kRestyle = "RESTYLE";

bool isOperator(const TokenInfoObj& token, OperatorCode code) {
  return token.getOperatorCode() == static_cast<int>(code);
}

bool isComma(const TokenInfoObj& token) { return isOperator(token, OperatorCode::kComma); }

struct Excluder {
  const char* keyword;
  void (ExportReportSpec::*exclude)();
};

constexpr std::array kExcluders = {
    Excluder{"TEXTS", &ExportReportSpec::excludeTexts},
    Excluder{"LOGS", &ExportReportSpec::excludeLogs},
    Excluder{"NOTES", &ExportReportSpec::excludeNotes},
    Excluder{"WARNINGS", &ExportReportSpec::excludeWarnings},
};

bool refuseLink(const TokenInfoObj& token, const ParserMessage& messages, const char* text) {
  blame(token);
  messages.GenericError(text);
  return false;
}

}  // namespace

OutputExportReportData::OutputExportReportData(CommandDescriptor& command, ExportReportSpec& option)
    : option_(option) {
  SubComDescriptor subcommand = documentSubcommand(kReport);
  subcommand.addParamDesc(exportKeyword(kTitle, UPSpecTypes::kRawTokens));
  subcommand.addParamDesc(exportKeyword(kFormat, UPSpecTypes::kDeclaredValue, {kHtml, kMht}));
  ParamDescriptor exclude = exportKeyword(kExclude, UPSpecTypes::kDeclaredList);
  for (const Excluder& excluder : kExcluders) exclude.addStringValue(excluder.keyword);
  subcommand.addParamDesc(std::move(exclude));
  subcommand.addParamDesc(exportKeyword(kUrl, UPSpecTypes::kRawTokens));
  subcommand.addParamDesc(yesOrNo(kRestyle));
  command.addSubComDesc(std::move(subcommand));
}

int OutputExportReportData::populateSpecification(CommandSpec& spec, const ParserMessage& messages,
                                                  std::string& documentFile) {
  const SubComObj* subcommand = spec.getSubComObj(kReport);
  if (subcommand == nullptr) return 0;
  bool fileExists = false;
  bool accepted = readDocumentFile(documentFile, subcommand, messages, &fileExists);
  const std::string escapedPath = accepted ? XMLUtilities::escapeHTML(documentFile) : "";
  if (accepted) option_.setDocumentFile(escapedPath);
  if (!readTitle(*subcommand, messages, escapedPath)) return 0;
  if (const ParamObj* format = subcommand->getParamObj(kFormat)) {
    option_.setMHT(format->isStringValueCase(kMht));
  }
  readExcluded(*subcommand);
  accepted = readLinks(*subcommand, messages) && accepted;
  // YES is what a report does anyway, and is deliberately not set.
  if (readYesNo(*subcommand, kRestyle) == false) option_.restyle(false);
  return countOption(option_, accepted);
}

bool OutputExportReportData::readTitle(const SubComObj& subcommand, const ParserMessage& messages,
                                       const std::string& escapedPath) {
  const ParamObj* param = subcommand.getParamObj(kTitle);
  if (param == nullptr) return true;
  std::string text;
  bool literal = false;
  const bool isText = param->getStringOrLiteral(text, literal);
  if (isText && literal) {
    option_.setTitle(XMLUtilities::escapeHTML(text));
    return true;
  }
  if (isText && AreStringsEqualCase(text, kFilename)) {
    option_.setTitle(escapedPath);
    return true;
  }
  messages.WrongValueType(kTitle, kReport);
  return false;
}

void OutputExportReportData::readExcluded(const SubComObj& subcommand) {
  const ParamObj* param = subcommand.getParamObj(kExclude);
  std::vector<std::string> words;
  if (param == nullptr || !param->getStringList(words)) return;
  for (const std::string& word : words) {
    for (const Excluder& excluder : kExcluders) {
      if (AreStringsEqualCase(word, excluder.keyword)) (option_.*excluder.exclude)();
    }
  }
}

bool OutputExportReportData::readLinks(const SubComObj& subcommand, const ParserMessage& messages) {
  constexpr const char* kInvalid = localizable("URL must specify a valid URL");
  const ParamObj* param = subcommand.getParamObj(kUrl);
  if (param == nullptr) return true;
  std::vector<TokenInfoObj> tokens;
  param->getTokenList(tokens);
  if (tokens.empty() || !isOperator(tokens.front(), OperatorCode::kLeftParen) ||
      !isOperator(tokens.back(), OperatorCode::kRightParen)) {
    messages.ParenRequired(kUrl);
    return false;
  }
  const std::size_t end = tokens.size() - 1;
  for (std::size_t i = 1;; i += 3) {
    // A pair that ends too early, and a list of nothing, have the closing parenthesis, an operator,
    // for the part that is missing.
    if (tokens[i].IsOperator()) return refuseLink(tokens[i], messages, kInvalid);
    if (tokens[i + 1].IsOperator()) return refuseLink(tokens[i + 1], messages, kInvalid);
    option_.addURL(tokens[i].getString(), tokens[i + 1].getString());
    if (i + 2 == end) return true;
    if (!isComma(tokens[i + 2])) {
      return refuseLink(tokens[i + 2], messages, localizable("URLs must be separated"));
    }
  }
}

}  // namespace vornwout
