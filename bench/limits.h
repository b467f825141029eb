// The limits that the project promises, each measured against its yardstick in the same run.
//
// A limit is a ratio of medians: what is measured and what it is measured against take turns, so
// that whatever slows the machine down slows both. A yardstick that is a plain number (a rate,
// bytes of memory) stands for itself.
#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace vornwout {

struct LimitResult {
  std::string name;
  double measured = 0;
  double limit = 0;
  bool isMinimum = false;  ///< the measured value must be at least the limit
  std::string detail;      ///< the medians behind the ratio
  bool isPromised = true;  ///< false for another size, which shows growth and breaks nothing

  bool holds() const {
    if (!isPromised) return true;
    return isMinimum ? measured >= limit : measured <= limit;
  }
};

/// How long a measurement may take: the full one, or once to see that it runs.
struct Effort {
  int rounds = 9;
  bool isSmoke = false;
};

/// Seconds that `work` takes.
inline double secondsOf(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// The medians of two pieces of work that take turns.
struct Medians {
  double first = 0;
  double second = 0;
};

inline Medians mediansInTurn(const Effort& effort, const std::function<void()>& first,
                             const std::function<void()>& second) {
  std::vector<double> firstTimes;
  std::vector<double> secondTimes;
  for (int i = 0; i < effort.rounds; ++i) {
    firstTimes.push_back(secondsOf(first));
    secondTimes.push_back(secondsOf(second));
  }
  return {median(firstTimes), median(secondTimes)};
}

std::vector<LimitResult> buildLimits(const Effort& effort);
std::vector<LimitResult> changeLimits(const Effort& effort);
std::vector<LimitResult> commandLimits(const Effort& effort);
std::vector<LimitResult> documentLimits(const Effort& effort);
std::vector<LimitResult> exportLimits(const Effort& effort);
std::vector<LimitResult> exportDocumentLimits(const Effort& effort);
std::vector<LimitResult> modifyLimits(const Effort& effort);
std::vector<LimitResult> stringLimits(const Effort& effort);
/// `program` is the built program, for what is measured on whole processes.
std::vector<LimitResult> processLimits(const Effort& effort, const std::string& program);

}  // namespace vornwout
