#include "platform/files/document_name.h"

#include <string_view>

#include "platform/text/encoding.h"

namespace vornwout {
namespace {

constexpr int kValid = 0;
constexpr int kInvalid = 1;
constexpr std::string_view kOtherCharacters = "0123456789._$#@";

}  // namespace

int ValidateVORNNameCheckLastChar(const char* name) {
  if (name == nullptr || *name == '\0') return kInvalid;
  const Encoding& encoding = currentEncoding();
  std::string_view rest = name;
  bool isFirst = true;
  bool endsWithPeriod = false;
  while (!rest.empty()) {
    const int length = encoding.characterLength(rest);
    const bool isLetter = length > 1 || encoding.isLetterByte(static_cast<unsigned char>(rest[0]));
    const bool isOther = length == 1 && kOtherCharacters.find(rest[0]) != std::string_view::npos;
    if (!isLetter && (isFirst || !isOther)) return kInvalid;
    // The last byte of a longer character may equal a period in no encoding, yet only the character
    // counts.
    endsWithPeriod = length == 1 && rest[0] == '.';
    isFirst = false;
    rest.remove_prefix(static_cast<std::size_t>(length));
  }
  return endsWithPeriod ? kInvalid : kValid;
}

}  // namespace vornwout
