// Which tokens of a command are passwords.
//
// It goes by the words as they are written, not by what was parsed, so that a command that is
// refused gives nothing away either: what is kept of a command or said about it shows "***"
// instead.
#pragma once

#include <vector>

#include "platform/parser/token.h"

namespace vornwout {

/// One flag per token of the command: true for what stands behind the word PASSWORD up to the next
/// keyword or subcommand, save the keyword NONE, and for every text behind PASSPROTECT.
std::vector<bool> passwordTokens(const TokenizedCommand& command);

}  // namespace vornwout
