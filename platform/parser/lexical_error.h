// Reports what is wrong below the level of tokens.
#pragma once

#include "platform/parser/token.h"

namespace vornwout {

class ParserMessage;

/// Reports one lexical error of `command` with its place.
void reportLexicalError(const ParserMessage& messages, const TokenizedCommand& command,
                        const LexicalError& error);

}  // namespace vornwout
