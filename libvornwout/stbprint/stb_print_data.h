// The grammar and the values of STB PRINT.
#pragma once

#include <string>

#include "platform/parser/command_spec.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

/// What the command is asked to print, in the current encoding. Both are taken as they are written:
/// one that names nothing makes tables without rows.
struct STBPrintGlobalData {
  std::string procedure;  ///< the bundle's file name; empty for all bundles
  std::string language;   ///< the language's directory; empty for all languages

  /// Declares PROCEDURE and LANGUAGE behind the command's name.
  static void declare(CommandDescriptor& command);
  /// The values of a parsed command.
  static STBPrintGlobalData read(const CommandSpec& spec);
};

}  // namespace vornwout
