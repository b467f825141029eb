// The tokens that a parser reads, and one token as commands see it.
#pragma once

#include <span>
#include <string>

#include "platform/message/message_argument.h"
#include "platform/parser/token.h"

namespace vornwout {

/// The command processor's token stream from the command's name on.
class VORN_TokenSequence {
 public:
  /// With true the tokens of the current command; without a current command, or with false, none.
  explicit VORN_TokenSequence(bool currentCommand);

  /// Null when there is no command.
  const TokenizedCommand* command() const { return command_; }
  std::span<const Token> tokens() const { return tokens_; }

 private:
  const TokenizedCommand* command_ = nullptr;
  std::span<const Token> tokens_;
};

/// One token of a value; a light handle that is valid while its command is current.
class TokenInfoObj {
 public:
  TokenInfoObj(const TokenizedCommand& command, const Token& token)
      : command_(&command), token_(&token) {}

  /// The token's text; a string's without its quotes.
  std::string getString() const { return command_->text(*token_); }
  /// The text in upper case.
  std::string getUpperString() const;
  /// The same for a message: says whether the token is a secret.
  MessageArgument messageText() const { return MessageArgument::ofToken(*command_, *token_); }
  /// The token as written.
  std::string getSourceText() const { return std::string(command_->sourceText(*token_)); }
  /// The operator's code, 0 for a token that is no operator.
  int getOperatorCode() const { return static_cast<int>(token_->code); }

  bool IsOperator() const { return token_->kind == TokenKind::kOperator; }
  bool IsWord() const { return token_->kind == TokenKind::kWord; }
  /// True for a quoted string.
  bool IsLiteral() const { return token_->kind == TokenKind::kString; }
  bool IsNumber() const { return token_->kind == TokenKind::kNumber; }
  /// True for a number without decimal point and exponent that fits 32 bits.
  bool IsInteger() const;
  /// The number truncated toward zero, or the nearest one that fits 32 bits; 0 for a token that is
  /// none.
  int getInteger() const;
  /// The number's value: infinite when it is too large for a double, 0 when it is too small for one
  /// or the token is no number.
  double getNumber() const;

  /// Line and column, both from 1.
  SourcePlace place() const { return command_->place(*token_); }
  const Token& token() const { return *token_; }

 private:
  const TokenizedCommand* command_;
  const Token* token_;
};

/// Reads a number token's text; false when it is none or too large for a double.
bool readNumber(std::string_view text, double& value);
/// Reads a number token's text as a 32-bit integer; false when it is none.
bool readInteger(std::string_view text, int& value);

}  // namespace vornwout
