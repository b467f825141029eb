// The help of the commands and the language reference, printed from the grammar that each command
// declares and from the message catalogue.
#pragma once

#include <string>
#include <string_view>

#include "platform/parser/descriptor.h"
#include "runner/command_table.h"

namespace vornwout {

/// How a command is written, one line per subcommand and keyword.
std::string usageOf(const Command& command);

/// One line per command of this version; where `start` is given, of those whose names begin with
/// its words, in any case.
std::string commandOverview(std::string_view start = {});

/// docs/language-reference.md: every command of this version with its keywords, values and bounds.
std::string languageReference();

/// docs/messages.md: every message with its severity and what to do about it.
std::string messageReference();

}  // namespace vornwout
