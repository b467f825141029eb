// Who wants to know how far long work has come: opening, saving and building documents tell it.
//
// Entry points: reportProgress() for whoever works, ProgressRegistration for whoever shows it.
// While nobody is registered a report costs one comparison, so that it may stand in a loop over
// objects. Reports come from the thread that was asked to do the work, never from its helpers.
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

}  // namespace vornwout
