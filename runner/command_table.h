// The commands that the program knows, and the entry point of each.
#pragma once

#include <span>
#include <string_view>

#include "platform/parser/token.h"

namespace vornwout {

struct Command {
  std::string_view name;     ///< upper case, words separated by one blank
  std::string_view entry;    ///< the entry point's name
  void (*run)();             ///< null for a command that this version does not have
  std::string_view summary;  ///< what it does, one sentence
  std::string_view usage;    ///< how it is written, where its grammar is a free list of words
  std::string_view details;  ///< what its grammar cannot say, whole lines; may be empty
};

/// All commands of the language, in the order in which help lists them.
std::span<const Command> commandTable();

/// How many tokens of a command its name takes.
inline constexpr std::size_t kNameTokens = 2;

/// The command that the leading words name, without regard to case; null when there is none.
const Command* findCommand(const TokenizedCommand& command);
/// The command of that name, its words separated by blanks; null when there is none.
const Command* findCommand(std::string_view name);

}  // namespace vornwout
