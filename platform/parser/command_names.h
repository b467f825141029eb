// The names of all commands, as far as the parser needs them: to see that a line begins like a
// command of its own, because the period before it was forgotten.
//
// Entry points: ScopedCommandNames, made by the command processor, which alone knows its commands,
// and beginsCommandName().
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "platform/parser/token.h"

namespace vornwout {

/// Makes names known while it lives; those known before are back afterwards.
class ScopedCommandNames {
 public:
  /// Each name is words separated by single blanks, and must outlive this object.
  explicit ScopedCommandNames(std::vector<std::string_view> names);
  ~ScopedCommandNames();
  ScopedCommandNames(const ScopedCommandNames&) = delete;
  ScopedCommandNames& operator=(const ScopedCommandNames&) = delete;

 private:
  friend bool beginsCommandName(const TokenizedCommand& command, std::size_t token);

  std::vector<std::string_view> names_;
  const ScopedCommandNames* previous_;
};

/// True when the words from the token with that index on are a known name, without regard to case.
bool beginsCommandName(const TokenizedCommand& command, std::size_t token);

}  // namespace vornwout
