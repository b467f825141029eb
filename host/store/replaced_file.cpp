#include "host/store/replaced_file.h"

#include <algorithm>
#include <climits>
#include <memory>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/random.h>
#include <sys/stat.h>

#include "host/store/store_error.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

constexpr std::size_t kBufferSize = 256 * 1024;
// What makes a name one of ours: nobody's backup ends like that.
constexpr std::string_view kTemporaryMark = ".save-";
constexpr std::string_view kSuffixCharacters = "0123456789abcdefghijklmnopqrstuv";
constexpr std::size_t kSuffixLength = 10;
// A file name has 255 bytes; the longest names are cut to leave room for the rest.
constexpr std::size_t kMostOfTheName = 200;
constexpr int kMostLinks = 40;
constexpr int kMostAttempts = 100;

[[noreturn]] void fail(const std::string& what, int error) {
  throw StoreError(StoreError::Kind::kNotWritten, what + systemReason(error));
}

[[noreturn]] void fail(const std::string& sentence) {
  throw StoreError(StoreError::Kind::kNotWritten, sentence);
}

/// The text of a symbolic link; nothing when the path is none.
std::optional<std::string> readLink(const std::string& path) {
  std::string target(4096, '\0');
  const ssize_t length = readlink(path.c_str(), target.data(), target.size());
  if (length < 0) {
    if (errno == EINVAL || errno == ENOENT) return std::nullopt;
    if (errno == ENAMETOOLONG && path.size() - (path.rfind('/') + 1) > NAME_MAX) {
      fail(localized("The file's name is too long."));
    }
    fail(localized("The file's path could not be followed"), errno);
  }
  target.resize(static_cast<std::size_t>(length));
  return target;
}

