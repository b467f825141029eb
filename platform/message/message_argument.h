// One argument of a message: a text, and which parts of it are secret.
//
// Whoever repeats a command's text in a message makes the argument from its tokens, so that what is
// secret is decided where it is written and not by what it looks like: a keyword that is spelt like
// somebody's password is still named.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "platform/parser/token.h"

namespace vornwout {

/// A text in the current encoding.
class MessageArgument {
 public:
  MessageArgument() = default;
  /// Nothing of the text is secret. Implicit: most arguments are names and numbers.
  MessageArgument(std::string text) : text_(std::move(text)) {}
  MessageArgument(const char* text) : text_(text) {}

  /// The text of a token, a secret where it is one in the current command.
  static MessageArgument ofToken(const TokenizedCommand& command, const Token& token);
  /// The same for the token as it is written.
  static MessageArgument ofSource(const TokenizedCommand& command, const Token& token);

  MessageArgument& operator+=(const MessageArgument& other);

  bool empty() const { return text_.empty(); }
  /// The whole text.
  const std::string& text() const { return text_; }
  bool hasSecrets() const { return !secrets_.empty(); }
  /// The text in UTF-8, with "***" in place of every secret.
  std::string hidden() const;
  /// The whole text in UTF-8.
  std::string uncovered() const;

 private:
  struct Span {
    std::size_t begin;
    std::size_t end;
  };

  static MessageArgument made(std::string text, const TokenizedCommand& command,
                              const Token& token);

  std::string text_;
  std::vector<Span> secrets_;
};

}  // namespace vornwout
