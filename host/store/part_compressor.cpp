#include "host/store/part_compressor.h"

#include <algorithm>
#include <new>
#include <optional>
#include <system_error>
#include <utility>

#include "host/store/deflate.h"
#include "host/store/store_error.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

// Enough to keep the threads busy while the caller makes a large part.
constexpr std::uint64_t kMostWaiting = std::uint64_t{16} << 20;

void compress(Deflater& deflater, PartSpool& spool, CompressedPart& part, std::string bytes) {
  part.size = bytes.size();
  part.checksum = checksumOf(bytes);
  std::string deflated;
  part.isDeflated = deflater.deflateAll(bytes, deflated);
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
      throw StoreError(StoreError::Kind::kNotWritten,
                       localized("No thread could be started to compress."));
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
        failure = std::make_exception_ptr(
            StoreError(StoreError::Kind::kNotWritten,
                       localized("There is not enough memory to compress a part.")));
      } catch (const StoreError&) {
        failure = std::current_exception();
      }
    }
    lock.lock();
    if (failure_ == nullptr) failure_ = failure;
  }
}

}  // namespace vornwout
