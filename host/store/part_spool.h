// Keeps finished parts until they are written: in memory up to a limit, beyond it in a scratch
// file.
//
// The zip library asks for the members only when the container is closed, so a document's
// compressed parts must wait for that; this bounds the memory that they take. What goes to the
// scratch file is encrypted with a key that lives as long as the spool and is written nowhere, so
// that of a document with a password nothing readable remains on the disk.
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>

#include "host/store/file_descriptor.h"

namespace vornwout {

/// keep() may be called by several threads at once; read() only when nobody keeps any more.
class PartSpool {
 public:
  /// Where a part waits.
  struct Place {
    std::string bytes;         ///< the part, unless it is in the file
    std::uint64_t offset = 0;  ///< in the file
    std::uint64_t size = 0;
    bool isInFile = false;
  };

  /// `makeFile` is called when the limit is first exceeded.
  PartSpool(std::uint64_t memoryLimit, std::function<FileDescriptor()> makeFile);
  ~PartSpool();
  PartSpool(const PartSpool&) = delete;
  PartSpool& operator=(const PartSpool&) = delete;

  /// Throws StoreError when the scratch file cannot be written.
  Place keep(std::string bytes);
  /// Reads up to `size` bytes of a part from `offset` on, and returns how many; throws StoreError.
  std::size_t read(const Place& place, std::uint64_t offset, char* target, std::size_t size) const;

 private:
  static constexpr std::size_t kKeySize = 32;

  void writeToFile(Place& place, std::string bytes);
  void applyKeyStream(std::uint64_t offset, char* bytes, std::size_t size) const;

  const std::uint64_t memoryLimit_;
  const std::function<FileDescriptor()> makeFile_;
  std::mutex mutex_;
  std::uint64_t inMemory_ = 0;
  std::uint64_t fileSize_ = 0;
  FileDescriptor file_;
  unsigned char key_[kKeySize];
};

}  // namespace vornwout
