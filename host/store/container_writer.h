// Writes a container: compresses in threads, takes unchanged members over from another container,
// and puts the file in place at one stroke.
//
// Entry points: add() and copy() in the order that the members shall have, then commit().
//
// Parts are deflated by PartCompressor; the zip library gets them ready and only writes them, and
// encrypts them by AES-256 if there is a password. The library writes through ReplacedFile, so it
// makes no temporary file of its own. Times are fixed: equal members give equal files, but for the
// random salts of encryption.
//
// What is written keeps the rules that ContainerReader demands, so that it can be opened again.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "host/store/container_reader.h"
#include "host/store/file_lock.h"

namespace vornwout {

struct ContainerOptions {
  std::string password;  ///< empty for a container that is not encrypted
  int threads = 2;       ///< that compress; never more than the machine has
  /// Compressed bytes that wait in memory for commit(); what is more waits in a scratch file.
  std::uint64_t memoryLimit = std::uint64_t{64} << 20;
  const FileLock* ownLock = nullptr;  ///< what the caller has locked, maybe the old file
};

/// Used by one thread. Members throw StoreError of the kind kNotWritten; the old file is then as it
/// was.
class ContainerWriter {
 public:
  /// Makes the temporary file beside the target, so that a place that cannot be written shows now.
  explicit ContainerWriter(const std::string& path, const ContainerOptions& options = {});
  /// Without commit(), leaves no trace.
  ~ContainerWriter();
  ContainerWriter(const ContainerWriter&) = delete;
  ContainerWriter& operator=(const ContainerWriter&) = delete;

  /// Adds a member. The member "mimetype", which must be the first, is stored and never encrypted,
  /// so that other programs recognise the file by its first bytes. What cannot be compressed, or
  /// shall not, is stored.
  void add(std::string_view name, std::string bytes, bool compress = true);

  /// Takes a member over from another container, without compressing it anew; with the same
  /// password without encrypting it anew. It may be read as late as commit(), by this thread.
  /// Throws the reader's errors.
  void copy(ContainerReader& reader, std::string_view name);

  /// What has become of a container that was written.
  struct Written {
    std::optional<FileLock> lock;  ///< on the new file (ReplacedFile::commit())
    FileDescriptor file;           ///< the new file, to read it with, whatever its name is
    std::string warning;           ///< as ReplacedFile::commit() has it
  };

  /// Writes all members and puts the file in its place. Nothing may be called afterwards.
  /// `progress`, where there is one, is told meanwhile which part of the members (0 to 1) is
  /// written, now and then and in this thread; what it throws ends the writing.
  Written commit(const std::function<void(double part)>& progress = {});

 private:
  class Work;

  std::unique_ptr<Work> work_;
};

}  // namespace vornwout
