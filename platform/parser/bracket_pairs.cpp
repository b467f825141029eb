#include "platform/parser/bracket_pairs.h"

namespace vornwout {
namespace {

bool isParenthesis(const Token& token) {
  return token.code == OperatorCode::kLeftParen || token.code == OperatorCode::kRightParen;
}

}  // namespace

bool isOpeningBracket(const Token& token) {
  return token.code == OperatorCode::kLeftParen || token.code == OperatorCode::kLeftBracket;
}

bool isBracket(const Token& token) {
  return isOpeningBracket(token) || token.code == OperatorCode::kRightParen ||
         token.code == OperatorCode::kRightBracket;
}

BracketPairs::BracketPairs(std::span<const Token> tokens,
                           const std::function<bool(std::size_t)>& beginsSubcommand)
    : partners_(tokens.size(), kNone) {
  std::vector<std::uint32_t> open;
  std::size_t openParentheses = 0;
  for (std::uint32_t i = 0; i < tokens.size(); ++i) {
    const Token& token = tokens[i];
    if (isOpeningBracket(token)) {
      open.push_back(i);
      if (isParenthesis(token)) ++openParentheses;
    } else if (isBracket(token)) {
      const bool closesParenthesis = isParenthesis(token);
      // Without this look ahead, closing brackets of one kind could empty the stack in vain.
      const std::size_t candidates =
          closesParenthesis ? openParentheses : open.size() - openParentheses;
      if (candidates == 0) continue;
      while (isParenthesis(tokens[open.back()]) != closesParenthesis) {
        if (!closesParenthesis) --openParentheses;
        open.pop_back();
      }
      partners_[i] = open.back();
      partners_[open.back()] = i;
      open.pop_back();
      if (closesParenthesis) --openParentheses;
    } else if (token.code == OperatorCode::kSlash && !open.empty() && beginsSubcommand(i)) {
      // A division may stand in brackets; a subcommand cannot, so the brackets were forgotten.
      open.clear();
      openParentheses = 0;
    }
  }
}

}  // namespace vornwout
