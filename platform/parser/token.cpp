#include "platform/parser/token.h"

#include <algorithm>
#include <iterator>

#include "platform/text/encoding.h"
#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

constexpr std::uint32_t kBytesPerMark = 256;

}  // namespace

std::string_view TokenizedCommand::rawText(const Token& token) const {
  std::string_view source = sourceText(token);
  if (token.kind != TokenKind::kString) return source;
  source.remove_prefix(1);
  if (!token.unterminated) source.remove_suffix(1);
  return source;
}

std::string TokenizedCommand::text(const Token& token) const {
  const std::string_view raw = rawText(token);
  if (!token.doubledQuotes) return std::string(raw);
  const char quote = jobText_[token.offset];
  std::string result;
  result.reserve(raw.size());
  for (std::size_t i = 0; i < raw.size(); ++i) {
    result.push_back(raw[i]);
    if (raw[i] == quote) ++i;
  }
  return result;
}

bool TokenizedCommand::textEquals(const Token& token, std::string_view text) const {
  if (token.doubledQuotes) return AreStringsEqualCase(this->text(token), text);
  const std::string_view raw = rawText(token);
  return AreStringsEqualCase(raw, text);
}

SourcePlace TokenizedCommand::place(std::uint32_t offset, std::uint32_t line) const {
  ColumnMark at = markBefore(offset, line);
  const Encoding& encoding = currentEncoding();
  while (at.offset < offset) {
    at.offset += static_cast<std::uint32_t>(encoding.characterLength(jobText_.substr(at.offset)));
    ++at.column;
    if (at.offset >= columnMarks_.back().offset + kBytesPerMark) columnMarks_.push_back(at);
  }
  return {static_cast<int>(line), at.column};
}

TokenizedCommand::LinePart TokenizedCommand::partOfLine(std::uint32_t offset, std::uint32_t line,
                                                        std::size_t reach) const {
  place(offset,
        line);  // makes the marks up to there: a stretch can only begin at a known character
  const std::uint32_t lineStart = columnMarks_.front().offset;
  const std::size_t before = std::min<std::size_t>(offset - lineStart, reach);
  const ColumnMark start = markBefore(offset - static_cast<std::uint32_t>(before), line);
  const Encoding& encoding = currentEncoding();
  std::size_t end = offset;
  const auto lineGoesOn = [&] {
    return end < jobText_.size() && jobText_[end] != '\n' && jobText_[end] != '\r';
  };
  while (lineGoesOn() && end < offset + reach) {
    end += static_cast<std::size_t>(encoding.characterLength(jobText_.substr(end)));
  }
  return {jobText_.substr(start.offset, end - start.offset), start.column, start.offset > lineStart,
          lineGoesOn()};
}

TokenizedCommand::ColumnMark TokenizedCommand::markBefore(std::uint32_t offset,
                                                          std::uint32_t line) const {
  if (markedLine_ != line) {
    const std::size_t lineEnd =
        offset == 0 ? std::string_view::npos : jobText_.find_last_of("\r\n", offset - 1);
    // The byte-order mark in front of a job is no character of its first line.
    const std::size_t jobStart =
        jobText_.starts_with(kUtf8ByteOrderMark) ? kUtf8ByteOrderMark.size() : 0;
    const std::size_t start = lineEnd == std::string_view::npos ? jobStart : lineEnd + 1;
    columnMarks_.assign(1, {static_cast<std::uint32_t>(start), 1});
    markedLine_ = line;  // only now: the marks may have found no memory
  }
  const auto behind = std::upper_bound(
      columnMarks_.begin() + 1, columnMarks_.end(), offset,
      [](std::uint32_t wanted, const ColumnMark& mark) { return wanted < mark.offset; });
  return *std::prev(behind);
}

}  // namespace vornwout
