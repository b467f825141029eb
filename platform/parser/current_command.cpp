#include "platform/parser/current_command.h"

#include <algorithm>

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

SourcePlace CurrentCommand::place() const {
  if (lastRead_ != nullptr) return command_->place(*lastRead_);
  if (command_->tokens().empty()) return {};
  return command_->place(command_->tokens().front());
}

}  // namespace vornwout
