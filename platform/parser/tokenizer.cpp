#include "platform/parser/tokenizer.h"

#include <stdexcept>

#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

OperatorCode operatorCode(char first, char second, std::size_t& length) {
  length = 1;
  switch (first) {
    case '=':
      return OperatorCode::kEquals;
    case '*':
      return OperatorCode::kAsterisk;
    case '(':
      return OperatorCode::kLeftParen;
    case ')':
      return OperatorCode::kRightParen;
    case ',':
      return OperatorCode::kComma;
    case '/':
      return OperatorCode::kSlash;
    case '[':
      return OperatorCode::kLeftBracket;
    case ']':
      return OperatorCode::kRightBracket;
    case '&':
      return OperatorCode::kAmpersand;
    case '|':
      return OperatorCode::kBar;
    case '+':
      return OperatorCode::kPlus;
    case '-':
      return OperatorCode::kMinus;
    case '.':
      return OperatorCode::kPeriod;
    case '<':
      if (second == '=' || second == '>') length = 2;
      if (second == '=') return OperatorCode::kLessEqual;
      return second == '>' ? OperatorCode::kNotEqual : OperatorCode::kLess;
    case '>':
      if (second != '=') return OperatorCode::kGreater;
      length = 2;
      return OperatorCode::kGreaterEqual;
    case '~':
      if (second != '=') return OperatorCode::kTilde;
      length = 2;
      return OperatorCode::kNotEqual;
    default:
      return OperatorCode::kOther;
  }
}

}  // namespace

Tokenizer::Tokenizer(std::string_view jobText) : text_(jobText), encoding_(&currentEncoding()) {
  if (jobText.size() > kMaxJobSize) throw std::length_error("a job of more than 4 GB");
  classes_.fill(ByteClass::kOperator);
  // Control characters other than the line ends separate tokens as a blank does.
  for (int byte = 1; byte <= ' '; ++byte)
    classes_[static_cast<std::size_t>(byte)] = ByteClass::kBlank;
  classes_['\n'] = classes_['\r'] = ByteClass::kLineEnd;
  for (int byte = '0'; byte <= '9'; ++byte)
    classes_[static_cast<std::size_t>(byte)] = ByteClass::kDigit;
  for (int byte = 'A'; byte <= 'Z'; ++byte) {
    classes_[static_cast<std::size_t>(byte)] = ByteClass::kWordStart;
    classes_[static_cast<std::size_t>(byte + 'a' - 'A')] = ByteClass::kWordStart;
  }
  for (const char mark : {'_', '#', '@', '$'}) {
    classes_[static_cast<unsigned char>(mark)] = ByteClass::kWordStart;
  }
  classes_['\''] = classes_['"'] = ByteClass::kQuote;
  for (std::size_t byte = 0x80; byte < 0x100; ++byte) classes_[byte] = ByteClass::kLead;
  if (text_.starts_with(kUtf8ByteOrderMark)) position_ = kUtf8ByteOrderMark.size();
}

bool Tokenizer::next(TokenizedCommand& command) {
  command.jobText_ = text_;
  command.markedLine_ = 0;
  nulReported_ = false;
  do {
    command.tokens_.clear();
    command.errors_.clear();
    skipToCommandStart(command);
    if (atEnd() && command.errors_.empty()) return false;
    command.begin_ = position_;
    command.end_ = position_;
    if (command.errors_.empty()) readTokens(command);
  } while (command.tokens_.empty() && command.errors_.empty());
  return true;
}

void Tokenizer::skipToCommandStart(TokenizedCommand& command) {
  while (!atEnd() && command.errors_.empty()) {
    const ByteClass byteClass = classOf(position_);
    if (byteClass == ByteClass::kLineEnd) {
      skipLineEnd();
    } else if (byteClass == ByteClass::kBlank) {
      ++position_;
    } else if (startsWith("/*")) {
      skipComment(command);
    } else if (text_[position_] == '*') {
      skipCommentCommand();
    } else {
      return;
    }
  }
}

void Tokenizer::skipCommentCommand() {
  while (!atEnd()) {
    const std::size_t begin = position_;
    while (!atEnd() && classOf(position_) != ByteClass::kLineEnd) ++position_;
    const std::string_view line = text_.substr(begin, position_ - begin);
    if (!atEnd()) skipLineEnd();
    // An empty line, or a period at a line's end. A trail byte is never a period.
    if (withoutBlanksBehind(line).empty() || withoutCommentsBehind(line).ends_with('.')) return;
  }
}

