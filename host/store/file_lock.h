// An exclusive advisory lock on a document's file.
//
// Entry points: FileLock::tryLock() takes it, isLockedByAnother() looks without touching it, and
// ReplacedFile::commit() hands over the lock of the file that it has put in the old one's place.
//
// Locks of open file descriptions (F_OFD_SETLK) are used: two opens within one process exclude each
// other, which locks of processes (F_SETLK) do not, and closing another descriptor of the file
// loses nothing; a child made by fork shares the lock until it is given up here, one made by exec
// does not have it; over NFS the server sees them, as byte ranges; and, other than with flock(),
// one can ask whether a file is locked without taking a lock that a third process would then run
// into. The price: the file must be one that may be written.
//
// A save replaces the file, so a lock on the old one would guard nothing. tryLock() therefore looks
// again, once it has the lock, whether the path still names the locked file. The new file is locked
// before it is renamed, and so nobody gets in between.
//
// A lock is given up as such, and not left to the descriptor's end: a document goes on reading its
// file through a duplicate, which would keep it.
#pragma once

#include <optional>
#include <string>

#include <sys/types.h>

#include "host/store/file_descriptor.h"

namespace vornwout {

/// Holds the lock until it ends.
class FileLock {
 public:
  FileLock(FileLock&& other) noexcept = default;
  FileLock& operator=(FileLock&& other) noexcept;
  ~FileLock();

  /// Locks the file; nothing when another lock holds it. Throws StoreError when there is no file,
  /// it may not be written, or its file system has no locks.
  static std::optional<FileLock> tryLock(const std::string& path);

  /// True when the file is locked by anybody but `own`, a lock of this process, which may be null.
  /// A file that is not there is not locked. Throws StoreError when it cannot be looked at.
  static bool isLockedByAnother(const std::string& path, const FileLock* own = nullptr);

  /// Locks an open file that may be written. Nothing when another lock holds it, or when its file
  /// system has no locks (`unsupported` is then true); throws StoreError when the system fails.
  static std::optional<FileLock> tryLockOpen(FileDescriptor& file, bool& unsupported);

  /// True when `path` still names the file that is locked.
  bool holds(const std::string& path) const;

  int descriptor() const { return file_.number(); }

 private:
  explicit FileLock(FileDescriptor file);
  void giveUp();

  FileDescriptor file_;
  pid_t owner_;  // the process that took it: a child's end must not unlock its parent's file
};

}  // namespace vornwout
