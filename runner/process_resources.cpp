#include "runner/process_resources.h"

#include <malloc.h>
#include <sys/resource.h>

namespace vornwout {

void keepFreedMemory() {
  constexpr int kTrimAbove = 128 << 20;
  constexpr int kMapAbove = 32 << 20;  // the most that the library allows
  mallopt(M_TRIM_THRESHOLD, kTrimAbove);
  mallopt(M_MMAP_THRESHOLD, kMapAbove);
}

void allowManyOpenFiles() {
  rlimit limit{};
  // Where the system says no, it says so again when there are too many.
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  static_cast<void>(setrlimit(RLIMIT_NOFILE, &limit));
}

}  // namespace vornwout
