// The text of a command as a document keeps it.
#pragma once

#include <string>

#include "platform/parser/token.h"

namespace vornwout {

/// The command as written, in UTF-8, with "***" in place of every token that is a password.
std::string commandLogText(const TokenizedCommand& command);

}  // namespace vornwout
