// The command that is being carried out: its tokens and where in it a value was last read.
//
// The command processor makes a CurrentCommand around each call of an entry point; the entry reads
// it through VORN_TokenSequence(true), and messages find their place through it, and what of the
// command they may repeat.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "platform/parser/token.h"

namespace vornwout {

class CommandDescriptor;

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

  /// The parser tells by which grammar it reads the command, for that says which keywords have a
  /// secret for their value. `grammar` must live until it is forgotten.
  void setGrammar(const CommandDescriptor& grammar);
  /// Forgets a grammar wherever it is in use.
  static void forgetGrammar(const CommandDescriptor& grammar);
  /// Which of the command's tokens are secret; see secret_tokens.h. Found once, when first asked.
  const std::vector<bool>& secretTokens() const;
  /// False also for a token that is none of this command's.
  bool isSecret(const Token& token) const;

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
  const CommandDescriptor* grammar_ = nullptr;
  mutable std::optional<std::vector<bool>> secrets_;
  CurrentCommand* previous_;
  mutable std::optional<const Token*> strayCommand_;
};

}  // namespace vornwout
