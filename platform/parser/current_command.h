// The command that is being carried out: its tokens and where in it a value was last read.
//
// The command processor makes a CurrentCommand around each call of an entry point; the entry reads
// it through VORN_TokenSequence(true), and messages find their place through it.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/parser/token.h"

namespace vornwout {

/// Makes a command the current one while it lives; the one before is back afterwards.
class CurrentCommand {
 public:
  /// The first `nameTokens` tokens are the command's name. `command` must outlive this object.
  CurrentCommand(const TokenizedCommand& command, std::size_t nameTokens);
  ~CurrentCommand();
  CurrentCommand(const CurrentCommand&) = delete;
  CurrentCommand& operator=(const CurrentCommand&) = delete;

  /// The innermost current command, or null.
  static CurrentCommand* current();

  const TokenizedCommand& command() const { return *command_; }
  /// The tokens behind the command's name.
  std::span<const Token> argumentTokens() const;

  /// The texts of the command's passwords, which no message may repeat; found once.
  const std::vector<std::string>& secrets();

  /// Remembers what is being read, so that a message about it can name its place.
  void noteRead(const Token* token) { lastRead_ = token; }
  /// Where what was read last stands, else the command itself.
  SourceSpot spot() const;
  SourcePlace place() const { return spot().place; }
  /// The first token behind the name that begins a line as a command does: the period before it
  /// is most likely missing. Null when there is none.
  /// It is searched for once, however often it is asked for.
  const Token* strayCommand() const;

 private:
  const TokenizedCommand* command_;
  std::size_t nameTokens_;
  const Token* lastRead_ = nullptr;
  std::optional<std::vector<std::string>> secrets_;
  CurrentCommand* previous_;
  mutable std::optional<const Token*> strayCommand_;
};

}  // namespace vornwout
