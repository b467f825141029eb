#include "platform/text/reserve_large.h"

#include <cstdint>

#include <sys/mman.h>
#include <unistd.h>

namespace vornwout {
namespace {

/// Below this a text lies among others in memory that was used before.
constexpr std::size_t kLarge = std::size_t{8} << 20;

}  // namespace

void reserveLarge(std::string& text, std::size_t capacity) {
  text.reserve(capacity);
  if (text.capacity() < kLarge) return;
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto begin = reinterpret_cast<std::uintptr_t>(text.data());
  const std::uintptr_t first = (begin + page - 1) / page * page;
  const std::uintptr_t end = (begin + text.capacity()) / page * page;
  // A wish: a system without large pages refuses it, and nothing is lost.
  static_cast<void>(madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE));
}

}  // namespace vornwout
