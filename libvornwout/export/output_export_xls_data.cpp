#include "libvornwout/export/output_export_xls_data.h"

#include <utility>

#include "libvornwout/export/export_file_keywords.h"
#include "libvornwout/export/export_measures.h"
#include "libvornwout/frame/yes_or_no.h"

namespace vornwout {
namespace {

constexpr const char* kOperation = "OPERATION";
constexpr const char* kModifySheet = "MODIFYSHEET";
constexpr const char* kSheet = "SHEET";
constexpr const char* kLocation = "LOCATION";
constexpr const char* kStartCell = "STARTCELL";

using Operation = ExportXLSSpec::OPERATION_TYPE;
using Location = ExportXLSSpec::LOCATION_TYPE;

ParamDescriptor locationKeyword() {
  ParamDescriptor location =
      exportKeyword(kLocation, UPSpecTypes::kMeasure, {"LASTCOLUMN", "LASTROW"});
  location.addQualifDesc(exportKeyword(kStartCell, UPSpecTypes::kString));
  return location;
}

/// Reads OPERATION. A file that has to be there and is not is made instead, with a warning.
void readOperation(const SubComObj& subcommand, const ParserMessage& messages,
                   const std::string* missingFile, ExportXLSSpec& option) {
  readEnumeration(subcommand, kOperation, option, &ExportXLSSpec::setOperation);
  const Operation operation = option.getOperation();
  if (operation == Operation::CREATEFILE || missingFile == nullptr) return;
  messages.GenericWarning("^1 was specified, but file \"^2\" does not exist...",
                          Keywords<Operation>::kNames.at(static_cast<std::size_t>(operation)),
                          *missingFile);
  option.setOperation(Operation::CREATEFILE);
}

/// False after reporting a sheet that is no quoted text, or none where one is needed.
bool readSheet(const SubComObj& subcommand, const ParserMessage& messages, ExportXLSSpec& option) {
  // The operation as it was written counts, whatever became of it.
  const ParamObj* operation = subcommand.getParamObj(kOperation);
  const bool isNeeded = operation != nullptr && operation->isStringValueCase(kModifySheet);
  const ParamObj* param = subcommand.getParamObj(kSheet);
  if (param == nullptr) {
    if (isNeeded) messages.ParamNeedParam(kSheet, kOperation, kModifySheet);
    return !isNeeded;
  }
  std::string sheet;
  if (!param->getLiteral(sheet)) {
    messages.WrongValueType(kSheet, subcommand.name());
    return false;
  }
  option.setSheet(sheet);
  return true;
}

void readLocation(const SubComObj& subcommand, ExportXLSSpec& option) {
  const ParamObj* param = subcommand.getParamObj(kLocation);
  if (param == nullptr) return;
  std::string text;
  ParamObj startCell;
  if (param->getStringAndQual(text, startCell)) {
    option.setLocation(Location::STARTCELL);
    option.setStartCell(text);
  } else {
    readEnumeration(subcommand, kLocation, option, &ExportXLSSpec::setLocation);
  }
}

}  // namespace

OutputExportXLSData::OutputExportXLSData(CommandDescriptor& command, ExportXLSSpec& option,
                                         const char* subcommandName)
    : name_(subcommandName), option_(option) {
  SubComDescriptor subcommand = documentSubcommand(name_);
  subcommand.addParamDesc(enumerationKeyword<Operation>(kOperation));
  subcommand.addParamDesc(exportKeyword(kSheet, UPSpecTypes::kString));
  subcommand.addParamDesc(locationKeyword());
  subcommand.addParamDesc(yesOrNo(kNotesCaptions));
  command.addSubComDesc(std::move(subcommand));
}

int OutputExportXLSData::populateSpecification(CommandSpec& spec, const ParserMessage& messages,
                                               std::string& documentFile) {
  const SubComObj* subcommand = spec.getSubComObj(name_);
  if (subcommand == nullptr) return 0;
  bool fileExists = false;
  bool accepted = readDocumentFileInto(option_, documentFile, *subcommand, messages, &fileExists);
  readOperation(*subcommand, messages, accepted && !fileExists ? &documentFile : nullptr, option_);
  accepted = readSheet(*subcommand, messages, option_) && accepted;
  readLocation(*subcommand, option_);
  readFlag(*subcommand, kNotesCaptions, option_, &ExportXLSSpec::setNotesAndCaptions);
  return countOption(option_, accepted);
}

}  // namespace vornwout
