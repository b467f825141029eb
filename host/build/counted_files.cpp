#include "host/build/counted_files.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "platform/adapter/progress_listener.h"

namespace vornwout {
namespace {

constexpr const char* kWhat = "Building";

}  // namespace

/// Counts each byte of a source when it is read for the first time.
class CountedFiles::Source : public ByteSource {
 public:
  Source(CountedFiles& files, std::unique_ptr<ByteSource> source)
      : files_(files), source_(std::move(source)) {}

  std::size_t read(char* buffer, std::size_t size) override {
    const std::size_t count = source_->read(buffer, size);
    position_ += count;
    if (position_ > counted_) {
      files_.count(position_ - counted_);
      counted_ = position_;
    }
    return count;
  }

  void rewind() override {
    source_->rewind();
    position_ = 0;
  }

 private:
  CountedFiles& files_;
  std::unique_ptr<ByteSource> source_;
  std::uint64_t position_ = 0;
  std::uint64_t counted_ = 0;
};

std::unique_ptr<ByteSource> CountedFiles::open(const std::string& name) {
  return std::make_unique<Source>(*this, files_.open(name));
}

void CountedFiles::count(std::uint64_t bytes) {
  done_ += bytes;
  // A file may have grown, or have no size. The work lasts until finish(), so the end is not told
  // before.
  if (total_ > 0) reportProgress(kWhat, std::min(done_, total_ - 1), total_);
}

void CountedFiles::finish() const { reportProgress(kWhat, total_, total_); }

}  // namespace vornwout
