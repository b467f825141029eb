// Limits of whole runs of the program: how it starts, how time and memory grow with a job.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "bench/limits.h"

namespace vornwout {
namespace {

/// Runs a program with its output thrown away; returns its largest resident memory in bytes.
double run(const std::vector<std::string>& arguments) {
  const pid_t child = fork();
  if (child == 0) {
    const int null = open("/dev/null", O_RDWR);
    dup2(null, STDOUT_FILENO);
    std::vector<char*> argv;
    for (const std::string& argument : arguments)
      argv.push_back(const_cast<char*>(argument.data()));
    argv.push_back(nullptr);
    execv(argv[0], argv.data());
    _exit(127);
  }
  int status = 0;
  rusage usage{};
  if (child < 0 || wait4(child, &status, 0, &usage) < 0 || !WIFEXITED(status) ||
      WEXITSTATUS(status) != 0) {
    throw std::runtime_error("the run failed: " + arguments[0]);
  }
  return static_cast<double>(usage.ru_maxrss) * 1024;
}

constexpr std::size_t kPiece = 100'000;

/// A file that is gone when the measurement is.
class JobFile {
 public:
  JobFile(const std::string& command, std::size_t bytes) {
    std::string pattern = "/tmp/vornwout-bench-XXXXXX";
    const int file = mkstemp(pattern.data());
    if (file < 0) throw std::runtime_error("no file for a job");
    close(file);
    path_ = pattern;
    // In pieces: a child's largest memory counts what this process held when it forked.
    std::string piece;
    while (piece.size() < std::min(bytes, kPiece)) piece += command;
    std::ofstream stream(path_, std::ios::binary);
    for (std::size_t size = 0; size < bytes; size += piece.size()) stream << piece;
  }
  ~JobFile() { std::remove(path_.c_str()); }
  JobFile(const JobFile&) = delete;
  JobFile& operator=(const JobFile&) = delete;
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

constexpr std::size_t kMegabyte = 1'000'000;

LimitResult startLimit(const Effort& effort, const std::string& program) {
  const JobFile job("OUTPUT NEW NAME=a.\nOUTPUT NAME NAME=b.\nOUTPUT CLOSE NAME=b.\n", 1);
  Effort many = effort;
  many.rounds = effort.isSmoke ? 1 : 101;
  const Medians medians = mediansInTurn(
      many,
      [&] {
        run({program, "run", job.path()});
      },
      [&] { run({"/bin/true"}); });
  LimitResult result;
  result.name = "a run of three commands : /bin/true";
  result.measured = medians.first / medians.second;
  result.limit = 12;
  result.detail =
      fmt::format("{:.2f} ms against {:.2f} ms", medians.first * 1e3, medians.second * 1e3);
  return result;
}

}  // namespace

std::vector<LimitResult> processLimits(const Effort& effort, const std::string& program) {
  std::vector<LimitResult> results{startLimit(effort, program)};
  const std::size_t large = (effort.isSmoke ? 1 : 100) * kMegabyte;
  const std::string command = "OUTPUT ACTIVATE NAME=* MINIMIZED=NO.\n";
  const JobFile small(command, large / 10);
  const JobFile whole(command, large);
  // A host that keeps no documents: what grows is then the program's own.
  const JobFile script("{}", 1);
  const std::string host = "script=" + script.path();
  Effort few = effort;
  few.rounds = std::min(effort.rounds, 3);
  double memory = 0;
  const Medians growth = mediansInTurn(
      few,
      [&] {
        memory = run({program, "run", "--host", host, "--quiet", whole.path()});
      },
      [&] {
        run({program, "run", "--host", host, "--quiet", small.path()});
      });
  LimitResult linear;
  linear.name = "a job of 100 MB : one of 10 MB";
  linear.measured = growth.first / growth.second;
  linear.limit = 12;
  linear.detail = fmt::format("{:.2f} s against {:.2f} s", growth.first, growth.second);
  results.push_back(linear);
  LimitResult resident;
  resident.name = "memory of a job of 100 MB, MB";
  resident.measured = memory / 1e6;
  resident.limit = 64;
  results.push_back(resident);
  return results;
}

}  // namespace vornwout
