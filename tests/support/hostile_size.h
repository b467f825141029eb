// How much hostile text a test feeds: all of it in a plain build, a share of it where
// AddressSanitizer makes every byte many times as dear.
#pragma once

#include <cstddef>

namespace vornwout {

#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kIsSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
inline constexpr bool kIsSanitized = true;
#else
inline constexpr bool kIsSanitized = false;
#endif
#else
inline constexpr bool kIsSanitized = false;
#endif

/// The size of a hostile text, in bytes.
inline constexpr std::size_t kHostileSize = kIsSanitized ? 32'000 : 960'000;

/// How many rows, groups or messages a hostile command has.
inline constexpr int kHostileCount = kIsSanitized ? 5'000 : 100'000;

}  // namespace vornwout
