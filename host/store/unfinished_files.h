// Temporary files of this process that are gone when a signal ends it.
//
// Entry points: an UnfinishedFile while a temporary lies there, removeUnfinishedFiles() in the
// handler of the signal. The handler may call nothing that takes memory or a lock, so the names lie
// in slots of fixed size, each of which is published by one atomic number. A file that finds no
// slot free is left to the next save, as those of a process that was killed are.
#pragma once

#include <cstddef>
#include <string>

namespace vornwout {

class UnfinishedFile {
 public:
  /// The file `name` in the open directory; it need not be there yet.
  UnfinishedFile(int directory, const std::string& name);
  ~UnfinishedFile();
  UnfinishedFile(const UnfinishedFile&) = delete;
  UnfinishedFile& operator=(const UnfinishedFile&) = delete;

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  std::size_t slot_ = kNone;
};

/// Removes the files of all that live now. A signal's handler may call it.
void removeUnfinishedFiles() noexcept;

}  // namespace vornwout
