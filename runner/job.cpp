#include "runner/job.h"

#include <cerrno>
#include <cstring>
#include <string_view>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vornwout {
namespace {

/// A job is written by a person or by a program that writes for one.
constexpr std::size_t kLargestJob = std::size_t{1} << 30;
constexpr std::size_t kChunk = std::size_t{1} << 16;

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
int readAll(int descriptor, std::string& text) {
  while (text.size() <= kLargestJob) {
    const std::size_t begin = text.size();
    text.resize(begin + kChunk);
    const ssize_t count = read(descriptor, text.data() + begin, kChunk);
    text.resize(begin + (count > 0 ? static_cast<std::size_t>(count) : 0));
    if (count == 0) return 0;
    if (count < 0 && errno != EINTR) return errno;
  }
  return EFBIG;
}

}  // namespace

std::variant<Job, JobError> readJob(const std::string& path) {
  Job job{path == "-" ? "<stdin>" : path, {}};
  const File file(path);
  const int error = file.descriptor() < 0 ? errno : readAll(file.descriptor(), job.text);
  if (error != 0) {
    return JobError{fmt::format("The job {} cannot be read: {}.", job.name, std::strerror(error))};
  }
  const std::string_view text = job.text;
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
    return JobError{
        fmt::format("The job {} cannot be read: it is UTF-16 text. Save it as UTF-8.", job.name)};
  }
  return job;
}

}  // namespace vornwout
