// Runs the built program on a pseudo terminal, as a person sits before it.
#pragma once

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/program_run.h"

namespace vornwout {

/// What the program showed on a terminal of that many columns, output and messages as they came,
/// and its status; nothing where the machine has no pseudo terminals. `setup.input` is typed. The
/// terminal takes nothing for the time `standstill`, so that a program with much to show waits.
inline std::optional<ProgramResult> runOnTerminal(std::vector<std::string> arguments,
                                                  const ProgramSetup& setup = {},
                                                  unsigned short columns = 80,
                                                  std::chrono::milliseconds standstill = {}) {
  winsize size{};
  size.ws_col = columns;
  size.ws_row = 24;
  arguments.insert(arguments.begin(), VORN_BUILD_DIR "/runner/vornwout");
  std::vector<char*> argv;
  for (std::string& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);
  int master = -1;
  const pid_t child = forkpty(&master, nullptr, nullptr, &size);
  if (child < 0) {
    ADD_FAILURE() << "there is no pseudo terminal: " << std::strerror(errno)
                  << "; a chroot needs one more: mount -t devpts devpts /dev/pts";
    return std::nullopt;
  }
  if (child == 0) {
    cleanEnvironment();
    for (const char* name : {"PAGER", "VORNWOUT_PAGER", "LESS"}) unsetenv(name);
    setenv("TERM", "xterm", 1);
    for (const auto& [name, value] : setup.environment) setenv(name.c_str(), value.c_str(), 1);
    if (setup.prepare) setup.prepare();
    execv(argv[0], argv.data());
    _exit(127);
  }
  if (!setup.input.empty()) {
    EXPECT_EQ(write(master, setup.input.data(), setup.input.size()),
              static_cast<ssize_t>(setup.input.size()));
  }
  std::this_thread::sleep_for(standstill);
  ProgramResult result;
  std::array<char, 4096> buffer{};
  for (;;) {
    // A terminal that nobody writes to any more gives an error and not an end.
    const ssize_t count = read(master, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    result.out.append(buffer.data(), static_cast<std::size_t>(count));
  }
  close(master);
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  // The terminal adds a return to every line end.
  std::string text;
  for (const char c : result.out) {
    if (c != '\r') text += c;
  }
  result.out = text;
  return result;
}

}  // namespace vornwout
