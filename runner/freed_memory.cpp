#include "runner/freed_memory.h"

#include <malloc.h>

namespace vornwout {

void keepFreedMemory() {
  constexpr int kTrimAbove = 128 << 20;
  constexpr int kMapAbove = 32 << 20;  // the most that the library allows
  mallopt(M_TRIM_THRESHOLD, kTrimAbove);
  mallopt(M_MMAP_THRESHOLD, kMapAbove);
}

}  // namespace vornwout
