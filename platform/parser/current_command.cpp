#include "platform/parser/current_command.h"

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
  return std::span(command_->tokens()).subspan(nameTokens_);
}

SourcePlace CurrentCommand::place() const {
  if (lastRead_ != nullptr) return command_->place(*lastRead_);
  if (command_->tokens().empty()) return {};
  return command_->place(command_->tokens().front());
}

}  // namespace vornwout
