// Takes out of the environment what would change how the program behaves on this machine.
#pragma once

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
}

}  // namespace vornwout
