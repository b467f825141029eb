// HTML: a page, whose charts may be images of their own.
#pragma once

#include <string>

#include "platform/exportspec/export_spec.h"
#include "platform/message/parser_message.h"
#include "platform/parser/command_spec.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

class OutputExportHTMLData {
 public:
  /// Declares the subcommand.
  OutputExportHTMLData(CommandDescriptor& command, ExportHTMLSpec& option);

  /// 1 when the subcommand was given and everything in it accepted, else 0. `documentFile` becomes
  /// the file that it names.
  int populateSpecification(CommandSpec& spec, const ParserMessage& messages,
                            std::string& documentFile);

 private:
  ExportHTMLSpec& option_;
};

}  // namespace vornwout
