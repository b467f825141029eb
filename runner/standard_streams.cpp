#include "runner/standard_streams.h"

#include <cerrno>
#include <csignal>
#include <iostream>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "platform/strings/localized.h"
#include "platform/text/display_width.h"
#include "runner/run_options.h"

namespace vornwout {
namespace {

using SignalHandler = void (*)(int);

/// What the program was started with for the signal of a reader that leaves.
SignalHandler inheritedHandler = SIG_DFL;

}  // namespace

void prepareStandardStreams() {
  for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
    if (fcntl(descriptor, F_GETFD) != -1 || errno != EBADF) continue;
    // All lower ones are open, so this one is what the system gives out. Only writing is allowed:
    // a job from a standard input that was closed is an error, not an empty job.
    const int opened = open("/dev/null", O_WRONLY);
    if (opened != descriptor) {
      throw std::system_error(errno, std::generic_category(),
                              localized("a closed standard stream"));
    }
  }
  inheritedHandler = std::signal(SIGPIPE, SIG_IGN);
}

bool readerHasLeft() {
  if (std::cout) return false;
  pollfd output{STDOUT_FILENO, 0, 0};
  return poll(&output, 1, 0) == 1 && (output.revents & (POLLERR | POLLHUP)) != 0;
}

int finishStandardOutput(int status) {
  std::cout.flush();
  if (std::cout) return status;
  if (readerHasLeft() && inheritedHandler == SIG_DFL) {
    std::signal(SIGPIPE, SIG_DFL);
    std::raise(SIGPIPE);
  }
  return refuse(localized("The output could not be written to the end."));
}

int refuse(std::string_view text) {
  std::cerr << "vornwout: error: " << sanitizeForTerminal(text) << "\n";
  return kExitUsage;
}

}  // namespace vornwout
