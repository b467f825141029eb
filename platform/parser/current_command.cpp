#include "platform/parser/current_command.h"

#include <algorithm>
#include <functional>

#include "platform/parser/command_names.h"
#include "platform/parser/secret_tokens.h"

namespace vornwout {
namespace {

CurrentCommand* innermost = nullptr;

}  // namespace

CurrentCommand::CurrentCommand(const TokenizedCommand& command, std::size_t nameTokens)
    : command_(&command), nameTokens_(nameTokens), previous_(innermost) {
  innermost = this;
}

CurrentCommand::~CurrentCommand() { innermost = previous_; }

CurrentCommand* CurrentCommand::current() { return innermost; }

std::span<const Token> CurrentCommand::argumentTokens() const {
  const std::span<const Token> tokens = command_->tokens();
  return tokens.subspan(std::min(nameTokens_, tokens.size()));
}

SourceSpot CurrentCommand::spot() const {
  if (lastRead_ != nullptr) return command_->spot(*lastRead_);
  if (command_->tokens().empty()) return {};
  return command_->spot(command_->tokens().front());
}

const Token* CurrentCommand::strayCommand() const {
  if (strayCommand_) return *strayCommand_;
  const std::vector<Token>& tokens = command_->tokens();
  std::size_t i = std::max<std::size_t>(nameTokens_, 1);
  while (i < tokens.size() &&
         (tokens[i].line == tokens[i - 1].line || !beginsCommandName(*command_, i))) {
    ++i;
  }
  return strayCommand_.emplace(i < tokens.size() ? &tokens[i] : nullptr);
}

void CurrentCommand::setGrammar(const CommandDescriptor& grammar) {
  grammar_ = &grammar;
  secrets_.reset();
}

void CurrentCommand::forgetGrammar(const CommandDescriptor& grammar) {
  for (CurrentCommand* command = innermost; command != nullptr; command = command->previous_) {
    if (command->grammar_ == &grammar) command->grammar_ = nullptr;
  }
}

const std::vector<bool>& CurrentCommand::secretTokens() const {
  if (secrets_) return *secrets_;
  return secrets_.emplace(vornwout::secretTokens(*command_, grammar_));
}

bool CurrentCommand::isSecret(const Token& token) const {
  const std::vector<Token>& tokens = command_->tokens();
  const std::less<const Token*> before;
  if (tokens.empty() || before(&token, tokens.data()) || before(&tokens.back(), &token)) {
    return false;
  }
  return secretTokens()[static_cast<std::size_t>(&token - tokens.data())];
}

}  // namespace vornwout
