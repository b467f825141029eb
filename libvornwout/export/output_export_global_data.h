// What follows the command's name: which document is exported, and how much is told about it.
#pragma once

#include <string>

#include "platform/exportspec/export_spec.h"
#include "platform/message/parser_message.h"
#include "platform/parser/command_spec.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

class OutputExportGlobalData {
 public:
  /// Declares the subcommand.
  OutputExportGlobalData(CommandDescriptor& command, ExportGlobalSpec& option);

  /// 1 when any of it was given, else 0. A name that is no single text is ignored.
  int populateSpecification(CommandSpec& spec, const ParserMessage& messages);

 private:
  ExportGlobalSpec& option_;
};

}  // namespace vornwout
