#include "platform/parser/token.h"

#include "platform/text/encoding.h"
#include "platform/text/multibyte.h"

namespace vornwout {

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
  if (placeCache_.line != line || placeCache_.offset > offset) {
    const std::size_t lineEnd = jobText_.find_last_of("\r\n", offset == 0 ? 0 : offset - 1);
    const bool firstLine = offset == 0 || lineEnd == std::string_view::npos;
    std::size_t start = firstLine ? 0 : lineEnd + 1;
    // The byte-order mark in front of a job is no character of its first line.
    if (start == 0 && jobText_.starts_with("\xEF\xBB\xBF") && offset >= 3) start = 3;
    placeCache_ = {line, static_cast<std::uint32_t>(start), 1};
  }
  const Encoding& encoding = currentEncoding();
  while (placeCache_.offset < offset) {
    const auto length = encoding.characterLength(jobText_.substr(placeCache_.offset));
    placeCache_.offset += static_cast<std::uint32_t>(length);
    ++placeCache_.column;
  }
  return {static_cast<int>(line), placeCache_.column};
}

}  // namespace vornwout