std::string_view Tokenizer::withoutBlanksBehind(std::string_view line) const {
  while (!line.empty() && classes_[static_cast<unsigned char>(line.back())] == ByteClass::kBlank) {
    line.remove_suffix(1);
  }
  return line;
}

std::string_view Tokenizer::withoutCommentsBehind(std::string_view line) const {
  line = withoutBlanksBehind(line);
  while (line.size() >= 4 && line.ends_with("*/")) {
    const std::size_t begin = line.rfind("/*", line.size() - 4);
    if (begin == std::string_view::npos) break;
    line = withoutBlanksBehind(line.substr(0, begin));
  }
  return line;
}

void Tokenizer::skipLineEnd() {
  if (startsWith("\r\n")) ++position_;
  ++position_;
  ++line_;
}

void Tokenizer::skipComment(TokenizedCommand& command) {
  const std::size_t end =
      commentEndsAhead_ ? text_.find("*/", position_ + 2) : std::string_view::npos;
  if (end == std::string_view::npos) {
    commentEndsAhead_ = false;
    command.errors_.push_back(
        {LexicalError::Kind::kUnterminatedComment, static_cast<std::uint32_t>(position_), line_});
    // Only the comment's own line is given up, and the period at its end still ends the command: a
    // forgotten end costs one command, not the job.
    const std::size_t begin = position_;
    while (!atEnd() && classOf(position_) != ByteClass::kLineEnd) ++position_;
    const std::string_view line = withoutBlanksBehind(text_.substr(begin, position_ - begin));
    if (line.ends_with('.')) position_ = begin + line.size() - 1;
    return;
  }
  while (position_ < end) {
    if (classOf(position_) == ByteClass::kLineEnd) {
      skipLineEnd();
    } else {
      ++position_;
    }
  }
  position_ = end + 2;
}

bool Tokenizer::nextLineIsEmpty() const {
  std::size_t position = position_;
  while (position < text_.size() && classOf(position) == ByteClass::kBlank) ++position;
  return position >= text_.size() || classOf(position) == ByteClass::kLineEnd;
}

bool Tokenizer::restOfLineIsBlank(std::size_t position) const {
  while (position < text_.size()) {
    const ByteClass byteClass = classOf(position);
    if (byteClass == ByteClass::kLineEnd) return true;
    if (byteClass == ByteClass::kBlank) {
      ++position;
    } else if (text_.compare(position, 2, "/*") == 0) {
      // A comment that goes on over the line's end leaves the rest of this line blank.
      position += 2;
      while (position < text_.size() && text_.compare(position, 2, "*/") != 0) {
        if (classOf(position) == ByteClass::kLineEnd) return true;
        ++position;
      }
      if (position >= text_.size()) return true;
      position += 2;
    } else {
      return false;
    }
  }
  return true;
}

std::size_t Tokenizer::wordCharacterLength(std::size_t position) const {
  switch (classOf(position)) {
    case ByteClass::kWordStart:
    case ByteClass::kDigit:
      return 1;
    case ByteClass::kLead: {
      const int length = encoding_->characterLength(text_.substr(position));
      const bool letter = encoding_->isLetterByte(static_cast<unsigned char>(text_[position]));
      return length >= 2 || letter ? static_cast<std::size_t>(length) : 0;
    }
    default:
      return text_[position] == '.' ? 1 : 0;
  }
}

bool Tokenizer::signBelongsToNumber(const TokenizedCommand& command) const {
  const std::size_t next = position_ + 1;
  const bool digitFollows =
      digitAt(next) || (next < text_.size() && text_[next] == '.' && digitAt(next + 1));
  if (!digitFollows) return false;
  if (command.tokens_.empty()) return true;
  const Token& before = command.tokens_.back();
  if (before.offset + before.length != position_) return true;  // a blank stands between
  return before.kind == TokenKind::kOperator && before.code != OperatorCode::kRightParen &&
         before.code != OperatorCode::kRightBracket;
}

void Tokenizer::readTokens(TokenizedCommand& command) {
  while (!atEnd()) {
    switch (classOf(position_)) {
      case ByteClass::kBlank:
        ++position_;
        continue;
      case ByteClass::kLineEnd:
        skipLineEnd();
        if (nextLineIsEmpty()) return;
        continue;
      case ByteClass::kWordStart:
        readWord(command);
        continue;
      case ByteClass::kDigit:
        readNumber(command);
        continue;
      case ByteClass::kQuote:
        readString(command);
        continue;
      case ByteClass::kLead:
        if (wordCharacterLength(position_) > 0) {
          readWord(command);
        } else {
          readOperator(command);
        }
        continue;
      case ByteClass::kOperator:
        break;
    }
    const char character = text_[position_];
    if (character == '.' && restOfLineIsBlank(position_ + 1)) {
      ++position_;
      return;
    }
    if (character == '\0') {
      noteNul(command, position_++);
    } else if (startsWith("/*")) {
      skipComment(command);
    } else if (character == '.' && digitAt(position_ + 1)) {
      readNumber(command);
    } else if ((character == '+' || character == '-') && signBelongsToNumber(command)) {
      readNumber(command);
    } else {
      readOperator(command);
    }
  }
}

