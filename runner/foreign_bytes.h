// Finds bytes of a job that its encoding does not know.
//
// What cannot be read as text is most often text in another encoding, so the first such byte is
// worth a warning and further ones are not. Entry point: findForeignByte(). Lines are converted as
// a whole and only one with a replacement character in it is walked, so that a sound job costs one
// conversion.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/text/encoding.h"

namespace vornwout {

/// A byte that belongs to no character.
struct ForeignByte {
  std::uint32_t offset = 0;  ///< in the text
  std::uint32_t line = 1;    ///< from 1; lines end with CR, LF or both
  unsigned char value = 0;
};

/// The first byte of `text` that starts no character of the encoding, or a character without a
/// meaning in it.
std::optional<ForeignByte> findForeignByte(std::string_view text, const Encoding& encoding);

}  // namespace vornwout
