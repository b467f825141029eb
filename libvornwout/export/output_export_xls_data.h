// XLS, XLSX and XLSM: a sheet of a workbook, new or to be changed.
//
// There is one object for each of the three; they differ in their name and in what they fill.
#pragma once

#include <string>

#include "platform/exportspec/export_spec.h"
#include "platform/message/parser_message.h"
#include "platform/parser/command_spec.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

class OutputExportXLSData {
 public:
  /// Declares the subcommand.
  OutputExportXLSData(CommandDescriptor& command, ExportXLSSpec& option,
                      const char* subcommandName);

  /// 1 when the subcommand was given and everything in it accepted, else 0. `documentFile` becomes
  /// the file that it names.
  int populateSpecification(CommandSpec& spec, const ParserMessage& messages,
                            std::string& documentFile);

 private:
  const char* name_;
  ExportXLSSpec& option_;
};

}  // namespace vornwout
