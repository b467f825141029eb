// The text of a job, in memory or, when it is a large one, in a file of its own that is mapped.
//
// A run reads a job once from front to back, so the memory of what lies behind can go: release().
// The mapped file is a copy without a name. The job's own file would not do: whoever cuts it short
// during the run would end the program by a signal.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace vornwout {

class JobText {
 public:
  JobText() = default;
  // From a text as it stands, which most jobs are.
  JobText(std::string text) : text_(std::make_shared<const std::string>(std::move(text))) {}

  JobText(const char* text) : JobText(std::string(text)) {}

  /// Takes `front` and all that the file `descriptor` has behind it. Returns 0 or the number of a
  /// system error; EFBIG for more than the largest job. Nothing when no file can be made, and then
  /// nothing was read.
  static std::optional<int> spool(const std::string& front, int descriptor, JobText& text);

  std::string_view view() const;
  operator std::string_view() const { return view(); }

  /// Says that what stands before `offset` is not looked at soon.
  void release(std::size_t offset) const;

 private:
  class Mapping;

  std::shared_ptr<const std::string> text_;
  std::shared_ptr<const Mapping> mapping_;
};

/// A job is written by a person or by a program that writes for one.
inline constexpr std::size_t kLargestJob = std::size_t{1} << 30;

}  // namespace vornwout
