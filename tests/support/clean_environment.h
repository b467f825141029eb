// Takes out of the environment, and out of what signals do, what would change how the program
// behaves on this machine. A shell that runs something in the background, and nohup, ignore some
// signals, and children inherit that.
#pragma once

#include <csignal>
#include <cstdlib>
#include <initializer_list>

namespace vornwout {

/// Called in a child before it becomes the program, or once at the start of a test program.
inline void cleanEnvironment() {
  for (const char* name :
       {"COLUMNS", "NO_COLOR", "COLORTERM", "TERM", "VORNWOUT_HOME", "XDG_DATA_HOME"}) {
    unsetenv(name);
  }
  setenv("TZ", "UTC", 1);
  for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM, SIGTSTP}) {
    std::signal(number, SIG_DFL);
  }
}

}  // namespace vornwout
