// Writes a file anew so that at every moment the old file or the new one is there, whole.
//
// The bytes go to a temporary file beside the target; commit() flushes it to the disk, renames it
// over the target and flushes the directory. Until then the target is not touched. Names are
// resolved against the open directory, so that moving it away in the meantime harms nothing.
//
// The old file is locked from the constructor until the rename is done, or the caller's own lock on
// it holds: nobody can lock a file that is about to be replaced, and no two replace it at a time.
// Where there was none, the rename replaces none; one that has come meanwhile is locked first.
//
// The temporary is locked from its first moment (file_lock.h). A process that was killed holds no
// locks: the next save of the same file removes the temporaries that it finds unlocked. After the
// rename the same lock guards the new file, and goes to the caller.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

#include "host/store/file_descriptor.h"
#include "host/store/file_lock.h"
#include "host/store/unfinished_files.h"

namespace vornwout {

/// All members throw StoreError of the kind kNotWritten, or kLocked where another holds the file.
class ReplacedFile {
 public:
  /// Makes the temporary file. A symbolic link stays one: the file that it names is replaced. The
  /// new file gets the old one's permissions, and its owner and group where the system allows it;
  /// without an old file those of any new file. `own` is a lock that the caller holds on the old
  /// file, or on any other; it outlives this.
  explicit ReplacedFile(const std::string& path, const FileLock* own = nullptr);
  /// Removes the temporary file, unless it has become the target.
  ~ReplacedFile();
  ReplacedFile(const ReplacedFile&) = delete;
  ReplacedFile& operator=(const ReplacedFile&) = delete;

  /// Writes at the current offset and moves it on.
  void write(std::string_view bytes);
  void seek(std::uint64_t offset) { offset_ = offset; }
  std::uint64_t tell() const { return offset_; }
  /// Number of bytes written so far, up to the last one.
  std::uint64_t size() const { return size_; }

  /// A file without a name on the same file system, for what must wait; it is gone when it is
  /// closed, or when the process ends.
  FileDescriptor makeScratchFile() const;

  /// Another descriptor of the new file, to read it with, whatever its name stands for later.
  FileDescriptor duplicate() const;

  /// What has become of the new file.
  struct Committed {
    std::optional<FileLock> lock;  ///< on the new file; nothing where its file system has no locks
    std::string warning;  ///< a sentence where the directory could not be flushed to the disk
  };

  /// Puts the file in the target's place. Gives the lock on the new file, for whoever wants to keep
  /// it. Once the file is in its place nothing can fail any more: there is only a warning.
  Committed commit();

  /// The same in steps, for several files of which all are to be replaced or none: what fails
  /// mostly fails in prepare(); placed files can be taken back until they are settled.
  void prepare();
  void place();
  /// Puts the old file back, or none where there was none. Where the file system can only replace,
  /// the new file stays.
  void takeBack() noexcept;
  Committed settle();

 private:
  enum class Placed { kNot, kAlone, kExchanged, kForGood };

  void resolve(const std::string& path);
  void examineOldFile();
  bool lockOldFile();
  void putInPlace();
  Committed finish();
  void removeLeftBehind();
  void createTemporary();
  bool tryCreateTemporary();
  void setPermissions();
  void flushBuffer();
  void writeThrough(std::string_view bytes, std::uint64_t offset);
  int descriptor() const { return lock_ ? lock_->descriptor() : unlocked_.number(); }

  std::string name_;             // of the target, within its directory
  std::string temporaryPrefix_;  // with which the names of its temporaries start
  std::string temporary_;        // the temporary's name; empty when there is none
  FileDescriptor directory_;
  std::optional<UnfinishedFile> unfinished_;  // the temporary, where a signal looks for it
  FileDescriptor unlocked_;                   // the temporary, where the file system has no locks
  std::optional<FileLock> lock_;

  const FileLock* own_;
  std::optional<FileLock> oldLock_;  // none where the caller's holds, or there are no locks
  bool hasOldFile_ = false;
  Placed placed_ = Placed::kNot;
  mode_t oldMode_ = 0;
  uid_t oldOwner_ = 0;
  gid_t oldGroup_ = 0;

  std::string buffer_;  // what is not written yet; it stands at bufferOffset_
  std::uint64_t bufferOffset_ = 0;
  std::uint64_t offset_ = 0;
  std::uint64_t size_ = 0;
};

}  // namespace vornwout
