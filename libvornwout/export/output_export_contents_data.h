// CONTENTS: which objects, layers and views are exported.
#pragma once

#include <string>

#include "platform/exportspec/export_spec.h"
#include "platform/message/parser_message.h"
#include "platform/parser/command_spec.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

class OutputExportContentsData {
 public:
  /// Declares the subcommand.
  OutputExportContentsData(CommandDescriptor& command, ExportContentsSpec& option);

  /// 1 when the subcommand was given, else 0.
  int populateSpecification(CommandSpec& spec, const ParserMessage& messages);

 private:
  ExportContentsSpec& option_;
};

}  // namespace vornwout
