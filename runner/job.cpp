#include "runner/job.h"

#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/strings/localized.h"

namespace vornwout {
namespace {

constexpr std::size_t kChunk = std::size_t{1} << 16;
/// A job beyond this is not held in memory as a whole.
constexpr std::size_t kMostInMemory = std::size_t{8} << 20;

class File {
 public:
  explicit File(const std::string& path)
      : descriptor_(path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
  ~File() {
    if (descriptor_ > STDERR_FILENO) close(descriptor_);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

/// 0, or the number of a system error.
int readAll(int descriptor, JobText& whole) {
  std::string text;
  bool canSpool = true;
  while (text.size() <= kLargestJob) {
    if (text.size() > kMostInMemory && canSpool) {
      if (const auto error = JobText::spool(text, descriptor, whole)) return *error;
      canSpool = false;
    }
    const std::size_t begin = text.size();
    text.resize(begin + kChunk);
    const ssize_t count = read(descriptor, text.data() + begin, kChunk);
    const int error = errno;
    text.resize(begin + (count > 0 ? static_cast<std::size_t>(count) : 0));
    if (count == 0) {
      whole = std::move(text);
      return 0;
    }
    if (count < 0 && error != EINTR) return error;
  }
  return EFBIG;
}

}  // namespace

std::variant<Job, JobError> readJob(const std::string& path) {
  Job job{path == "-" ? "<stdin>" : path, {}};
  const File file(path);
  const int error = file.descriptor() < 0 ? errno : readAll(file.descriptor(), job.text);
  if (error != 0) {
    return JobError{localized("The job ^1 cannot be read: ^2.", job.name, std::strerror(error))};
  }
  const std::string_view text = job.text;
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
    return JobError{
        localized("The job ^1 cannot be read: it is UTF-16 text. Save it as UTF-8.", job.name)};
  }
  return job;
}

}  // namespace vornwout
