// Names the place of a message more exactly than what was read last: the member of a list that is
// at fault, not the list.
#pragma once

#include "platform/parser/token_sequence.h"

namespace vornwout {

/// Makes a token the place of the next message. A null token stands for the command itself.
void blame(const Token* token);
void blame(const TokenInfoObj& token);

}  // namespace vornwout
