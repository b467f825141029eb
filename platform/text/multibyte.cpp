// Case is mapped and folded code point by code point with Unicode's simple mappings, which never
// change the number of characters. ASCII goes a short way, because nearly all keywords are ASCII.
#include "platform/text/multibyte.h"

#include <algorithm>
#include <array>
#include <cstring>

#include <unicode/uchar.h>
#include <unicode/utf16.h>

#include "platform/text/encoding.h"
#include "platform/text/utf8.h"

namespace vornwout {
namespace {

constexpr std::size_t kMaxCharacterLength = 4;
constexpr char32_t kReplacementCharacter = 0xFFFD;
/// Lies above every code point, so that a malformed byte equals only itself.
constexpr char32_t kMalformed = 0x110000;

bool isAscii(std::string_view text) { return asciiPrefixLength(text) == text.size(); }

char asciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
char asciiUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

char32_t foldedCase(char32_t codePoint) {
  return static_cast<char32_t>(u_foldCase(static_cast<UChar32>(codePoint), U_FOLD_CASE_DEFAULT));
}

std::string_view orEmpty(const char* text) {
  return text == nullptr ? std::string_view() : std::string_view(text);
}

/// The length of the character at `text`, which is not at the terminating zero.
std::size_t lengthAt(const char* text) {
  if (static_cast<unsigned char>(*text) < 0x80) return 1;
  const std::string_view rest(text, strnlen(text, kMaxCharacterLength));
  return static_cast<std::size_t>(currentEncoding().characterLength(rest));
}

/// The text's code points with their case folded. A malformed byte is a value of its own.
std::u32string folded(std::string_view text) {
  std::u32string result;
  result.reserve(text.size());
  const Encoding& encoding = currentEncoding();
  while (!text.empty()) {
    const auto length = static_cast<std::size_t>(encoding.characterLength(text));
    const std::string_view character = text.substr(0, length);
    text.remove_prefix(length);
    const auto byte = static_cast<unsigned char>(character[0]);
    if (byte < 0x80) {
      result.push_back(static_cast<unsigned char>(asciiLower(character[0])));
      continue;
    }
    const std::u16string units = encoding.toUtf16(character);
    if (length == 1 && units.size() == 1 && units[0] == kReplacementCharacter) {
      result.push_back(kMalformed + byte);
      continue;
    }
    for (std::size_t i = 0; i < units.size();) {
      char32_t codePoint = 0;
      U16_NEXT(units, i, units.size(), codePoint);
      result.push_back(foldedCase(codePoint));
    }
  }
  return result;
}

/// Maps the case of every character, leaving those that the encoding could not hold afterwards and
/// those that are not valid as they are.
template <typename Mapping>
std::string mappedCase(std::string_view text, const Mapping& mapping) {
  const Encoding& encoding = currentEncoding();
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const auto length = static_cast<std::size_t>(encoding.characterLength(text));
    const std::string_view character = text.substr(0, length);
    text.remove_prefix(length);
    const std::string utf8 =
        encoding.isUtf8() ? std::string(character) : encoding.toUtf8(character);
    const int utf8Length = validUtf8Length(utf8);
    // Characters that stand for several code points are CJK compositions and have no case.
    if (utf8Length == 0 || static_cast<std::size_t>(utf8Length) != utf8.size()) {
      result.append(character);
      continue;
    }
    const char32_t before = utf8CodePoint(utf8, utf8Length);
    const auto after = static_cast<char32_t>(mapping(static_cast<UChar32>(before)));
    if (after == before) {
      result.append(character);
      continue;
    }
    std::string changed;
    appendUtf8(changed, after);
    bool lossless = true;
    if (!encoding.isUtf8()) changed = encoding.fromUtf8(changed, &lossless);
    result.append(lossless ? std::string_view(changed) : character);
  }
  return result;
}

}  // namespace

int VORNMBstricmp_A(const char* left, const char* right) {
  std::string_view a = orEmpty(left);
  std::string_view b = orEmpty(right);
  while (!a.empty() && !b.empty()) {
    // Where one side leaves ASCII both are folded: a few characters beyond ASCII fold into it.
    if ((static_cast<unsigned char>(a[0]) | static_cast<unsigned char>(b[0])) >= 0x80) {
      const int order = folded(a).compare(folded(b));
      return order < 0 ? -1 : order > 0 ? 1 : 0;
    }
    const char x = asciiLower(a[0]);
    const char y = asciiLower(b[0]);
    if (x != y) return x < y ? -1 : 1;
    a.remove_prefix(1);
    b.remove_prefix(1);
  }
  return a.empty() ? (b.empty() ? 0 : -1) : 1;
}

int VORNMBstrcmp_A(const char* left, const char* right) {
  const int order = orEmpty(left).compare(orEmpty(right));
  return order < 0 ? -1 : order > 0 ? 1 : 0;
}

const char* VORNMBstrchr_A(const char* text, int wanted) {
  if (text == nullptr) return nullptr;
  const char byte = static_cast<char>(wanted);
  // In UTF-8 an ASCII byte is never part of another character.
  if (currentEncoding().isUtf8() && static_cast<unsigned char>(byte) < 0x80) {
    return std::strchr(text, byte);
  }
  for (; *text != '\0'; text += lengthAt(text)) {
    if (*text == byte && lengthAt(text) == 1) return text;
  }
  return byte == '\0' ? text : nullptr;
}

char* VORNMBstrchr_A(char* text, int wanted) {
  const char* readOnly = text;
  const char* found = VORNMBstrchr_A(readOnly, wanted);
  return found == nullptr ? nullptr : text + (found - readOnly);
}

int VORNMBmbclen_A(const char* text) {
  return text == nullptr || *text == '\0' ? 0 : static_cast<int>(lengthAt(text));
}

std::string VORNMBMvLower_A(const char* text) {
  std::string result(orEmpty(text));
  if (!isAscii(result)) return mappedCase(result, u_tolower);
  std::transform(result.begin(), result.end(), result.begin(), asciiLower);
  return result;
}

const char16_t* VORNMBTranscodeGeneric(const char* text) {
  static thread_local std::u16string buffer;
  if (text == nullptr) return nullptr;
  buffer = currentEncoding().toUtf16(text);
  return buffer.c_str();
}

void VORNMBU16ToU8(const std::u16string& text, std::string& result) {
  std::string converted;
  converted.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    char32_t codePoint = 0;
    U16_NEXT(text, i, text.size(), codePoint);
    appendUtf8(converted, codePoint);
  }
  result = std::move(converted);
}

bool AreStringsEqualCase(std::string_view left, std::string_view right) {
  const std::size_t common = std::min(left.size(), right.size());
  for (std::size_t i = 0; i < common; ++i) {
    if ((static_cast<unsigned char>(left[i]) | static_cast<unsigned char>(right[i])) >= 0x80) {
      return left.substr(i) == right.substr(i) || folded(left.substr(i)) == folded(right.substr(i));
    }
    if (asciiLower(left[i]) != asciiLower(right[i])) return false;
  }
  return left.size() == right.size();
}

std::string toUpperCase(std::string_view text) {
  if (!isAscii(text)) return mappedCase(text, u_toupper);
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), asciiUpper);
  return result;
}

}  // namespace vornwout
