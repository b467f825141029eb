#include "platform/text/display_width.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <stdexcept>

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>

#include "platform/text/utf8.h"

namespace vornwout {
namespace {

constexpr char32_t kReplacementCharacter = 0xFFFD;
constexpr char32_t kEmojiPresentationSelector = 0xFE0F;
constexpr char32_t kFirstCombiningMark = 0x0300;

bool isPrintableAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= 0x20 && c < 0x7F; });
}

/// True for what would move the cursor, change the terminal's state or reorder the text around it.
bool isUnsafe(char32_t codePoint) {
  return codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0) ||
         (codePoint >= 0x2028 && codePoint <= 0x202E) ||
         (codePoint >= 0x2066 && codePoint <= 0x2069);
}

/// Calls `take(codePoint, offset, length)` for every character; U+FFFD for a byte that is not
/// valid.
template <typename Take>
void forEachCharacter(std::string_view text, const Take& take) {
  for (std::size_t at = 0; at < text.size();) {
    const int length = validUtf8Length(text.substr(at));
    const auto step = static_cast<std::size_t>(std::max(length, 1));
    take(length == 0 ? kReplacementCharacter : utf8CodePoint(text.substr(at), length), at, step);
    at += step;
  }
}

bool isSafe(std::string_view text) {
  bool safe = true;
  forEachCharacter(text, [&](char32_t codePoint, std::size_t, std::size_t length) {
    const bool isReplaced = codePoint == kReplacementCharacter && length == 1;
    safe = safe && !isReplaced && !isUnsafe(codePoint);
  });
  return safe;
}

int characterWidth(char32_t codePoint) {
  if (isUnsafe(codePoint)) return 1;
  // Everything here is narrow, the soft hyphen too: terminals draw it.
  if (codePoint < kFirstCombiningMark) return 1;
  const auto c = static_cast<UChar32>(codePoint);
  switch (u_charType(c)) {
    case U_NON_SPACING_MARK:
    case U_ENCLOSING_MARK:
      return 0;
    case U_FORMAT_CHAR:
      // The signs that enclose a number are drawn, although they are format characters.
      return u_hasBinaryProperty(c, UCHAR_PREPENDED_CONCATENATION_MARK) != 0 ? 1 : 0;
    default:
      break;
  }
  const int eastAsian = u_getIntPropertyValue(c, UCHAR_EAST_ASIAN_WIDTH);
  const bool isWide = eastAsian == U_EA_WIDE || eastAsian == U_EA_FULLWIDTH ||
                      u_hasBinaryProperty(c, UCHAR_EMOJI_PRESENTATION) != 0;
  return isWide ? 2 : 1;
}

int clusterWidth(std::string_view cluster) {
  int width = 0;
  bool startsAsEmoji = false;
  forEachCharacter(cluster, [&](char32_t codePoint, std::size_t offset, std::size_t) {
    if (offset == 0) {
      startsAsEmoji = u_hasBinaryProperty(static_cast<UChar32>(codePoint), UCHAR_EMOJI) != 0;
    }
    const bool selected = codePoint == kEmojiPresentationSelector && startsAsEmoji;
    width = std::max(width, selected ? 2 : characterWidth(codePoint));
  });
  return width;
}

/// One of ICU's boundary analyses over a UTF-8 text. The iterators are made once per thread, since
/// making one costs more than going over a line.
class Boundaries {
 public:
  enum class Kind { kClusters, kLineBreaks };

  Boundaries(Kind kind, std::string_view text) : iterator_(iterator(kind)) {
    UErrorCode status = U_ZERO_ERROR;
    text_ = utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status);
    iterator_.setText(text_, status);
    if (U_FAILURE(status) != 0) {
      utext_close(text_);
      throw std::runtime_error(std::string("cannot analyse a text: ") + u_errorName(status));
    }
    iterator_.first();
  }
  ~Boundaries() { utext_close(text_); }
  Boundaries(const Boundaries&) = delete;
  Boundaries& operator=(const Boundaries&) = delete;

  /// The next boundary's offset in bytes. Asked for only while the text's end has not been given.
  std::size_t next() { return static_cast<std::size_t>(iterator_.next()); }

 private:
  static icu::BreakIterator& iterator(Kind kind) {
    static thread_local const std::unique_ptr<icu::BreakIterator> clusters(
        make(icu::BreakIterator::createCharacterInstance));
    static thread_local const std::unique_ptr<icu::BreakIterator> lineBreaks(
        make(icu::BreakIterator::createLineInstance));
    return kind == Kind::kClusters ? *clusters : *lineBreaks;
  }

  static icu::BreakIterator* make(icu::BreakIterator* (*create)(const icu::Locale&, UErrorCode&)) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> made(create(icu::Locale::getRoot(), status));
    if (U_FAILURE(status) != 0 || made == nullptr) {
      throw std::runtime_error(std::string("no boundary analysis: ") + u_errorName(status));
    }
    return made.release();
  }

  icu::BreakIterator& iterator_;
  UText* text_ = nullptr;
};

/// Fills lines with clusters of one paragraph, the text between two line ends. It keeps no more of
/// them than a line has, however long a word is.
class LineFiller {
 public:
  LineFiller(std::string_view text, int columns, std::vector<std::string>& lines)
      : text_(text), columns_(columns), lines_(lines) {}

