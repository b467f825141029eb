// Splits the text of a job into commands and each command into tokens, in one pass.
//
// Entry point: Tokenizer::next(), called until it returns false. A command ends with a period that
// is the last non-blank character of its line, with an empty line, or with the end of the job;
// where a command would start, a line that begins with "*" is a comment up to the same kind of end,
// and
// "/* ... */" is a comment wherever a blank may stand. Every byte is looked at a bounded number of
// times, whatever the text holds; fuzz/tokenizer_fuzz.cpp drives it with arbitrary bytes.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "platform/parser/token.h"
#include "platform/text/encoding.h"

namespace vornwout {

/// Reads the commands of one job. The text must outlive the tokeniser and what it makes.
class Tokenizer {
 public:
  /// The largest job that can be read, in bytes: offsets are kept in 32 bits.
  static constexpr std::size_t kMaxJobSize = 0xFFFFFFF0U;

  /// `jobText` is in the current encoding; a UTF-8 byte-order mark in front is passed over.
  explicit Tokenizer(std::string_view jobText);

  /// Reads the next command into `command`; false at the end of the job. A command without tokens
  /// is returned only when it holds a lexical error, so that no error is lost.
  bool next(TokenizedCommand& command);

 private:
  enum class ByteClass : std::uint8_t {
    kBlank,
    kLineEnd,
    kWordStart,  ///< goes on as well
    kDigit,
    kQuote,
    kLead,  ///< the first byte of a character that needs a look at its length
    kOperator,
  };

  ByteClass classOf(std::size_t position) const {
    return classes_[static_cast<unsigned char>(text_[position])];
  }
  bool atEnd() const { return position_ >= text_.size(); }
  bool startsWith(std::string_view prefix) const {
    return text_.compare(position_, prefix.size(), prefix) == 0;
  }
  bool digitAt(std::size_t position) const {
    return position < text_.size() && text_[position] >= '0' && text_[position] <= '9';
  }

  void skipToCommandStart(TokenizedCommand& command);
  void skipCommentCommand();
  std::string_view withoutBlanksBehind(std::string_view line) const;
  /// Without the comments that begin and end at the end of the line, and without blanks.
  std::string_view withoutCommentsBehind(std::string_view line) const;
  void skipLineEnd();
  void skipComment(TokenizedCommand& command);
  bool nextLineIsEmpty() const;
  bool restOfLineIsBlank(std::size_t position) const;
  std::size_t wordCharacterLength(std::size_t position) const;
  bool signBelongsToNumber(const TokenizedCommand& command) const;

  /// Reads the tokens up to the end of the command, and that end.
  void readTokens(TokenizedCommand& command);
  void readWord(TokenizedCommand& command);
  void readNumber(TokenizedCommand& command);
  void readString(TokenizedCommand& command);
  void readOperator(TokenizedCommand& command);
  void noteNul(TokenizedCommand& command, std::size_t position);
  void addToken(TokenizedCommand& command, TokenKind kind, OperatorCode code, std::size_t end);

  std::string_view text_;
  const Encoding* encoding_;
  std::array<ByteClass, 256> classes_{};
  std::size_t position_ = 0;
  std::uint32_t line_ = 1;
  /// False once a search found no further "*/": it is not searched for again at every "/*".
  bool commentEndsAhead_ = true;
  bool nulReported_ = false;  ///< in the command that is being read
};

}  // namespace vornwout
