#include "host/store/unfinished_files.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstring>

#include <unistd.h>

namespace vornwout {
namespace {

constexpr int kFree = -1;
constexpr int kTaken = -2;  // its name is being written

struct Slot {
  std::atomic<int> directory = kFree;
  std::array<char, NAME_MAX + 1> name{};
};

static_assert(std::atomic<int>::is_always_lock_free);

std::array<Slot, 16> slots;

}  // namespace

UnfinishedFile::UnfinishedFile(int directory, const std::string& name) {
  if (name.size() > NAME_MAX) return;
  for (std::size_t i = 0; i < slots.size(); ++i) {
    int expected = kFree;
    if (!slots[i].directory.compare_exchange_strong(expected, kTaken)) continue;
    std::memcpy(slots[i].name.data(), name.c_str(), name.size() + 1);
    slots[i].directory.store(directory);
    slot_ = i;
    return;
  }
}

UnfinishedFile::~UnfinishedFile() {
  if (slot_ != kNone) slots[slot_].directory.store(kFree);
}

void removeUnfinishedFiles() noexcept {
  const int before = errno;
  for (const Slot& slot : slots) {
    const int directory = slot.directory.load();
    if (directory >= 0) unlinkat(directory, slot.name.data(), 0);
  }
  errno = before;
}

}  // namespace vornwout
