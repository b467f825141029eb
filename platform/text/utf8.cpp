#include "platform/text/utf8.h"

#include <cstdint>
#include <cstring>

namespace vornwout {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

unsigned char byteAt(std::string_view text, std::size_t index) {
  return static_cast<unsigned char>(text[index]);
}

bool isTrail(std::string_view text, std::size_t index) {
  return (byteAt(text, index) & 0xC0U) == 0x80U;
}

}  // namespace

int validUtf8Length(std::string_view text) {
  if (text.empty()) return 0;
  const unsigned char lead = byteAt(text, 0);
  if (lead < 0x80) return 1;
  if (lead < 0xC2 || lead > 0xF4) return 0;
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (text.size() < length) return 0;
  // Only the second byte's range depends on the lead byte: it shuts out overlong forms, surrogates
  // and what lies above U+10FFFF.
  const unsigned char second = byteAt(text, 1);
  const unsigned char low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned char high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  if (second < low || second > high) return 0;
  for (std::size_t i = 2; i < length; ++i) {
    if (!isTrail(text, i)) return 0;
  }
  return static_cast<int>(length);
}

bool isValidUtf8(std::string_view text) {
  for (text.remove_prefix(asciiPrefixLength(text)); !text.empty();
       text.remove_prefix(asciiPrefixLength(text))) {
    const int length = validUtf8Length(text);
    if (length == 0) return false;
    text.remove_prefix(static_cast<std::size_t>(length));
  }
  return true;
}

std::size_t asciiPrefixLength(std::string_view text) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080U;
  std::size_t at = 0;
  for (; text.size() - at >= sizeof(std::uint64_t); at += sizeof(std::uint64_t)) {
    std::uint64_t block = 0;
    std::memcpy(&block, text.data() + at, sizeof block);
    if ((block & kHighBits) != 0) break;
  }
  while (at < text.size() && byteAt(text, at) < 0x80) ++at;
  return at;
}

char32_t utf8CodePoint(std::string_view text, int length) {
  const auto bits = [&](std::size_t index) -> char32_t { return byteAt(text, index) & 0x3FU; };
  switch (length) {
    case 2:
      return (byteAt(text, 0) & 0x1FU) << 6U | bits(1);
    case 3:
      return (byteAt(text, 0) & 0x0FU) << 12U | bits(1) << 6U | bits(2);
    case 4:
      return (byteAt(text, 0) & 0x07U) << 18U | bits(1) << 12U | bits(2) << 6U | bits(3);
    default:
      return byteAt(text, 0);
  }
}

void appendUtf8(std::string& text, char32_t codePoint) {
  const auto append = [&](char32_t byte) { text.push_back(static_cast<char>(byte)); };
  if (codePoint < 0x80) {
    append(codePoint);
  } else if (codePoint < 0x800) {
    append(0xC0 | codePoint >> 6U);
    append(0x80 | (codePoint & 0x3FU));
  } else if (codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF)) {
    text.append(kReplacement);
  } else if (codePoint < 0x10000) {
    append(0xE0 | codePoint >> 12U);
    append(0x80 | (codePoint >> 6U & 0x3FU));
    append(0x80 | (codePoint & 0x3FU));
  } else {
    append(0xF0 | codePoint >> 18U);
    append(0x80 | (codePoint >> 12U & 0x3FU));
    append(0x80 | (codePoint >> 6U & 0x3FU));
    append(0x80 | (codePoint & 0x3FU));
  }
}

std::string repairedUtf8(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  std::size_t at = 0;
  while (at < text.size()) {
    std::size_t end = at;
    int length = 0;
    do {
      end += asciiPrefixLength(text.substr(end));
      length = validUtf8Length(text.substr(end));
      end += static_cast<std::size_t>(length);
    } while (length > 0);
    result.append(text.substr(at, end - at));
    if (end < text.size()) {
      result.append(kReplacement);
      ++end;
    }
    at = end;
  }
  return result;
}

}  // namespace vornwout
