// Who wants to know how far long work has come: opening, saving and building documents tell it.
//
// Entry points: reportProgress() for whoever works, ProgressStep and reportWithinStep() where a
// part of the work is long itself, ProgressRegistration for whoever shows it. While nobody is
// registered a report costs one comparison, so that it may stand in a loop over objects. Reports
// come from the thread that was asked to do the work, never from its helpers.
#pragma once

#include <cstdint>
#include <string_view>

namespace vornwout {

class ProgressListener {
 public:
  virtual ~ProgressListener();
  /// `what` is being done, a short text in UTF-8 ("Saving report.qxv"); `done` of `total` units are
  /// finished. A `total` of 0 means that nobody knows how many there are.
  virtual void progress(std::string_view what, std::uint64_t done, std::uint64_t total) = 0;
};

/// Registers a listener while it lives; the one before is back when it ends.
class ProgressRegistration {
 public:
  explicit ProgressRegistration(ProgressListener& listener);
  ~ProgressRegistration();
  ProgressRegistration(const ProgressRegistration&) = delete;
  ProgressRegistration& operator=(const ProgressRegistration&) = delete;

 private:
  ProgressListener* before_;
};

/// Tells the registered listener, if there is one.
void reportProgress(std::string_view what, std::uint64_t done, std::uint64_t total);

/// One of the units of a work, while it lives: what happens in it can be told as parts of it by
/// someone who knows nothing of the work. A step within a step is a part of that one.
class ProgressStep {
 public:
  /// The unit that comes behind `done` of `total`. `what` must outlive the step.
  ProgressStep(std::string_view what, std::uint64_t done, std::uint64_t total);
  /// The part that comes behind `part` of `parts` of the step that lives now; nothing without one.
  ProgressStep(std::uint64_t part, std::uint64_t parts);
  ~ProgressStep();
  ProgressStep(const ProgressStep&) = delete;
  ProgressStep& operator=(const ProgressStep&) = delete;

 private:
  friend void reportWithinStep(std::uint64_t part, std::uint64_t parts);

  std::string_view what_;
  double start_ = 0;   ///< in units of the work
  double length_ = 1;  ///< likewise
  std::uint64_t total_ = 0;
  const ProgressStep* around_;
};

/// Reports that `part` of the `parts` of the innermost step are finished, if there is a step.
void reportWithinStep(std::uint64_t part, std::uint64_t parts);

}  // namespace vornwout
