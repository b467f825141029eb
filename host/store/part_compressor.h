// Compresses parts in threads of its own while the caller makes the next ones.
//
// Entry points: add() takes a part's bytes, finish() waits for all. The bytes that wait are
// bounded: beyond that add() waits too. Where a part lands does not depend on the threads: each
// writes into the part that it was given, and the result depends on nothing but the bytes.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "host/store/part_spool.h"

namespace vornwout {

/// What compressing a part gives.
struct CompressedPart {
  bool isDeflated = false;
  std::uint64_t size = 0;  ///< before
  std::uint32_t checksum = 0;
  PartSpool::Place place;
};

/// Used by one thread.
class PartCompressor {
 public:
  /// `threads` is at least 1; never more than the machine has are started. `spool` outlives this.
  PartCompressor(int threads, PartSpool& spool);
  /// Waits for what the threads are at, and leaves the rest.
  ~PartCompressor();
  PartCompressor(const PartCompressor&) = delete;
  PartCompressor& operator=(const PartCompressor&) = delete;

  /// Compresses the bytes and writes the result to `part`, which stays where it is until finish().
  /// What deflate does not make smaller is stored as it is.
  void add(CompressedPart& part, std::string bytes);
  /// Returns when all parts are done; throws StoreError when one failed.
  void finish();

 private:
  struct Job {
    CompressedPart* part;
    std::string bytes;
  };

  void work();
  void stop();

  PartSpool& spool_;
  std::mutex mutex_;
  std::condition_variable jobAdded_;
  std::condition_variable jobTaken_;
  std::deque<Job> jobs_;
  std::uint64_t waitingBytes_ = 0;
  bool ends_ = false;
  std::exception_ptr failure_;
  std::vector<std::thread> threads_;
};

}  // namespace vornwout
