#include "host/store/password_key.h"

#include <algorithm>
#include <cstdlib>

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>

#include "host/store/file_descriptor.h"
#include "host/store/store_error.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

[[noreturn]] void fail(const std::string& sentence) {
  throw StoreError(StoreError::Kind::kNoFile, sentence);
}

/// Removes the temporary key file when it ends.
class TemporaryName {
 public:
  explicit TemporaryName(const std::string& path) : path_(path) {}
  ~TemporaryName() { unlink(path_.c_str()); }
  TemporaryName(const TemporaryName&) = delete;
  TemporaryName& operator=(const TemporaryName&) = delete;

 private:
  std::string path_;
};

FileDescriptor openKey(const std::string& path) {
  constexpr int kFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  FileDescriptor file(uninterrupted([&] { return open(path.c_str(), kFlags); }));
  if (!file.isOpen() && errno != ENOENT) {
    fail(localized("The password key \"^1\" cannot be read^2", path, systemReason(errno)));
  }
  return file;
}

PasswordKey readKey(const std::string& path, const FileDescriptor& file) {
  const std::string name = localized("The password key \"^1\"", path);
  struct stat status = {};
  if (fstat(file.number(), &status) != 0) {
    fail(localized("^1 cannot be examined^2", name, systemReason(errno)));
  }
  if (!S_ISREG(status.st_mode)) fail(localized("^1 is no ordinary file; remove it.", name));
  if (status.st_uid != geteuid()) {
    fail(localized("^1 belongs to another user; remove it, or use a key of your own.", name));
  }
  if ((status.st_mode & 077) != 0) {
    fail(localized("^1 may be read by others; if nobody has, mend it by: chmod 600 \"^2\".", name,
                   path));
  }
  // One byte more than a key has, to see whether there is more.
  std::array<unsigned char, PasswordKey::kSize + 1> bytes = {};
  std::size_t size = 0;
  while (size < bytes.size()) {
    const ssize_t count = uninterrupted(
        [&] { return read(file.number(), bytes.data() + size, bytes.size() - size); });
    if (count < 0) fail(localized("^1 cannot be read^2", name, systemReason(errno)));
    if (count == 0) break;
    size += static_cast<std::size_t>(count);
  }
  if (size != PasswordKey::kSize) {
    fail(localized("^1 is damaged: a key has ^2 bytes.", name, PasswordKey::kSize));
  }
  PasswordKey::Bytes key = {};
  std::copy_n(bytes.begin(), key.size(), key.begin());
  PasswordKey result(key);
  OPENSSL_cleanse(key.data(), key.size());
  OPENSSL_cleanse(bytes.data(), bytes.size());
  return result;
}

/// Makes the directories above the file that are missing, for the user alone.
void makeDirectories(const std::string& path) {
  for (auto slash = path.find('/', 1); slash != std::string::npos;
       slash = path.find('/', slash + 1)) {
    const std::string directory = path.substr(0, slash);
    if (mkdir(directory.c_str(), 0700) != 0 && errno != EEXIST) {
      fail(localized("The directory \"^1\" cannot be made^2", directory, systemReason(errno)));
    }
  }
}

/// False when the name is taken.
bool putInPlace(const std::string& from, const std::string& to) {
  if (link(from.c_str(), to.c_str()) == 0) return true;
  if (errno == EEXIST) return false;
  // A file system without hard links.
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno == EEXIST) return false;
  fail(localized("The password key \"^1\" cannot be made^2", to, systemReason(errno)));
}

void createKey(const std::string& path) {
  makeDirectories(path);
  PasswordKey::Bytes key = {};
  if (uninterrupted([&] { return getrandom(key.data(), key.size(), 0); }) !=
      static_cast<ssize_t>(key.size())) {
    fail(localized("The system gives no random bytes for a password key^1", systemReason(errno)));
  }
  std::string temporary = path + ".XXXXXX";
  const FileDescriptor file(mkostemp(temporary.data(), O_CLOEXEC));  // its mode is 0600
  if (!file.isOpen()) {
    fail(localized("The password key \"^1\" cannot be made^2", path, systemReason(errno)));
  }
  const TemporaryName removal(temporary);
  const ssize_t written =
      uninterrupted([&] { return write(file.number(), key.data(), key.size()); });
  OPENSSL_cleanse(key.data(), key.size());
  // The system writes less than all only where the disk is full.
  if (written >= 0 && written != static_cast<ssize_t>(key.size())) errno = ENOSPC;
  if (written != static_cast<ssize_t>(key.size()) || fsync(file.number()) != 0) {
    fail(localized("The password key \"^1\" cannot be written^2", path, systemReason(errno)));
  }
  putInPlace(temporary, path);
}

}  // namespace

PasswordKey PasswordKey::loadOrCreate(const std::string& path) {
  FileDescriptor file = openKey(path);
  if (!file.isOpen()) {
    createKey(path);
    file = openKey(path);
  }
  if (!file.isOpen()) fail(localized("The password key \"^1\" has vanished.", path));
  return readKey(path, file);
}

std::string defaultPasswordKeyPath() {
  constexpr const char* kPlace = "/vornwout/password-key";
  const char* configuration = std::getenv("XDG_CONFIG_HOME");
  // A relative path is invalid there, by the convention that defines the variable.
  if (configuration != nullptr && configuration[0] == '/') {
    return std::string(configuration) + kPlace;
  }
  const char* home = std::getenv("HOME");
  if (home != nullptr && home[0] == '/') return std::string(home) + "/.config" + kPlace;
  fail(localized(
      "There is no place for the password key: neither XDG_CONFIG_HOME nor HOME is set."));
}

}  // namespace vornwout
