// Tokens of a command: what the tokeniser makes and the parser reads.
//
// A token is 16 bytes and holds no text of its own; its texts are views into the job's text or made
// on demand, because a long command has millions of tokens and few of them are ever looked at
// twice.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/adapter/output_sink.h"

namespace vornwout {

/// What may stand in front of a job and is no part of its text.
inline constexpr std::string_view kUtf8ByteOrderMark = "\xEF\xBB\xBF";

enum class TokenKind : std::uint8_t { kWord, kNumber, kString, kOperator };

/// Operator codes. Those up to kAll are relied upon by commands; the others are the parser's own.
enum class OperatorCode : std::uint8_t {
  kNone = 0,  ///< the token is no operator
  kEquals = 3,
  kAsterisk = 10,
  kLeftParen = 13,
  kRightParen = 14,
  kComma = 17,
  kAll = 35,  ///< the reserved word ALL
  kSlash = 41,
  kLeftBracket,
  kRightBracket,
  kLess,
  kGreater,
  kLessEqual,
  kGreaterEqual,
  kNotEqual,
  kAmpersand,
  kBar,
  kTilde,
  kPlus,
  kMinus,
  kPeriod,
  kOther,
};

struct Token {
  std::uint32_t offset;  ///< of the source text within the job's text, in bytes
  std::uint32_t length;  ///< of the source text, quotes included, in bytes
  std::uint32_t line;    ///< from 1
  TokenKind kind;
  OperatorCode code;
  bool doubledQuotes;  ///< a string that holds its own quote, doubled in the source
  bool unterminated;   ///< a string that its line's end cut off
};

/// An error below the level of tokens; the command that it stands in is not run.
struct LexicalError {
  enum class Kind { kUnterminatedString, kUnterminatedComment, kNulCharacter };
  Kind kind;
  std::uint32_t offset;
  std::uint32_t line;
};

/// One command's tokens over the text of its job. The text must outlive it.
class TokenizedCommand {
 public:
  TokenizedCommand() = default;
  explicit TokenizedCommand(std::string_view jobText) : jobText_(jobText) {}

  const std::vector<Token>& tokens() const { return tokens_; }
  const std::vector<LexicalError>& errors() const { return errors_; }

  std::string_view jobText() const { return jobText_; }
  /// The command as written, without the period that ends it.
  std::string_view source() const { return jobText_.substr(begin_, end_ - begin_); }
  /// Line of the first token, from 1.
  int line() const { return tokens_.empty() ? 0 : static_cast<int>(tokens_.front().line); }

  std::string_view sourceText(const Token& token) const {
    return jobText_.substr(token.offset, token.length);
  }
  /// The text without the quotes of a string; a doubled quote is still doubled.
  std::string_view rawText(const Token& token) const;
  /// The token's text: a string's without its quotes, doubled ones made single.
  std::string text(const Token& token) const;

  /// True when the token's text equals `text` without regard to case.
  bool textEquals(const Token& token, std::string_view text) const;

  /// Line and column (in characters) of a byte of the job's text that stands in line `line`.
  SourcePlace place(std::uint32_t offset, std::uint32_t line) const;
  SourcePlace place(const Token& token) const { return place(token.offset, token.line); }
  /// The place of a token with its bytes.
  SourceSpot spot(const Token& token) const { return {place(token), token.offset, token.length}; }

  /// A stretch of one line.
  struct LinePart {
    std::string_view text;
    int column = 1;            ///< of its first character
    bool isCutBefore = false;  ///< the line begins before it
    bool isCutAfter = false;   ///< the line goes on behind it
  };
  /// What of line `line` stands around a byte of it that begins a character: whole characters, at
  /// least `reach` bytes on both sides where the line has them, and never much more.
  LinePart partOfLine(std::uint32_t offset, std::uint32_t line, std::size_t reach) const;

 private:
  friend class Tokenizer;

  std::string_view jobText_;
  std::vector<Token> tokens_;
  std::vector<LexicalError> errors_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;

  /// Columns of the line that was asked for last, one every so many bytes: places are asked for in
  /// any order, and a whole job may be one line.
  struct ColumnMark {
    std::uint32_t offset;
    int column;
  };
  /// The last of the marks made so far that stands at or before a byte of the line.
  ColumnMark markBefore(std::uint32_t offset, std::uint32_t line) const;
  mutable std::vector<ColumnMark> columnMarks_;
  mutable std::uint32_t markedLine_ = 0;
};

}  // namespace vornwout
