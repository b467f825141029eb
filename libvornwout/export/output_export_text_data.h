// TEXT: plain text, its tables drawn with characters.
#pragma once

#include <string>

#include "platform/exportspec/export_spec.h"
#include "platform/message/parser_message.h"
#include "platform/parser/command_spec.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

class OutputExportTextData {
 public:
  /// Declares the subcommand.
  OutputExportTextData(CommandDescriptor& command, ExportTextSpec& option);

  /// 1 when the subcommand was given and everything in it accepted, else 0. `documentFile` becomes
  /// the file that it names.
  int populateSpecification(CommandSpec& spec, const ParserMessage& messages,
                            std::string& documentFile);

 private:
  ExportTextSpec& option_;
};

}  // namespace vornwout