std::string directoryOf(const std::string& path) {
  const auto slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string randomSuffix() {
  unsigned char random[kSuffixLength];
  if (uninterrupted([&] { return getrandom(random, sizeof random, 0); }) !=
      static_cast<ssize_t>(sizeof random)) {
    fail(localized("A name for the temporary file could not be made"), errno);
  }
  std::string suffix;
  for (const unsigned char byte : random) {
    suffix += kSuffixCharacters[byte % kSuffixCharacters.size()];
  }
  return suffix;
}

bool isSuffix(std::string_view text) {
  return text.size() == kSuffixLength &&
         text.find_first_not_of(kSuffixCharacters) == std::string_view::npos;
}

/// The start of a name, cut between two characters.
std::string cutName(const std::string& name) {
  if (name.size() <= kMostOfTheName) return name;
  std::size_t length = kMostOfTheName;
  while (length > 0 && (static_cast<unsigned char>(name[length]) & 0xC0) == 0x80) --length;
  return name.substr(0, length);
}

/// The names in an open directory.
std::vector<std::string> entriesOf(const FileDescriptor& directory) {
  FileDescriptor again(uninterrupted(
      [&] { return openat(directory.number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  if (!again.isOpen()) fail(localized("The file's directory could not be listed"), errno);
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(fdopendir(again.number()), closedir);
  if (stream == nullptr) fail(localized("The file's directory could not be listed"), errno);
  again.release();
  std::vector<std::string> names;
  errno = 0;
  while (const dirent* entry = readdir(stream.get())) {
    names.emplace_back(entry->d_name);
    errno = 0;
  }
  if (errno != 0) fail(localized("The file's directory could not be listed"), errno);
  return names;
}

}  // namespace

ReplacedFile::ReplacedFile(const std::string& path, const FileLock* own) : own_(own) {
  resolve(path);
  examineOldFile();
  removeLeftBehind();
  createTemporary();
}

ReplacedFile::~ReplacedFile() {
  // What cannot be removed now is removed by the next save of the file.
  if (!temporary_.empty()) unlinkat(directory_.number(), temporary_.c_str(), 0);
}

void ReplacedFile::write(std::string_view bytes) {
  if (bytes.empty()) return;
  if (offset_ < bufferOffset_ || offset_ > bufferOffset_ + buffer_.size()) flushBuffer();
  if (buffer_.empty()) bufferOffset_ = offset_;
  const auto at = static_cast<std::size_t>(offset_ - bufferOffset_);
  if (at + bytes.size() <= std::max(buffer_.size(), kBufferSize)) {
    buffer_.replace(at, std::min(bytes.size(), buffer_.size() - at), bytes);
  } else {
    flushBuffer();
    writeThrough(bytes, offset_);
  }
  offset_ += bytes.size();
  size_ = std::max(size_, offset_);
}

ReplacedFile::Committed ReplacedFile::commit() {
  prepare();
  putInPlace();
  return finish();
}

void ReplacedFile::prepare() {
  flushBuffer();
  setPermissions();
  if (uninterrupted([&] { return fsync(descriptor()); }) != 0) {
    fail(localized("The new file could not be flushed to the disk"), errno);
  }
}

void ReplacedFile::place() {
  const int directory = directory_.number();
  if (hasOldFile_ &&
      renameat2(directory, temporary_.c_str(), directory, name_.c_str(), RENAME_EXCHANGE) == 0) {
    placed_ = Placed::kExchanged;
    return;
  }
  const bool canExchange = !hasOldFile_ || (errno != EINVAL && errno != ENOSYS);
  const bool wasThere = hasOldFile_;
  putInPlace();
  placed_ = canExchange && !wasThere && !hasOldFile_ ? Placed::kAlone : Placed::kForGood;
}

void ReplacedFile::takeBack() noexcept {
  const int directory = directory_.number();
  const auto placed = std::exchange(placed_, Placed::kNot);
  // What cannot be taken back is told as the failure that made it necessary.
  if (placed == Placed::kExchanged) {
    renameat2(directory, temporary_.c_str(), directory, name_.c_str(), RENAME_EXCHANGE);
  } else if (placed == Placed::kAlone) {
    renameat2(directory, name_.c_str(), directory, temporary_.c_str(), RENAME_NOREPLACE);
  }
}

ReplacedFile::Committed ReplacedFile::settle() {
  // The old file has the temporary's name now.
  if (placed_ == Placed::kExchanged) {
    unlinkat(directory_.number(), temporary_.c_str(), 0);
  }
  return finish();
}

ReplacedFile::Committed ReplacedFile::finish() {
  temporary_.clear();
  unfinished_.reset();
  oldLock_.reset();
  const int directory = directory_.number();
  std::string warning;
  // EINVAL: a file system that flushes no directories.
  if (uninterrupted([&] { return fsync(directory); }) != 0 && errno != EINVAL) {
    warning = "The new file is in place, but its directory could not be flushed to the disk" +
              systemReason(errno);
  }
  return {std::exchange(lock_, std::nullopt), std::move(warning)};
}

void ReplacedFile::putInPlace() {
  constexpr const char* kFailure = "The new file could not be put in the old one's place";
  const int directory = directory_.number();
  for (int attempt = 0; !hasOldFile_; ++attempt) {
    if (renameat2(directory, temporary_.c_str(), directory, name_.c_str(), RENAME_NOREPLACE) == 0) {
      return;
    }
    // Systems and file systems that can only replace.
    if (errno == EINVAL || errno == ENOSYS) break;
    if (errno != EEXIST || attempt == kMostAttempts) fail(kFailure, errno);
    // Made by somebody meanwhile. Its permissions stay what they were set to: a new file's.
    examineOldFile();
  }
  if (renameat(directory, temporary_.c_str(), directory, name_.c_str()) != 0) {
    fail(kFailure, errno);
  }
}

FileDescriptor ReplacedFile::duplicate() const {
  FileDescriptor copy(fcntl(descriptor(), F_DUPFD_CLOEXEC, 0));
  if (!copy.isOpen()) fail(localized("The new file could not be opened for reading"), errno);
  return copy;
}

FileDescriptor ReplacedFile::makeScratchFile() const {
  const int directory = directory_.number();
  FileDescriptor file(
      uninterrupted([&] { return openat(directory, ".", O_RDWR | O_TMPFILE | O_CLOEXEC, 0600); }));
  if (file.isOpen()) return file;
  // What systems say that know no files without names.
  if (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL) {
    fail(localized("No scratch file could be made beside the file"), errno);
  }
  const std::string name = temporaryPrefix_ + randomSuffix();
  file = FileDescriptor(uninterrupted([&] {
    return openat(directory, name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  }));
  if (!file.isOpen()) fail(localized("No scratch file could be made beside the file"), errno);
  if (unlinkat(directory, name.c_str(), 0) != 0) {
    fail(localized("The scratch file's name could not be removed"), errno);
  }
  return file;
}

void ReplacedFile::resolve(const std::string& path) {
  std::string target = path;
  int links = 0;
  while (const std::optional<std::string> next = readLink(target)) {
    if (++links > kMostLinks) fail(localized("The file's path could not be followed"), ELOOP);
    target = next->starts_with('/') ? *next : directoryOf(target) + "/" + *next;
  }
  const std::string directory = directoryOf(target);
  name_ = target.substr(target.rfind('/') + 1);
  if (name_.empty() || name_ == "." || name_ == "..") fail(localized("The path names no file."));
  temporaryPrefix_ = "." + cutName(name_) + std::string(kTemporaryMark);
  directory_ = FileDescriptor(
      uninterrupted([&] { return open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  if (!directory_.isOpen()) fail(localized("The file's directory could not be opened"), errno);
}

void ReplacedFile::examineOldFile() {
  for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
    struct stat old = {};
    if (fstatat(directory_.number(), name_.c_str(), &old, AT_SYMLINK_NOFOLLOW) != 0) {
      if (errno != ENOENT) fail(localized("The old file could not be examined"), errno);
      return;
    }
    if (S_ISDIR(old.st_mode)) fail(localized("It is a folder."));
    if (!S_ISREG(old.st_mode)) {
      fail(localized("There is something else than an ordinary file at this path."));
    }
    // A rename would replace a file that is protected against writing, too.
    if (faccessat(directory_.number(), name_.c_str(), W_OK, AT_EACCESS) != 0) {
      fail(localized("The old file may not be written"), errno);
    }
    hasOldFile_ = true;
    oldMode_ = old.st_mode & 0777;
    oldOwner_ = old.st_uid;
    oldGroup_ = old.st_gid;
    if (lockOldFile()) return;
    hasOldFile_ = false;
  }
  fail(localized("The old file is being replaced again and again."));
}

/// False when the file was replaced or removed between its locking and its looking at.
bool ReplacedFile::lockOldFile() {
  constexpr int kFlags = O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  FileDescriptor file(
      uninterrupted([&] { return openat(directory_.number(), name_.c_str(), kFlags); }));
  if (!file.isOpen()) {
    if (errno == ENOENT) return false;
    fail(localized("The old file could not be locked"), errno);
  }
  struct stat opened = {};
  if (fstat(file.number(), &opened) != 0)
    fail(localized("The old file could not be examined"), errno);
  const auto isStillThere = [&] {
    struct stat named = {};
    return fstatat(directory_.number(), name_.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
  };
  struct stat locked = {};
  if (own_ != nullptr && fstat(own_->descriptor(), &locked) == 0 &&
      locked.st_dev == opened.st_dev && locked.st_ino == opened.st_ino) {
    return isStillThere();
  }
  bool unsupported = false;
  oldLock_ = FileLock::tryLockOpen(file, unsupported);
  if (unsupported) return isStillThere();
  if (!oldLock_) {
    // Whoever has just put another file in this one's place holds the lock for that moment only.
    if (!isStillThere()) return false;
    throw StoreError(StoreError::Kind::kLocked, localized("Another process has locked it."));
  }
  return isStillThere();
}

void ReplacedFile::removeLeftBehind() {
  for (const std::string& name : entriesOf(directory_)) {
    if (!name.starts_with(temporaryPrefix_) ||
        !isSuffix(std::string_view(name).substr(temporaryPrefix_.size()))) {
      continue;
    }
    constexpr int kFlags = O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    FileDescriptor file(
        uninterrupted([&] { return openat(directory_.number(), name.c_str(), kFlags); }));
    // One that somebody else owns, or that has just gone: not ours to remove, and no reason not to
    // save. The same holds where removing fails.
    if (!file.isOpen()) continue;
    bool unsupported = false;
    // The lock is held until the name is gone; a new temporary's maker looks at it then.
    if (const std::optional<FileLock> lock = FileLock::tryLockOpen(file, unsupported)) {
      unlinkat(directory_.number(), name.c_str(), 0);
    }
  }
}

void ReplacedFile::createTemporary() {
  for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
    if (tryCreateTemporary()) return;
  }
  fail(localized("No temporary file could be made beside the file."));
}

/// False when another process was in the way: it had the name, or took the new file for one that
/// was left behind.
bool ReplacedFile::tryCreateTemporary() {
  const std::string name = temporaryPrefix_ + randomSuffix();
  // Nobody else reads it before it has its final permissions; without an old file the system gives
  // them, by the process's mask.
  const mode_t mode = hasOldFile_ ? 0600 : 0666;
  // Before it is there: a signal may come as soon as it is.
  unfinished_.emplace(directory_.number(), name);
  FileDescriptor file(uninterrupted([&] {
    return openat(directory_.number(), name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode);
  }));
  if (!file.isOpen()) {
    if (errno == EEXIST) return false;
    fail(localized("No temporary file could be made beside the file"), errno);
  }
  temporary_ = name;
  try {
    bool unsupported = false;
    lock_ = FileLock::tryLockOpen(file, unsupported);
    if (unsupported) unlocked_ = std::move(file);
    struct stat status = {};
    if (lock_ || unsupported) {
      if (fstat(descriptor(), &status) != 0) {
        fail(localized("The temporary file could not be examined"), errno);
      }
      if (status.st_nlink > 0) return true;
    }
  } catch (const StoreError&) {
    // A constructor that throws runs no destructor.
    unlinkat(directory_.number(), temporary_.c_str(), 0);
    throw;
  }
  unlinkat(directory_.number(), temporary_.c_str(), 0);
  lock_.reset();
  temporary_.clear();
  return false;
}

void ReplacedFile::setPermissions() {
  if (!hasOldFile_) return;
  struct stat status = {};
  if (fstat(descriptor(), &status) != 0)
    fail(localized("The temporary file could not be examined"), errno);
  mode_t mode = oldMode_;
  if (status.st_gid != oldGroup_ && fchown(descriptor(), static_cast<uid_t>(-1), oldGroup_) != 0) {
    // What the old group was allowed must not become another group's right.
    mode = (mode & ~mode_t{070}) | ((mode & 07) << 3);
  }
  if (status.st_uid != oldOwner_ && fchown(descriptor(), oldOwner_, static_cast<gid_t>(-1)) != 0 &&
      errno != EPERM) {
    fail(localized("The new file's owner could not be set"), errno);
  }
  if (fchmod(descriptor(), mode) != 0)
    fail(localized("The new file's permissions could not be set"), errno);
}

void ReplacedFile::flushBuffer() {
  writeThrough(buffer_, bufferOffset_);
  buffer_.clear();
}

void ReplacedFile::writeThrough(std::string_view bytes, std::uint64_t offset) {
  while (!bytes.empty()) {
    const ssize_t written = uninterrupted([&] {
      return pwrite(descriptor(), bytes.data(), bytes.size(), static_cast<off_t>(offset));
    });
    if (written < 0) fail(localized("The new file could not be written"), errno);
    // Neither progress nor an error: without this the loop might never end.
    if (written == 0) fail(localized("The new file could not be written"), EIO);
    bytes.remove_prefix(static_cast<std::size_t>(written));
    offset += static_cast<std::uint64_t>(written);
  }
}

}  // namespace vornwout
