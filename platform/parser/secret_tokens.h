// Which tokens of a command are secret: passwords, and what may be one.
//
// A keyword's descriptor says that its value is a secret. The tokens are walked in the order in
// which they are written rather than taken from what was parsed, so that a command that is refused
// for a forgotten equals sign, a misspelt keyword or a lost quote gives nothing away either. In
// doubt a token counts as secret; names of keywords and subcommands do not.
#pragma once

#include <vector>

#include "platform/parser/token.h"

namespace vornwout {

class CommandDescriptor;

/// One flag per token of the command. Null for `grammar` when it is not known: the keywords that
/// have a secret for their value are then guessed by their names, as they are behind the first word
/// on a new line that begins a command of its own.
std::vector<bool> secretTokens(const TokenizedCommand& command, const CommandDescriptor* grammar);

}  // namespace vornwout
