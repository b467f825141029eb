#include "host/store/member_name.h"

#include <algorithm>

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/uchar.h>

#include "platform/strings/localized.h"
#include "platform/text/utf8.h"

namespace vornwout {
namespace {

constexpr std::size_t kLongestName = 255;
constexpr std::size_t kLongestShown = 80;

std::string faultOfCharacters(std::string_view name) {
  for (std::size_t i = 0; i < name.size();) {
    const int length = validUtf8Length(name.substr(i));
    if (length == 0) return localized("is not valid UTF-8");
    const char32_t character = utf8CodePoint(name.substr(i), length);
    // A zero byte arrives here as a blank.
    if (character == U' ') return localized("has a blank or a zero byte");
    if (character == U'\\') return "has a backslash";
    if (character == U':') return "has a colon";
    if (u_iscntrl(static_cast<UChar32>(character))) return localized("has a control character");
    i += static_cast<std::size_t>(length);
  }
  return {};
}

}  // namespace

std::string faultOfMemberName(std::string_view name) {
  if (name.empty()) return "is empty";
  if (name.size() > kLongestName) return localized("is longer than 255 bytes");
  if (std::string fault = faultOfCharacters(name); !fault.empty()) return fault;
  if (name.front() == '/') return localized("is an absolute path");
  if (name.back() == '/') name.remove_suffix(1);
  for (;;) {
    const std::size_t slash = name.find('/');
    const std::string_view component = name.substr(0, slash);
    if (component.empty()) return localized("has an empty component");
    if (component == "." || component == "..")
      return localized("leaves its place by \".\" or \"..\"");
    if (slash == std::string_view::npos) return {};
    name.remove_prefix(slash + 1);
  }
}

std::string quotedMemberName(std::string_view name) {
  const bool isShort = name.size() <= kLongestShown;
  std::string shown = repairedUtf8(name.substr(0, kLongestShown));
  for (char& byte : shown) {
    if (static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F) byte = '?';
  }
  return "\"" + shown + (isShort ? "\"" : "...\"");
}

std::string caseFoldedName(std::string_view name) {
  std::string folded;
  if (asciiPrefixLength(name) == name.size()) {
    folded.resize(name.size());
    std::transform(name.begin(), name.end(), folded.begin(), [](char byte) {
      return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + ('a' - 'A')) : byte;
    });
    return folded;
  }
  UErrorCode error = U_ZERO_ERROR;
  icu::StringByteSink<std::string> sink(&folded);
  icu::CaseMap::utf8Fold(0, icu::StringPiece(name.data(), static_cast<int32_t>(name.size())), sink,
                         nullptr, error);
  return folded;
}

}  // namespace vornwout
