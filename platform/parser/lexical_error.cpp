#include "platform/parser/lexical_error.h"

#include <algorithm>

#include "platform/message/parser_message.h"

namespace vornwout {
namespace {

/// How many bytes the error is about.
std::size_t lengthOf(const TokenizedCommand& command, const LexicalError& error) {
  switch (error.kind) {
    case LexicalError::Kind::kUnterminatedString: {
      const auto token = std::lower_bound(
          command.tokens().begin(), command.tokens().end(), error.offset,
          [](const Token& before, std::uint32_t offset) { return before.offset < offset; });
      const bool found = token != command.tokens().end() && token->offset == error.offset;
      return found ? token->length : 1;
    }
    case LexicalError::Kind::kUnterminatedComment:
      return 2;
    case LexicalError::Kind::kNulCharacter:
      break;
  }
  return 1;
}

void reportOne(const ParserMessage& messages, const TokenizedCommand& command,
               const LexicalError& error) {
  const SourceSpot spot{command.place(error.offset, error.line), error.offset,
                        lengthOf(command, error)};
  switch (error.kind) {
    case LexicalError::Kind::kUnterminatedString: {
      const std::string quote(command.jobText().substr(error.offset, 1));
      return messages.report(MessageKey::kUnterminatedString, {quote}, spot);
    }
    case LexicalError::Kind::kUnterminatedComment:
      return messages.report(MessageKey::kUnterminatedComment, {}, spot);
    case LexicalError::Kind::kNulCharacter:
      return messages.report(MessageKey::kNulCharacter, {}, spot);
  }
}

}  // namespace

const LexicalError* zeroByte(const TokenizedCommand& command) {
  for (const LexicalError& error : command.errors()) {
    if (error.kind == LexicalError::Kind::kNulCharacter) return &error;
  }
  return nullptr;
}

int reportLexicalErrors(const ParserMessage& messages, const TokenizedCommand& command) {
  if (const LexicalError* nul = zeroByte(command)) {
    reportOne(messages, command, *nul);
    return 1;
  }
  for (const LexicalError& error : command.errors()) reportOne(messages, command, error);
  return static_cast<int>(command.errors().size());
}

}  // namespace vornwout
