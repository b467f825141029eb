#include "host/store/file_lock.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "host/store/store_error.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

// Without O_NONBLOCK a named pipe would wait for its other end.
constexpr int kOpenFlags = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

FileDescriptor openFile(const std::string& path, int flags) {
  return FileDescriptor(uninterrupted([&] { return open(path.c_str(), flags | kOpenFlags); }));
}

/// The whole file, however long it grows.
struct flock wholeFile() {
  struct flock range = {};
  range.l_type = F_WRLCK;
  range.l_whence = SEEK_SET;
  return range;
}

bool meansUnsupported(int error) {
  return error == ENOLCK || error == ENOSYS || error == EOPNOTSUPP || error == EINVAL;
}

void requireOrdinaryFile(const FileDescriptor& file) {
  struct stat status = {};
  if (fstat(file.number(), &status) != 0) {
    throw StoreError(StoreError::Kind::kNoFile,
                     localized("The file could not be examined^1", systemReason(errno)));
  }
  if (!S_ISREG(status.st_mode)) {
    throw StoreError(StoreError::Kind::kNoFile, S_ISDIR(status.st_mode)
                                                    ? localized("It is a folder.")
                                                    : localized("This is no ordinary file."));
  }
}

}  // namespace

FileLock::FileLock(FileDescriptor file) : file_(std::move(file)), owner_(getpid()) {}

FileLock& FileLock::operator=(FileLock&& other) noexcept {
  if (this != &other) {
    giveUp();
    file_ = std::move(other.file_);
    owner_ = other.owner_;
  }
  return *this;
}

FileLock::~FileLock() { giveUp(); }

void FileLock::giveUp() {
  if (!file_.isOpen() || owner_ != getpid()) return;
  struct flock range = wholeFile();
  range.l_type = F_UNLCK;
  // What fails here is left to the end of the descriptor and of its duplicates.
  static_cast<void>(fcntl(file_.number(), F_OFD_SETLK, &range));
}

std::optional<FileLock> FileLock::tryLock(const std::string& path) {
  for (;;) {
    FileDescriptor file = openFile(path, O_RDWR);
    if (!file.isOpen()) {
      if (errno == EISDIR)
        throw StoreError(StoreError::Kind::kNoFile, localized("It is a folder."));
      const bool missing = errno == ENOENT || errno == ENOTDIR;
      throw StoreError(missing ? StoreError::Kind::kNoFile : StoreError::Kind::kNotWritten,
                       localized("The file cannot be locked^1", systemReason(errno)));
    }
    requireOrdinaryFile(file);
    bool unsupported = false;
    std::optional<FileLock> lock = tryLockOpen(file, unsupported);
    if (unsupported) {
      throw StoreError(
          StoreError::Kind::kNotWritten,
          localized("The file cannot be locked, because its file system has no locks."));
    }
    if (!lock) return std::nullopt;
    // Replaced between opening and locking: what is locked is no longer the document.
    if (lock->holds(path)) return lock;
  }
}

bool FileLock::isLockedByAnother(const std::string& path, const FileLock* own) {
  if (own != nullptr && own->holds(path)) return false;
  const FileDescriptor file = openFile(path, O_RDONLY);
  if (!file.isOpen()) {
    if (errno == ENOENT || errno == ENOTDIR) return false;
    throw StoreError(StoreError::Kind::kNoFile,
                     localized("The file cannot be read^1", systemReason(errno)));
  }
  requireOrdinaryFile(file);
  struct flock range = wholeFile();
  if (uninterrupted([&] { return fcntl(file.number(), F_OFD_GETLK, &range); }) != 0) {
    if (meansUnsupported(errno)) return false;
    throw StoreError(StoreError::Kind::kNoFile,
                     localized("The file's lock could not be looked at^1", systemReason(errno)));
  }
  return range.l_type != F_UNLCK;
}

std::optional<FileLock> FileLock::tryLockOpen(FileDescriptor& file, bool& unsupported) {
  struct flock range = wholeFile();
  unsupported = false;
  if (uninterrupted([&] { return fcntl(file.number(), F_OFD_SETLK, &range); }) == 0) {
    return FileLock(std::move(file));
  }
  unsupported = meansUnsupported(errno);
  if (unsupported || errno == EAGAIN || errno == EACCES) return std::nullopt;
  throw StoreError(StoreError::Kind::kNotWritten,
                   localized("The file could not be locked^1", systemReason(errno)));
}

bool FileLock::holds(const std::string& path) const {
  struct stat locked = {};
  struct stat named = {};
  return fstat(file_.number(), &locked) == 0 && stat(path.c_str(), &named) == 0 &&
         locked.st_dev == named.st_dev && locked.st_ino == named.st_ino;
}

}  // namespace vornwout
