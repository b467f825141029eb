#include "runner/command_log.h"

#include "platform/pivot/cell_text.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

bool isPassword(const TokenizedCommand& command, const Token& token) {
  if (token.kind == TokenKind::kString) return true;
  if (token.code == OperatorCode::kSlash) return false;
  return !command.textEquals(token, "NONE");
}

/// True when a keyword stands at `i`: a word with an equals sign behind it.
bool startsKeyword(const std::vector<Token>& tokens, std::size_t i) {
  return tokens[i].kind == TokenKind::kWord && i + 1 < tokens.size() &&
         tokens[i + 1].code == OperatorCode::kEquals;
}

}  // namespace

std::string commandLogText(const TokenizedCommand& command) {
  const std::vector<Token>& tokens = command.tokens();
  const std::string_view source = command.source();
  if (tokens.empty()) return currentToUtf8(source);
  const std::size_t sourceBegin = tokens.front().offset;
  std::string text;
  std::size_t copied = 0;  // of the source
  bool inPassword = false;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const Token& token = tokens[i];
    if (token.kind == TokenKind::kWord && command.textEquals(token, "PASSWORD")) {
      inPassword = true;
      continue;
    }
    if (token.code == OperatorCode::kSlash || startsKeyword(tokens, i)) inPassword = false;
    if (!inPassword || token.code == OperatorCode::kEquals || !isPassword(command, token)) continue;
    const std::size_t begin = token.offset - sourceBegin;
    text += currentToUtf8(source.substr(copied, begin - copied)) + kHiddenSecret;
    copied = begin + token.length;
  }
  return text + currentToUtf8(source.substr(copied));
}

}  // namespace vornwout
