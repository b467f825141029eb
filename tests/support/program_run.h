// Runs the built program as a person does: arguments, standard input, environment, and what came
// out.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/clean_environment.h"
#include "tests/support/scratch_directory.h"

namespace vornwout {

/// What a run of the program came to; a status from 128 on is a signal.
struct ProgramResult {
  int status = 0;
  std::string out;
  std::string err;
};

/// What a run is given beside its arguments.
struct ProgramSetup {
  std::string input;
  std::vector<std::pair<std::string, std::string>> environment;
  /// Called in the child before it becomes the program; may change its descriptors.
  std::function<void()> prepare;
};

inline ProgramResult runProgram(std::vector<std::string> arguments,
                                const ProgramSetup& setup = {}) {
  const ScratchDirectory scratch;
  const std::string input = scratch.write("input", setup.input);
  arguments.insert(arguments.begin(), VORN_BUILD_DIR "/runner/vornwout");
  std::vector<char*> argv;
  for (std::string& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);

  const pid_t child = fork();
  if (child == 0) {
    const int in = open(input.c_str(), O_RDONLY | O_CLOEXEC);
    constexpr int kMode = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC;
    const int out = open(scratch.file("out").c_str(), kMode, 0666);
    const int err = open(scratch.file("err").c_str(), kMode, 0666);
    dup2(in, STDIN_FILENO);
    dup2(out, STDOUT_FILENO);
    dup2(err, STDERR_FILENO);
    cleanEnvironment();
    for (const auto& [name, value] : setup.environment) setenv(name.c_str(), value.c_str(), 1);
    if (setup.prepare) setup.prepare();
    execv(argv[0], argv.data());
    _exit(127);
  }
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), scratch.read("out"),
          scratch.read("err")};
}

}  // namespace vornwout
