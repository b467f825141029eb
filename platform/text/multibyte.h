// The platform's multibyte string functions. All work on the current encoding (encoding.h) and none
// looks inside a character of two or more bytes, so a trail byte that equals "/" or a quote is
// safe.
#pragma once

#include <string>
#include <string_view>

namespace vornwout {

/// Compares without regard to case (Unicode simple case folding); 0 when equal, otherwise the
/// order.
int VORNMBstricmp_A(const char* left, const char* right);
/// Compares byte for byte; 0 when equal, otherwise the order.
int VORNMBstrcmp_A(const char* left, const char* right);
/// Finds the one-byte character `wanted`; null when it does not occur. Never finds a trail byte.
const char* VORNMBstrchr_A(const char* text, int wanted);
char* VORNMBstrchr_A(char* text, int wanted);
/// Length in bytes of the character at `text`, 0 at the terminating zero.
int VORNMBmbclen_A(const char* text);
/// The text in lower case.
std::string VORNMBMvLower_A(const char* text);
/// The text as zero-terminated UTF-16, or null when `text` is null. The buffer belongs to the
/// platform and is valid until the next call.
const char16_t* VORNMBTranscodeGeneric(const char* text);
/// Converts UTF-16 to UTF-8 into `result`; a lone surrogate becomes U+FFFD.
void VORNMBU16ToU8(const std::u16string& text, std::string& result);
/// True when equal without regard to case.
bool AreStringsEqualCase(std::string_view left, std::string_view right);

/// The text in upper case (current encoding). A character whose upper case the encoding cannot hold
/// stays as it is.
std::string toUpperCase(std::string_view text);

}  // namespace vornwout
