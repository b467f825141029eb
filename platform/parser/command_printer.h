// Prints a parsed command in its canonical form; parsed again it gives the same command.
#pragma once

#include <string>

#include "platform/parser/command_spec.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

/// The command as text in the current encoding, with its final period: names as declared, one blank
/// between tokens, values as they were written, the command's own subcommands before the groups.
/// `spec` must have been parsed without error by the grammar `descriptor`, and still be current.
std::string printCommand(const CommandDescriptor& descriptor, const CommandSpec& spec);

}  // namespace vornwout
