// PNG images.
#pragma once

#include <string>

#include "platform/exportspec/export_spec.h"
#include "platform/message/parser_message.h"
#include "platform/parser/command_spec.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

class OutputExportPNGData {
 public:
  /// Declares the subcommand.
  OutputExportPNGData(CommandDescriptor& command, ExportPNGSpec& option);

  /// 1 when the subcommand was given and its values accepted, else 0. `imageRoot` becomes the root
  /// that it names; without one it is accepted all the same, after a message if it is required.
  int populateSpecification(CommandSpec& spec, const ParserMessage& messages,
                            bool imageRootRequired, std::string& imageRoot);

 private:
  ExportPNGSpec& option_;
};

}  // namespace vornwout
