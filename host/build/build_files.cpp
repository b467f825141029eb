#include "host/build/build_files.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "host/build/build_error.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

namespace fs = std::filesystem;

/// A pipe has no start to go back to, so all of it is held.
constexpr std::size_t kMaxPipeBytes = std::size_t{1} << 30;

std::string systemReason(int error) { return std::generic_category().message(error); }

/// A regular file that is open while this lives.
class FileSource : public ByteSource {
 public:
  FileSource(int descriptor, std::string name) : descriptor_(descriptor), name_(std::move(name)) {}
  ~FileSource() override { ::close(descriptor_); }
  FileSource(const FileSource&) = delete;
  FileSource& operator=(const FileSource&) = delete;

  std::size_t read(char* buffer, std::size_t size) override {
    for (;;) {
      const ssize_t count = ::read(descriptor_, buffer, size);
      if (count >= 0) return static_cast<std::size_t>(count);
      if (errno != EINTR) {
        throw BuildError::unreadable(name_,
                                     localized("It cannot be read: ^1.", systemReason(errno)));
      }
    }
  }

  void rewind() override {
    if (::lseek(descriptor_, 0, SEEK_SET) < 0) {
      throw BuildError::unreadable(name_, localized("It cannot be read: ^1.", systemReason(errno)));
    }
  }

 private:
  int descriptor_;
  std::string name_;
};

bool isBelow(const fs::path& path, const fs::path& folder) {
  const fs::path relative = path.lexically_relative(folder);
  return !relative.empty() && *relative.begin() != "..";
}

std::string readRest(ByteSource& source, const std::string& name, std::size_t limit) {
  std::string bytes;
  constexpr std::size_t kChunk = std::size_t{64} << 10;
  for (;;) {
    const std::size_t start = bytes.size();
    bytes.resize(start + kChunk);
    const std::size_t count = source.read(bytes.data() + start, kChunk);
    bytes.resize(start + count);
    if (bytes.size() > limit) {
      throw BuildError::unreadable(
          name, localized("It is too large: more than ^1 MiB are not read.", limit >> 20));
    }
    if (count == 0) return bytes;
  }
}

}  // namespace

ByteSource::~ByteSource() = default;
BuildFiles::~BuildFiles() = default;

std::size_t MemorySource::read(char* buffer, std::size_t size) {
  const std::size_t count = std::min(size, bytes_.size() - position_);
  std::memcpy(buffer, bytes_.data() + position_, count);
  position_ += count;
  return count;
}

std::string DiskFiles::shownName(const std::string& name) const {
  return folder_.empty() ? name : (fs::path(folder_) / name).lexically_normal().string();
}

void DiskFiles::checkReach(const std::string& name) const {
  if (reach_ == FileReach::kAnywhere) return;
  const auto refuse = [&](const std::string& why) {
    throw BuildError::unreadable(
        shownName(name), why,
        localized("Put the file into the manifest's folder, or allow others by --allow-outside."));
  };
  const fs::path path(name);
  if (path.is_absolute()) refuse(localized("A manifest names files relative to its folder."));
  const fs::path normal = path.lexically_normal();
  if (!normal.empty() && *normal.begin() == "..") {
    refuse(localized("The file lies outside the manifest's folder."));
  }
  std::error_code error;
  const fs::path folder = fs::canonical(fs::path(folder_.empty() ? "." : folder_), error);
  if (error) return;  // Opening says why.
  const fs::path target = fs::canonical(folder / path, error);
  if (!error && !isBelow(target, folder)) {
    refuse(localized("A symbolic link leads outside the manifest's folder."));
  }
}

std::uint64_t DiskFiles::sizeOf(const std::string& name) {
  struct stat facts {};
  const std::string path = (fs::path(folder_) / name).string();
  if (::stat(path.c_str(), &facts) != 0 || !S_ISREG(facts.st_mode)) return 0;
  return static_cast<std::uint64_t>(facts.st_size);
}

std::unique_ptr<ByteSource> DiskFiles::open(const std::string& name) {
  const std::string shown = shownName(name);
  if (name.empty() || name.find('\0') != std::string::npos) {
    throw BuildError::unreadable(shown, localized("This is no name of a file."));
  }
  checkReach(name);
  const std::string path = (fs::path(folder_) / name).string();
  // Opening a pipe would wait for its other end, and a manifest's author decides what lies there.
  const int patience = reach_ == FileReach::kFolder ? O_NONBLOCK | O_NOCTTY : 0;
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | patience);
  if (descriptor < 0) {
    throw BuildError::unreadable(shown, localized("It cannot be read: ^1.", systemReason(errno)));
  }
  auto source = std::make_unique<FileSource>(descriptor, shown);
  struct stat facts {};
  if (::fstat(descriptor, &facts) != 0) {
    throw BuildError::unreadable(shown, localized("It cannot be read: ^1.", systemReason(errno)));
  }
  if (S_ISDIR(facts.st_mode))
    throw BuildError::unreadable(shown, localized("It is a folder, not a file."));
  if (S_ISREG(facts.st_mode)) return source;
  if (reach_ == FileReach::kFolder) {
    throw BuildError::unreadable(
        shown, localized("It is no ordinary file."),
        localized("Pipes and devices are read with --allow-outside only."));
  }
  return std::make_unique<MemorySource>(readRest(*source, shown, kMaxPipeBytes));
}

std::string readWhole(BuildFiles& files, const std::string& name, std::size_t limit) {
  const std::unique_ptr<ByteSource> source = files.open(name);
  return readRest(*source, files.shownName(name), limit);
}

}  // namespace vornwout
