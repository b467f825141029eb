#include "platform/parser/current_command.h"

#include <algorithm>

#include "platform/parser/command_names.h"

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

}  // namespace vornwout
