// The text of a command as a document keeps it.
#pragma once

#include <string>

#include "platform/parser/token.h"

namespace vornwout {

/// The command as written, in UTF-8, with "***" in place of every password: whatever stands behind
/// the word PASSWORD, quoted or not, save the keyword NONE. It works on tokens, not on parsed
/// values, so that a command that is refused gives nothing away either.
std::string commandLogText(const TokenizedCommand& command);

}  // namespace vornwout
