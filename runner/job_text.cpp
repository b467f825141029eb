#include "runner/job_text.h"

#include <cerrno>
#include <cstdlib>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace vornwout {
namespace {

constexpr std::size_t kChunk = std::size_t{1} << 20;

/// A file without a name, or -1.
int makeSpoolFile() {
  const char* folder = std::getenv("TMPDIR");
  std::string pattern = std::string(folder != nullptr && *folder != '\0' ? folder : "/tmp");
  pattern += "/vornwout-job-XXXXXX";
  const int file = mkostemp(pattern.data(), O_CLOEXEC);
  if (file >= 0) unlink(pattern.c_str());
  return file;
}

int writeAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(file, bytes.data(), bytes.size());
    if (count < 0 && errno != EINTR) return errno;
    if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return 0;
}

/// Copies the rest of `from`; `size` counts the bytes of `to`.
int copyRest(int from, int to, std::size_t& size) {
  std::string chunk(kChunk, '\0');
  for (;;) {
    const ssize_t count = read(from, chunk.data(), chunk.size());
    if (count == 0) return 0;
    if (count < 0 && errno != EINTR) return errno;
    if (count < 0) continue;
    size += static_cast<std::size_t>(count);
    if (size > kLargestJob) return EFBIG;
    const int error = writeAll(to, {chunk.data(), static_cast<std::size_t>(count)});
    if (error != 0) return error;
  }
}

}  // namespace

/// A read-only mapping of a spool file.
class JobText::Mapping {
 public:
  Mapping(void* start, std::size_t size) : start_(start), size_(size) {}
  ~Mapping() { munmap(start_, size_); }
  Mapping(const Mapping&) = delete;
  Mapping& operator=(const Mapping&) = delete;

  std::string_view view() const { return {static_cast<const char*>(start_), size_}; }

  void release(std::size_t offset) const {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    // The pages come back from the file when somebody does look.
    madvise(start_, offset / page * page, MADV_DONTNEED);
  }

 private:
  void* start_;
  std::size_t size_;
};

std::optional<int> JobText::spool(const std::string& front, int descriptor, JobText& text) {
  const int file = makeSpoolFile();
  if (file < 0) return std::nullopt;
  std::size_t size = front.size();
  int error = writeAll(file, front);
  if (error == 0) error = copyRest(descriptor, file, size);
  if (error == 0) {
    void* start = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
    if (start == MAP_FAILED) {
      error = errno;
    } else {
      text.mapping_ = std::make_shared<const Mapping>(start, size);
      text.text_ = nullptr;
    }
  }
  close(file);
  return error;
}

std::string_view JobText::view() const {
  if (mapping_ != nullptr) return mapping_->view();
  return text_ != nullptr ? std::string_view(*text_) : std::string_view();
}

void JobText::release(std::size_t offset) const {
  if (mapping_ != nullptr) mapping_->release(offset);
}

}  // namespace vornwout
