#include "runner/foreign_bytes.h"

#include <algorithm>
#include <string>

#include "platform/text/utf8.h"

namespace vornwout {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

bool holdsReplacement(std::string_view text, const Encoding& encoding) {
  return encoding.toUtf8(text).find(kReplacement) != std::string::npos;
}

/// True when the character is U+FFFD itself, which some encodings can write.
bool isWrittenReplacement(std::string_view character, const Encoding& encoding) {
  bool lossless = false;
  const std::string written = encoding.fromUtf8(kReplacement, &lossless);
  return lossless && written == character;
}

/// Offset of the first foreign byte of a line, or its size.
std::size_t foreignByteOfLine(std::string_view line, const Encoding& encoding) {
  std::size_t offset = asciiPrefixLength(line);
  if (offset == line.size() || !holdsReplacement(line, encoding)) return line.size();
  while (offset < line.size()) {
    const std::string_view rest = line.substr(offset);
    const auto length = static_cast<std::size_t>(encoding.characterLength(rest));
    const std::string_view character = rest.substr(0, length);
    if (holdsReplacement(character, encoding) && !isWrittenReplacement(character, encoding)) {
      return offset;
    }
    offset += length;
    offset += asciiPrefixLength(line.substr(offset));
  }
  return line.size();
}

}  // namespace

std::optional<ForeignByte> findForeignByte(std::string_view text, const Encoding& encoding) {
  std::uint32_t line = 1;
  for (std::size_t begin = 0; begin < text.size(); ++line) {
    const std::size_t end = std::min(text.find_first_of("\r\n", begin), text.size());
    const std::size_t found = begin + foreignByteOfLine(text.substr(begin, end - begin), encoding);
    if (found < end) {
      return ForeignByte{static_cast<std::uint32_t>(found), line,
                         static_cast<unsigned char>(text[found])};
    }
    begin = end + (text.substr(end, 2) == "\r\n" ? 2 : 1);
  }
  return std::nullopt;
}

}  // namespace vornwout
