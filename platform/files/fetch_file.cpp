#include "platform/files/fetch_file.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/files/file_specification.h"
#include "platform/files/path_context.h"

namespace vornwout {
namespace {

constexpr std::size_t kBlockSize = 65536;

/// An open file descriptor; negative when opening failed.
class Descriptor {
 public:
  // Without blocking, since opening a pipe would wait for its other end.
  explicit Descriptor(const std::string& path)
      : value_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
  ~Descriptor() {
    if (value_ >= 0) close(value_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int value() const { return value_; }

 private:
  int value_;
};

bool isReadable(int descriptor) {
  struct stat status {};
  return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
         std::cmp_less_equal(status.st_size, FetchFile::kMaxFileSize);
}

/// Everything up to the end of the file, which may have grown since its size was looked at.
std::string readAll(int descriptor) {
  std::string content;
  while (true) {
    const std::size_t size = content.size();
    content.resize(size + kBlockSize);
    const ssize_t count = read(descriptor, content.data() + size, kBlockSize);
    if (count < 0 && errno != EINTR) return {};
    content.resize(size + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    if (count == 0) return content;
    if (content.size() > FetchFile::kMaxFileSize) return {};
  }
}

/// `path`, or its place in the working directory where the system would take it as a relative one.
std::string inWorkingDirectory(std::string path) {
  if (!path.empty() && path.front() == '/') return path;
  return toNativePath(workingDirectory()) + '/' + path;
}

}  // namespace

std::string FetchFile::fetch(const std::string& name, bool expandHandles, bool backslashIsSlash) {
  if (name.empty() || name.find('\0') != std::string::npos) return {};
  const std::string path = expandHandles ? replaceDirectoryHandle(name).value_or(name) : name;
  if (path.empty()) return {};
  // Backslashes are looked for in the native path: there none is part of another character.
  std::string native = toNativePath(expandPath(path));
  const Descriptor asWritten(inWorkingDirectory(native));
  if (asWritten.value() >= 0)
    return isReadable(asWritten.value()) ? readAll(asWritten.value()) : "";
  const bool isMissing = errno == ENOENT || errno == ENOTDIR;
  if (!isMissing || !backslashIsSlash || native.find('\\') == std::string::npos) return {};
  std::replace(native.begin(), native.end(), '\\', '/');
  const Descriptor withSlashes(inWorkingDirectory(native));
  return isReadable(withSlashes.value()) ? readAll(withSlashes.value()) : "";
}

}  // namespace vornwout
