// Checks that a value has the shape of its kind: how many tokens, of which sort, and declared
// values.
//
// Entry point: checkValueShape(), called by the parser for every value. What a value means is left
// to the command that reads it, and so are numbers.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/message/catalogue.h"
#include "platform/message/message_argument.h"
#include "platform/parser/descriptor.h"
#include "platform/parser/token.h"

namespace vornwout {

/// One thing that is wrong with a value.
struct ShapeError {
  MessageKey key;
  std::vector<MessageArgument> arguments;
  const Token* token;
  std::string hint;
};

/// Calls `report` for everything that is wrong with the shape of `value`, the tokens behind the "="
/// of `param` (brackets balanced). `subcommand` is the name that messages give.
void checkValueShape(const TokenizedCommand& command, const ParamDescriptor& param,
                     std::string_view subcommand, std::span<const Token> value,
                     const std::function<void(ShapeError)>& report);

/// True when the token, a word or a quoted text or ALL, is one of the declared values.
bool isDeclaredValue(const TokenizedCommand& command, const ParamDescriptor& param,
                     const Token& token);

/// Insertions, deletions, replacements and swaps of neighbours that make one name of another.
std::size_t editDistance(std::string_view left, std::string_view right);

/// "Did you mean X?" for the candidate closest to `name`; empty when none is close.
std::string suggestion(std::string_view name, const std::vector<std::string_view>& candidates);

}  // namespace vornwout
