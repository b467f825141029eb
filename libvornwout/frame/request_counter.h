// The request counter behind NextOutputRequestId().
#pragma once

namespace vornwout {

/// Counts from 1 to kHighest and then starts over at 1.
class RequestCounter {
 public:
  static constexpr int kHighest = 2000000000;

  explicit constexpr RequestCounter(int last = 0) : last_(last) {}

  int next() {
    last_ = last_ >= kHighest ? 1 : last_ + 1;
    return last_;
  }

 private:
  int last_;
};

}  // namespace vornwout
