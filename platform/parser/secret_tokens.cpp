#include "platform/parser/secret_tokens.h"

namespace vornwout {
namespace {

/// True when no blank stands between a token and the one before it.
bool touchesPrevious(const std::vector<Token>& tokens, std::size_t i) {
  return i > 0 && tokens[i - 1].offset + tokens[i - 1].length == tokens[i].offset;
}

/// True when a keyword or a subcommand begins at `i`. What touches the token before it is a part of
/// an unquoted password, as in PASSWORD=a/b.
bool startsSomethingElse(const std::vector<Token>& tokens, std::size_t i) {
  if (touchesPrevious(tokens, i)) return false;
  if (tokens[i].code == OperatorCode::kSlash) return true;
  return tokens[i].kind == TokenKind::kWord && i + 1 < tokens.size() &&
         tokens[i + 1].code == OperatorCode::kEquals;
}

}  // namespace

std::vector<bool> passwordTokens(const TokenizedCommand& command) {
  const std::vector<Token>& tokens = command.tokens();
  std::vector<bool> secret(tokens.size(), false);
  bool inPassword = false;
  bool isProtected = false;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const Token& token = tokens[i];
    if (token.kind == TokenKind::kWord && command.textEquals(token, "PASSWORD")) {
      inPassword = true;
      continue;
    }
    const bool isEquals = token.code == OperatorCode::kEquals;
    if (startsSomethingElse(tokens, i)) inPassword = false;
    if (token.kind == TokenKind::kWord && command.textEquals(token, "PASSPROTECT")) {
      isProtected = true;
    }
    if (token.kind == TokenKind::kString) {
      secret[i] = inPassword || isProtected;
    } else {
      secret[i] = inPassword && !isEquals && !command.textEquals(token, "NONE");
    }
  }
  return secret;
}

}  // namespace vornwout
