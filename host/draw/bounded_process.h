// Work on hostile input by libraries that cannot be trusted with it: in a child process, with
// bounds on its time and memory. Whatever goes wrong in there ends the child and nothing else.
//
// Entry point: runBounded(). Why it holds: what works is a copy of this process, which sees all
// that this one sees, and changes nothing outside of itself but one pipe. Threads are not copied,
// so the work must take no lock that one of them may hold; those of documents read and compress
// their parts, which nothing that draws does, and a copy that waited for a lock would end by its
// clock. Descriptors stay open in both; the copy ends without closing, flushing or unlocking what
// is the other's.
#pragma once

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>

namespace vornwout {

/// Why there is no result: what was not enough, how the child ended, or why there was none.
class ProcessError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct ProcessBounds {
  int seconds = 20;                          ///< of processor time
  int waitSeconds = 200;                     ///< by the clock, on a machine that is busy
  std::size_t bytes = std::size_t{2} << 30;  ///< beyond what this process has
};

/// What `work` returns. Throws a std::runtime_error with the text of any exception of the standard
/// library that it throws, and ProcessError for any other end.
std::string runBounded(const std::function<std::string()>& work, const ProcessBounds& bounds = {});

}  // namespace vornwout
