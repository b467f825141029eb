#include "platform/parser/current_command.h"

#include <algorithm>
#include <utility>

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

const std::vector<std::string>& CurrentCommand::secrets() {
  if (secrets_) return *secrets_;
  std::vector<std::string> texts;
  const std::vector<bool> secret = passwordTokens(*command_);
  for (std::size_t i = 0; i < secret.size(); ++i) {
    if (secret[i]) texts.push_back(command_->text(command_->tokens()[i]));
  }
  return secrets_.emplace(std::move(texts));
}

}  // namespace vornwout
