// DOC: a document of a word processor.
#pragma once

#include <string>

#include "platform/exportspec/export_spec.h"
#include "platform/message/parser_message.h"
#include "platform/parser/command_spec.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

class OutputExportDocData {
 public:
  /// Declares the subcommand.
  OutputExportDocData(CommandDescriptor& command, ExportDocSpec& option);

  /// 1 when the subcommand was given and everything in it accepted, else 0. `documentFile` becomes
  /// the file that it names.
  int populateSpecification(CommandSpec& spec, const ParserMessage& messages,
                            std::string& documentFile);

 private:
  ExportDocSpec& option_;
};

}  // namespace vornwout
