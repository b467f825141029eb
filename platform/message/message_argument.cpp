#include "platform/message/message_argument.h"

#include <string_view>
#include <utility>

#include "platform/parser/current_command.h"
#include "platform/pivot/cell_text.h"
#include "platform/text/encoding.h"

namespace vornwout {

MessageArgument MessageArgument::made(std::string text, const TokenizedCommand& command,
                                      const Token& token) {
  MessageArgument argument(std::move(text));
  const CurrentCommand* current = CurrentCommand::current();
  // An empty text would give away no more than that it is empty.
  if (current != nullptr && &current->command() == &command && !argument.empty() &&
      current->isSecret(token)) {
    argument.secrets_.push_back({0, argument.text_.size()});
  }
  return argument;
}

MessageArgument MessageArgument::ofToken(const TokenizedCommand& command, const Token& token) {
  return made(command.text(token), command, token);
}

MessageArgument MessageArgument::ofSource(const TokenizedCommand& command, const Token& token) {
  return made(std::string(command.sourceText(token)), command, token);
}

MessageArgument& MessageArgument::operator+=(const MessageArgument& other) {
  const std::size_t offset = text_.size();
  const std::size_t count = other.secrets_.size();  // an argument may be added to itself
  text_ += other.text_;
  for (std::size_t i = 0; i < count; ++i) {
    secrets_.push_back({other.secrets_[i].begin + offset, other.secrets_[i].end + offset});
  }
  return *this;
}

std::string MessageArgument::hidden() const {
  const std::string_view text = text_;
  std::string shown;
  std::size_t copied = 0;
  for (const Span& secret : secrets_) {
    // Piece by piece: a byte that is cut off must not swallow the mark that follows it.
    shown += currentToUtf8(text.substr(copied, secret.begin - copied)) + kHiddenSecret;
    copied = secret.end;
  }
  return shown + currentToUtf8(text.substr(copied));
}

std::string MessageArgument::uncovered() const { return currentToUtf8(text_); }

}  // namespace vornwout
