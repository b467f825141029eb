// The string type of the request and response messages.
#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace vornwout {

/// A text inside a message, in the current encoding, read through its conversion to const char*.
class VUString {
 public:
  VUString() = default;
  VUString(std::string text) : text_(std::move(text)) {}  // NOLINT: converts on purpose
  VUString(const char* text) : text_(text) {}             // NOLINT: converts on purpose

  /// Points into this string; valid while the string lives unchanged.
  operator const char*() const { return text_.c_str(); }  // NOLINT: converts on purpose

  std::string_view view() const { return text_; }
  bool empty() const { return text_.empty(); }

 private:
  std::string text_;
};

}  // namespace vornwout
