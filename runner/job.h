// A job's text, as it was read from a file or from standard input.
#pragma once

#include <string>
#include <variant>

#include "runner/job_text.h"

namespace vornwout {

struct Job {
  std::string name;  ///< as diagnostics call it: the path as given, or "<stdin>"
  JobText text;      ///< in the job's encoding
};

/// Why a job could not be read, a whole sentence.
struct JobError {
  std::string text;
};

/// Reads a job; "-" is standard input.
std::variant<Job, JobError> readJob(const std::string& path);

}  // namespace vornwout