  /// The next cluster. A segment is what stands between two places where a line may break.
  void take(std::string_view cluster, int width) {
    if (cluster == " " || cluster == "\t") {
      ++blanks_;
      return;
    }
    // Blanks within a segment are a part of its word.
    for (; blanks_ > 0; --blanks_) takeOfWord(1, 1);
    takeOfWord(cluster.size(), width);
  }

  void endSegment() {
    putWaiting();
    // Blanks at the end of a segment may reach over the edge; they are dropped if a break follows.
    width_ += static_cast<int>(blanks_);
    end_ += blanks_;
    blanks_ = 0;
    isTooLong_ = false;
  }

  /// The last line keeps its blanks where they fit, as nothing is broken there.
  void finishParagraph() {
    if (width_ > columns_) {
      finishLine();
    } else {
      lines_.emplace_back(text_.substr(lineStart_));
    }
  }

 private:
  struct Waiting {
    std::size_t size;
    int width;
  };

  void takeOfWord(std::size_t size, int width) {
    if (isTooLong_) {
      put({size, width});
      return;
    }
    if (width == 0 && !waiting_.empty()) {
      waiting_.back().size += size;
      return;
    }
    waiting_.push_back({size, width});
    waitingWidth_ += width;
    if (width_ + waitingWidth_ <= columns_) return;
    // It does not fit beside what stands there; whether it fits alone need not be known.
    if (lineStart_ != end_) finishLine();
    isTooLong_ = true;
    putWaiting();
  }

  void putWaiting() {
    for (const Waiting& one : waiting_) put(one);
    waiting_.clear();
    waitingWidth_ = 0;
  }

  void put(const Waiting& cluster) {
    if (width_ + cluster.width > columns_ && lineStart_ != end_) finishLine();
    width_ += cluster.width;
    end_ += cluster.size;
  }

  void finishLine() {
    std::string_view line = text_.substr(lineStart_, end_ - lineStart_);
    lines_.emplace_back(line.substr(0, line.find_last_not_of(" \t") + 1));
    lineStart_ = end_;
    width_ = 0;
  }

  std::string_view text_;
  int columns_;
  std::vector<std::string>& lines_;
  std::size_t lineStart_ = 0;
  std::size_t end_ = 0;  ///< of what is put
  int width_ = 0;
  std::vector<Waiting> waiting_;  ///< the word that may still fit
  int waitingWidth_ = 0;
  std::size_t blanks_ = 0;  ///< behind the word, each of one byte and one column
  bool isTooLong_ = false;  ///< the word began a line of its own
};

void wrapParagraph(std::string_view text, int columns, std::vector<std::string>& lines) {
  // No character takes more columns than bytes.
  if (text.size() <= static_cast<std::size_t>(columns)) {
    lines.emplace_back(text);
    return;
  }
  LineFiller filler(text, columns, lines);
  Boundaries breaks(Boundaries::Kind::kLineBreaks, text);
  std::size_t place = 0;
  std::size_t end = 0;
  forEachCluster(text, [&](std::string_view cluster, int width) {
    end += cluster.size();
    filler.take(cluster, width);
    // A break inside a cluster is passed over: the segment goes on to the break after it.
    while (place < end) place = breaks.next();
    if (place == end) filler.endSegment();
  });
  filler.finishParagraph();
}

}  // namespace

void forEachCluster(std::string_view utf8,
                    const std::function<void(std::string_view cluster, int columns)>& take) {
  Boundaries boundaries(Boundaries::Kind::kClusters, utf8);
  for (std::size_t start = 0; start < utf8.size();) {
    const std::size_t end = boundaries.next();
    const std::string_view cluster = utf8.substr(start, end - start);
    take(cluster, clusterWidth(cluster));
    start = end;
  }
}

int displayWidth(std::string_view utf8) {
  if (isPrintableAscii(utf8)) return static_cast<int>(utf8.size());
  if (!isSafe(utf8)) return displayWidth(sanitizeForTerminal(utf8));
  int width = 0;
  forEachCluster(utf8, [&](std::string_view, int columns) { width += columns; });
  return width;
}

std::vector<std::string> wrapToWidth(std::string_view utf8, int columns) {
  const std::string text = repairedUtf8(utf8);
  std::string_view rest = text;
  std::vector<std::string> lines;
  while (true) {
    const std::size_t end = rest.find('\n');
    std::string_view paragraph = rest.substr(0, end);
    const bool hasLineEnd = end != std::string_view::npos;
    if (hasLineEnd && !paragraph.empty() && paragraph.back() == '\r') paragraph.remove_suffix(1);
    wrapParagraph(paragraph, std::max(columns, 1), lines);
    if (!hasLineEnd) return lines;
    rest.remove_prefix(end + 1);
  }
}

std::string sanitizeForTerminal(std::string_view utf8, NewlineHandling newlines) {
  if (isPrintableAscii(utf8)) return std::string(utf8);
  std::string result;
  result.reserve(utf8.size());
  forEachCharacter(utf8, [&](char32_t codePoint, std::size_t, std::size_t) {
    if (codePoint == U'\t') {
      result.push_back(' ');
    } else if (codePoint == U'\n' && newlines == NewlineHandling::kKeep) {
      result.push_back('\n');
    } else {
      appendUtf8(result, isUnsafe(codePoint) ? kReplacementCharacter : codePoint);
    }
  });
  return result;
}

}  // namespace vornwout
