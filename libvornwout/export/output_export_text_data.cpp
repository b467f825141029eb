#include "libvornwout/export/output_export_text_data.h"

#include <utility>

#include "libvornwout/export/export_file_keywords.h"
#include "libvornwout/frame/yes_or_no.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

constexpr const char* kText = "TEXT";
constexpr const char* kEncoding = "ENCODING";
constexpr const char* kColumnWidth = "COLUMNWIDTH";
constexpr const char* kAutofit = "AUTOFIT";
constexpr const char* kSeparator = "SEPARATOR";
constexpr const char* kRowBorder = "ROWBORDER";
constexpr const char* kColumnBorder = "COLUMNBORDER";

ParamDescriptor columnWidthKeyword() {
  ParamDescriptor width(kColumnWidth, UPSpecTypes::kInteger, false, false);
  width.addStringValue(kAutofit);
  width.setLowerBoundary(0.0);
  return width;
}

/// False after reporting a width that is no integer above 0.
bool readColumnWidth(const SubComObj& subcommand, const ParserMessage& messages,
                     ExportTextSpec& option) {
  const ParamObj* param = subcommand.getParamObj(kColumnWidth);
  if (param == nullptr) return true;
  if (param->isStringValueCase(kAutofit)) {
    option.setColumnWidth(0, "0", true);
    return true;
  }
  const std::string token = param->getStringToken();
  int width = 0;
  if (!param->getIntegerValue(width) || width <= 0) {
    reportNotAboveZero(messages, token, kColumnWidth);
    return false;
  }
  option.setColumnWidth(width, token, false);
  return true;
}

using SetByte = void (ExportTextSpec::*)(char);
using SetText = void (ExportTextSpec::*)(const std::string&);

/// Gives the first character of a text to a setter; an empty text sets nothing.
void readBorder(const SubComObj& subcommand, const char* keyword, ExportTextSpec& option,
                SetByte setByte, SetText setText) {
  const ParamObj* param = subcommand.getParamObj(keyword);
  std::string text;
  bool literal = false;
  if (param == nullptr || !param->getStringOrLiteral(text, literal) || text.empty()) return;
  text.resize(static_cast<std::size_t>(currentEncoding().characterLength(text)));
  if (text.size() == 1) {
    (option.*setByte)(text.front());
  } else {
    (option.*setText)(text);
  }
}

}  // namespace

OutputExportTextData::OutputExportTextData(CommandDescriptor& command, ExportTextSpec& option)
    : option_(option) {
  SubComDescriptor subcommand = documentSubcommand(kText);
  subcommand.addParamDesc(enumerationKeyword<ExportTextSpec::ENCODING_TYPE>(kEncoding));
  subcommand.addParamDesc(yesOrNo(kNotesCaptions));
  subcommand.addParamDesc(columnWidthKeyword());
  subcommand.addParamDesc(enumerationKeyword<ExportTextSpec::SEPARATOR_TYPE>(kSeparator));
  subcommand.addParamDesc(exportKeyword(kRowBorder, UPSpecTypes::kString));
  subcommand.addParamDesc(exportKeyword(kColumnBorder, UPSpecTypes::kString));
  subcommand.addParamDesc(imageFormatKeyword());
  command.addSubComDesc(std::move(subcommand));
}

int OutputExportTextData::populateSpecification(CommandSpec& spec, const ParserMessage& messages,
                                                std::string& documentFile) {
  const SubComObj* subcommand = spec.getSubComObj(kText);
  if (subcommand == nullptr) return 0;
  bool accepted = readDocumentFileInto(option_, documentFile, *subcommand, messages);
  readEnumeration(*subcommand, kEncoding, option_, &ExportTextSpec::setEncoding);
  readFlag(*subcommand, kNotesCaptions, option_, &ExportTextSpec::setNotesAndCaptions);
  accepted = readColumnWidth(*subcommand, messages, option_) && accepted;
  readEnumeration(*subcommand, kSeparator, option_, &ExportTextSpec::setSeparator);
  readBorder(*subcommand, kRowBorder, option_, &ExportTextSpec::setRowBorder,
             &ExportTextSpec::setRowBorder);
  readBorder(*subcommand, kColumnBorder, option_, &ExportTextSpec::setColumnBorder,
             &ExportTextSpec::setColumnBorder);
  readEnumeration(*subcommand, kImageFormat, option_, &ExportTextSpec::setImageFormat);
  return countOption(option_, accepted);
}

}  // namespace vornwout
