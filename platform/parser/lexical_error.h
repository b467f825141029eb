// Reports what is wrong below the level of tokens.
//
// Entry point: reportLexicalErrors(), called once for every command that has such errors.
#pragma once

#include "platform/parser/token.h"

namespace vornwout {

class ParserMessage;

/// Reports the lexical errors of `command` with their places and returns how many were reported. A
/// zero byte is reported alone: it says that this is no plain text, and what else could be said of
/// it would mislead.
int reportLexicalErrors(const ParserMessage& messages, const TokenizedCommand& command);

/// The error of the command's zero byte, or null when it has none.
const LexicalError* zeroByte(const TokenizedCommand& command);

}  // namespace vornwout