void Tokenizer::readWord(TokenizedCommand& command) {
  std::size_t end = position_;
  while (end < text_.size()) {
    const std::size_t length = wordCharacterLength(end);
    if (length == 0) break;
    end += length;
  }
  // The period that ends a command is no part of a token, however close it stands.
  if (text_[end - 1] == '.' && restOfLineIsBlank(end)) --end;
  const std::string_view word = text_.substr(position_, end - position_);
  if (word.size() == 3 && AreStringsEqualCase(word, "ALL")) {
    addToken(command, TokenKind::kOperator, OperatorCode::kAll, end);
  } else {
    addToken(command, TokenKind::kWord, OperatorCode::kNone, end);
  }
}

void Tokenizer::readNumber(TokenizedCommand& command) {
  std::size_t end = position_;
  if (text_[end] == '+' || text_[end] == '-') ++end;
  while (digitAt(end)) ++end;
  if (end < text_.size() && text_[end] == '.' && !restOfLineIsBlank(end + 1)) {
    ++end;
    while (digitAt(end)) ++end;
  }
  if (end < text_.size() && (text_[end] == 'e' || text_[end] == 'E')) {
    std::size_t exponent = end + 1;
    if (exponent < text_.size() && (text_[exponent] == '+' || text_[exponent] == '-')) ++exponent;
    if (digitAt(exponent)) {
      end = exponent;
      while (digitAt(end)) ++end;
    }
  }
  addToken(command, TokenKind::kNumber, OperatorCode::kNone, end);
}

void Tokenizer::readString(TokenizedCommand& command) {
  const char quote = text_[position_];
  std::size_t end = position_ + 1;
  std::size_t afterLastNonBlank = end;
  bool doubledQuotes = false;
  while (end < text_.size()) {
    const ByteClass byteClass = classOf(end);
    if (byteClass == ByteClass::kLineEnd) break;
    if (text_[end] == quote) {
      if (end + 1 < text_.size() && text_[end + 1] == quote) {
        doubledQuotes = true;
        ++end;
      } else {
        addToken(command, TokenKind::kString, OperatorCode::kNone, end + 1);
        command.tokens_.back().doubledQuotes = doubledQuotes;
        return;
      }
    }
    if (text_[end] == '\0') noteNul(command, end);
    end += byteClass == ByteClass::kLead
               ? static_cast<std::size_t>(encoding_->characterLength(text_.substr(end)))
               : 1;
    if (byteClass != ByteClass::kBlank) afterLastNonBlank = end;
  }
  command.errors_.push_back(
      {LexicalError::Kind::kUnterminatedString, static_cast<std::uint32_t>(position_), line_});
  // The period at the line's end still ends the command, so the string stops before it.
  if (afterLastNonBlank > position_ + 1 && text_[afterLastNonBlank - 1] == '.') --afterLastNonBlank;
  addToken(command, TokenKind::kString, OperatorCode::kNone, afterLastNonBlank);
  command.tokens_.back().doubledQuotes = doubledQuotes;
  command.tokens_.back().unterminated = true;
}

void Tokenizer::readOperator(TokenizedCommand& command) {
  const char first = text_[position_];
  const char second = position_ + 1 < text_.size() ? text_[position_ + 1] : '\0';
  std::size_t length = 1;
  const OperatorCode code = operatorCode(first, second, length);
  addToken(command, TokenKind::kOperator, code, position_ + length);
}

void Tokenizer::noteNul(TokenizedCommand& command, std::size_t position) {
  // One is enough: a text in the wrong encoding has one at every other byte.
  if (nulReported_) return;
  nulReported_ = true;
  command.errors_.push_back(
      {LexicalError::Kind::kNulCharacter, static_cast<std::uint32_t>(position), line_});
}

void Tokenizer::addToken(TokenizedCommand& command, TokenKind kind, OperatorCode code,
                         std::size_t end) {
  if (command.tokens_.empty()) command.begin_ = position_;
  command.tokens_.push_back({static_cast<std::uint32_t>(position_),
                             static_cast<std::uint32_t>(end - position_), line_, kind, code, false,
                             false});
  position_ = end;
  command.end_ = end;
}

}  // namespace vornwout
