// PPT: slides. Whether they can be made is found out by the host.
#pragma once

#include <string>

#include "platform/exportspec/export_spec.h"
#include "platform/message/parser_message.h"
#include "platform/parser/command_spec.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

class OutputExportPPTData {
 public:
  /// Declares the subcommand.
  OutputExportPPTData(CommandDescriptor& command, ExportPPTSpec& option);

  /// 1 when the subcommand was given and everything in it accepted, else 0. `documentFile` becomes
  /// the file that it names.
  int populateSpecification(CommandSpec& spec, const ParserMessage& messages,
                            std::string& documentFile);

 private:
  ExportPPTSpec& option_;
};

}  // namespace vornwout
