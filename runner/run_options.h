// What `vornwout run` was asked for.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/text/encoding.h"
#include "runner/terminal/style.h"

namespace vornwout {

struct RunOptions {
  std::vector<std::string> jobs;  ///< paths, "-" for standard input
  std::shared_ptr<const Encoding> encoding = Encoding::utf8();
  std::string language = "en";
  std::string host = "embedded";  ///< "embedded", "none" or "script=FILE"
  std::map<std::string, std::string> handles;
  std::string traceFile;  ///< empty for no trace
  bool traceSecrets = false;
  bool quiet = false;
  StyleMode color = StyleMode::kAuto;
};

/// Exit statuses of the program.
inline constexpr int kExitSuccess = 0;  ///< nothing worse than a warning was reported
inline constexpr int kExitErrors = 1;   ///< an error was reported
inline constexpr int kExitUsage = 2;    ///< wrong usage, or a file that cannot be read or written

/// Runs the jobs; the exit status. Output goes to standard output, messages to standard error.
int runJobs(const RunOptions& options);

}  // namespace vornwout
