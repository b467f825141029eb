#include "platform/adapter/progress_listener.h"

#include <utility>

namespace vornwout {
namespace {

ProgressListener* registeredListener = nullptr;

}  // namespace

ProgressListener::~ProgressListener() = default;

ProgressRegistration::ProgressRegistration(ProgressListener& listener)
    : before_(std::exchange(registeredListener, &listener)) {}

ProgressRegistration::~ProgressRegistration() { registeredListener = before_; }

void reportProgress(std::string_view what, std::uint64_t done, std::uint64_t total) {
  if (registeredListener != nullptr) registeredListener->progress(what, done, total);
}

}  // namespace vornwout
