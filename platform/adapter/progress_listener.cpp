#include "platform/adapter/progress_listener.h"

#include <algorithm>
#include <utility>

namespace vornwout {
namespace {

ProgressListener* registeredListener = nullptr;
const ProgressStep* innermostStep = nullptr;

/// What a unit counts where parts of it are told.
constexpr std::uint64_t kPartsOfUnit = 1000;

/// How much `part` of `parts` is, 1 at most.
double shareOf(std::uint64_t part, std::uint64_t parts) {
  return static_cast<double>(std::min(part, parts)) /
         static_cast<double>(std::max<std::uint64_t>(1, parts));
}

}  // namespace

ProgressListener::~ProgressListener() = default;

ProgressRegistration::ProgressRegistration(ProgressListener& listener)
    : before_(std::exchange(registeredListener, &listener)) {}

ProgressRegistration::~ProgressRegistration() { registeredListener = before_; }

void reportProgress(std::string_view what, std::uint64_t done, std::uint64_t total) {
  if (registeredListener != nullptr) registeredListener->progress(what, done, total);
}

ProgressStep::ProgressStep(std::string_view what, std::uint64_t done, std::uint64_t total)
    : what_(what),
      start_(static_cast<double>(done)),
      total_(total),
      around_(std::exchange(innermostStep, this)) {}

ProgressStep::ProgressStep(std::uint64_t part, std::uint64_t parts) : around_(innermostStep) {
  if (around_ == nullptr) return;
  what_ = around_->what_;
  start_ = around_->start_ + around_->length_ * shareOf(part, parts);
  length_ = around_->length_ * shareOf(1, parts);
  total_ = around_->total_;
  innermostStep = this;
}

ProgressStep::~ProgressStep() { innermostStep = around_; }

void reportWithinStep(std::uint64_t part, std::uint64_t parts) {
  if (innermostStep == nullptr || innermostStep->total_ == 0) return;
  const double done = innermostStep->start_ + innermostStep->length_ * shareOf(part, parts);
  const std::uint64_t total = innermostStep->total_ * kPartsOfUnit;
  // The work itself tells its end.
  reportProgress(innermostStep->what_,
                 std::min(static_cast<std::uint64_t>(done * kPartsOfUnit), total - 1), total);
}

}  // namespace vornwout
