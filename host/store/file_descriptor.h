// Small pieces that everything which talks to the file system shares: an owned descriptor, and the
// system's reason in words.
#pragma once

#include <cerrno>
#include <cstring>
#include <string>
#include <utility>

#include <unistd.h>

namespace vornwout {

/// An open file of the system; closed when it ends. What must not fail is flushed before that, so
/// that closing has nothing left to report.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int number) : number_(number) {}
  FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    if (this != &other) {
      reset();
      number_ = std::exchange(other.number_, -1);
    }
    return *this;
  }
  ~FileDescriptor() { reset(); }

  int number() const { return number_; }
  bool isOpen() const { return number_ >= 0; }
  /// Gives the descriptor away; whoever takes it closes it.
  int release() { return std::exchange(number_, -1); }

 private:
  void reset() {
    if (number_ >= 0) close(number_);
    number_ = -1;
  }

  int number_ = -1;
};

/// ": " and what `error`, a value of errno, means, to end a sentence with.
inline std::string systemReason(int error) {
  const char* text = strerrordesc_np(error);
  return ": " + (text != nullptr ? std::string(text) : "error " + std::to_string(error)) + ".";
}

/// Calls until no signal interrupts; gives what the call gives.
template <typename Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

}  // namespace vornwout
