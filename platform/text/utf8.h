// UTF-8 at the level of single characters: what is valid, where the next character starts.
//
// The strict definition holds everywhere: no overlong forms, no surrogates, nothing above U+10FFFF,
// no truncated sequence. Whatever breaks it counts byte by byte, so that one bad byte never hides
// the good character behind it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vornwout {

/// Number of bytes of the valid UTF-8 character at `text[0]`; 0 when none starts there or `text` is
/// empty.
int validUtf8Length(std::string_view text);

/// True when all of it is valid UTF-8.
bool isValidUtf8(std::string_view text);

/// Number of bytes before the first one that is not ASCII.
std::size_t asciiPrefixLength(std::string_view text);

/// The code point of the character of `length` bytes at `text[0]`, which is valid.
char32_t utf8CodePoint(std::string_view text, int length);

/// Appends a code point; one that is no Unicode scalar value becomes U+FFFD.
void appendUtf8(std::string& text, char32_t codePoint);

/// The text with every byte that belongs to no valid character replaced by U+FFFD.
std::string repairedUtf8(std::string_view text);

}  // namespace vornwout
