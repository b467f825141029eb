// Which brackets of a command belong together.
//
// Entry point: BracketPairs, made once per command, so that no bracket is searched for twice
// however deeply they nest. One pass over the tokens with a stack: a closing bracket takes the
// innermost open one of its kind, and those of the other kind that stand between stay alone.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "platform/parser/token.h"

namespace vornwout {

/// True for "(" and "[".
bool isOpeningBracket(const Token& token);
/// True for "(", "[", ")" and "]".
bool isBracket(const Token& token);

class BracketPairs {
 public:
  BracketPairs() = default;
  /// `beginsSubcommand(i)` tells whether the slash at `i` begins a declared subcommand: what is
  /// still open there was forgotten. It is asked only inside brackets.
  BracketPairs(std::span<const Token> tokens,
               const std::function<bool(std::size_t)>& beginsSubcommand);

  /// False for a bracket that stands alone, and for every other token.
  bool hasPartner(std::size_t i) const { return partners_[i] != kNone; }
  /// The index of the partner of a bracket that has one.
  std::size_t partner(std::size_t i) const { return partners_[i]; }

 private:
  static constexpr std::uint32_t kNone = 0xFFFFFFFF;

  std::vector<std::uint32_t> partners_;
};

}  // namespace vornwout
