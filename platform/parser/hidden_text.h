// A command's text for people and for files, with "***" in place of what is secret.
//
// Entry points: hiddenText() for the text, hiddenStart() for where a place in it is shown. Besides
// secret tokens a comment is hidden as a whole where it may tell a secret: in a command that has
// one, for an old password is often left beside the new one, and wherever it names passwords. Only
// the stretch that is asked for is looked at, for a command may be as long as its job.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/parser/token.h"

namespace vornwout {

/// The bytes [begin, end) of the command's job in the current encoding, "***" in place of every
/// secret token and comment. `secret` has one flag per token (secret_tokens.h).
std::string hiddenText(const TokenizedCommand& command, const std::vector<bool>& secret,
                       std::size_t begin, std::size_t end);

/// The first byte of the hidden stretch that the byte at `offset` belongs to; `offset` itself where
/// that is not hidden.
std::size_t hiddenStart(const TokenizedCommand& command, const std::vector<bool>& secret,
                        std::size_t offset);

}  // namespace vornwout
