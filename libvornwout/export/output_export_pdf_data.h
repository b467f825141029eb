// PDF.
#pragma once

#include <string>

#include "platform/exportspec/export_spec.h"
#include "platform/message/parser_message.h"
#include "platform/parser/command_spec.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

class OutputExportPDFData {
 public:
  /// Declares the subcommand.
  OutputExportPDFData(CommandDescriptor& command, ExportPDFSpec& option);

  /// 1 when the subcommand was given and everything in it accepted, else 0. `documentFile` becomes
  /// the file that it names.
  int populateSpecification(CommandSpec& spec, const ParserMessage& messages,
                            std::string& documentFile);

 private:
  ExportPDFSpec& option_;
};

}  // namespace vornwout
