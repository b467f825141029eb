#include "platform/parser/lexical_error.h"

#include "platform/message/parser_message.h"

namespace vornwout {

void reportLexicalError(const ParserMessage& messages, const TokenizedCommand& command,
                        const LexicalError& error) {
  const SourcePlace place = command.place(error.offset, error.line);
  switch (error.kind) {
    case LexicalError::Kind::kUnterminatedString: {
      const std::string quote(command.jobText().substr(error.offset, 1));
      return messages.report(MessageKey::kUnterminatedString, {quote}, place);
    }
    case LexicalError::Kind::kUnterminatedComment:
      return messages.report(MessageKey::kUnterminatedComment, {}, place);
    case LexicalError::Kind::kNulCharacter:
      return messages.report(MessageKey::kNulCharacter, {}, place);
  }
}

}  // namespace vornwout
