// How large a container may be, for reading and writing alike: what is saved can be opened again.
#pragma once

#include <cstdint>

namespace vornwout {

/// Bytes of one member, unless the caller allows more.
inline constexpr std::uint64_t kMemberLimit = std::uint64_t{256} << 20;
/// What a caller can allow at most: beyond that zlib would need more than one call.
inline constexpr std::uint64_t kMostOfAMember = std::uint64_t{2} << 30;
/// Bytes of all members together.
inline constexpr std::uint64_t kContainerLimit = std::uint64_t{16} << 30;
inline constexpr std::uint64_t kMostMembers = 200'000;
/// Deflate makes at most this many bytes from one, and some from nothing.
inline constexpr std::uint64_t kMostExpansion = 1'032;
inline constexpr std::uint64_t kExpansionAllowance = 64 * 1024;

}  // namespace vornwout
