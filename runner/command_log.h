// The text of a command as a document keeps it.
#pragma once

#include <string>

#include "platform/parser/token.h"

namespace vornwout {

class CommandDescriptor;

/// The command as written, in UTF-8, with "***" in place of every token that is secret. Null for
/// `grammar` when there is no such command.
std::string commandLogText(const TokenizedCommand& command, const CommandDescriptor* grammar);

}  // namespace vornwout
