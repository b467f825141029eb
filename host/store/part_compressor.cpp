#include "host/store/part_compressor.h"

#include <algorithm>
#include <new>
#include <optional>
#include <system_error>
#include <utility>

#include <zlib.h>

#include "host/store/store_error.h"

namespace vornwout {
namespace {

// Enough to keep the threads busy while the caller makes a large part.
constexpr std::uint64_t kMostWaiting = std::uint64_t{16} << 20;
constexpr std::size_t kOutputStep = std::size_t{256} << 10;
constexpr std::size_t kInputStep = std::size_t{1} << 30;

/// One thread's compressor, used for one part after the other.
class Deflater {
 public:
  Deflater() : output_(kOutputStep, '\0') {
    if (deflateInit2(&stream_, Z_BEST_SPEED, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY) !=
        Z_OK) {
      throw std::bad_alloc();
    }
  }
  ~Deflater() { deflateEnd(&stream_); }
  Deflater(const Deflater&) = delete;
  Deflater& operator=(const Deflater&) = delete;

  std::string deflateAll(const std::string& bytes) {
    deflateReset(&stream_);
    std::string result;
    // zlib's input is not const by tradition; it is not written to.
    stream_.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(bytes.data()));
    std::size_t left = bytes.size();
    int outcome = Z_OK;
    while (outcome != Z_STREAM_END) {
      if (stream_.avail_in == 0) {
        stream_.avail_in = static_cast<uInt>(std::min(left, kInputStep));
        left -= stream_.avail_in;
      }
      stream_.next_out = reinterpret_cast<Bytef*>(output_.data());
      stream_.avail_out = static_cast<uInt>(output_.size());
      outcome = deflate(&stream_, left == 0 ? Z_FINISH : Z_NO_FLUSH);
      result.append(output_, 0, output_.size() - stream_.avail_out);
    }
    result.shrink_to_fit();
    return result;
  }

 private:
  z_stream stream_ = {};
  std::string output_;
};

void compress(Deflater& deflater, PartSpool& spool, CompressedPart& part, std::string bytes) {
  part.size = bytes.size();
  part.checksum = static_cast<std::uint32_t>(
      crc32_z(0, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
  std::string deflated = deflater.deflateAll(bytes);
  part.isDeflated = deflated.size() < bytes.size();
  part.place = spool.keep(std::move(part.isDeflated ? deflated : bytes));
}

}  // namespace

PartCompressor::PartCompressor(int threads, PartSpool& spool) : spool_(spool) {
  const auto most = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
  try {
    for (int i = 0; i < std::clamp(threads, 1, most); ++i) {
      threads_.emplace_back(&PartCompressor::work, this);
    }
  } catch (const std::system_error&) {
    // With fewer threads it takes longer; without any there is nobody to work.
    if (threads_.empty()) {
      throw StoreError(StoreError::Kind::kNotWritten, "No thread could be started to compress.");
    }
  }
}

PartCompressor::~PartCompressor() {
  {
    const std::lock_guard guard(mutex_);
    jobs_.clear();
  }
  stop();
}

void PartCompressor::add(CompressedPart& part, std::string bytes) {
  std::unique_lock lock(mutex_);
  const std::uint64_t size = bytes.size();
  // A part larger than the bound waits until it is alone.
  jobTaken_.wait(lock, [&] { return jobs_.empty() || waitingBytes_ + size <= kMostWaiting; });
  waitingBytes_ += size;
  jobs_.push_back({&part, std::move(bytes)});
  lock.unlock();
  jobAdded_.notify_one();
}

void PartCompressor::finish() {
  stop();
  if (failure_ != nullptr) std::rethrow_exception(std::exchange(failure_, nullptr));
}

void PartCompressor::stop() {
  {
    const std::lock_guard guard(mutex_);
    ends_ = true;
  }
  jobAdded_.notify_all();
  for (std::thread& thread : threads_) thread.join();
  threads_.clear();
}

void PartCompressor::work() {
  std::optional<Deflater> deflater;
  std::unique_lock lock(mutex_);
  for (;;) {
    jobAdded_.wait(lock, [&] { return ends_ || !jobs_.empty(); });
    if (jobs_.empty()) return;
    Job job = std::move(jobs_.front());
    jobs_.pop_front();
    waitingBytes_ -= job.bytes.size();
    // After a failure the rest is taken and left, so that nobody waits for it.
    const bool goesOn = failure_ == nullptr;
    lock.unlock();
    jobTaken_.notify_one();
    std::exception_ptr failure;
    if (goesOn) {
      try {
        if (!deflater) deflater.emplace();
        compress(*deflater, spool_, *job.part, std::move(job.bytes));
      } catch (const std::bad_alloc&) {
        failure = std::make_exception_ptr(StoreError(
            StoreError::Kind::kNotWritten, "There is not enough memory to compress a part."));
      } catch (const StoreError&) {
        failure = std::current_exception();
      }
    }
    lock.lock();
    if (failure_ == nullptr) failure_ = failure;
  }
}

}  // namespace vornwout
