#include "runner/standard_streams.h"

#include <cerrno>
#include <csignal>
#include <iostream>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "platform/text/display_width.h"
#include "runner/run_options.h"

namespace vornwout {
namespace {

/// True when standard output is a pipe or socket that nobody reads any more.
bool readerIsGone() {
  pollfd output{STDOUT_FILENO, 0, 0};
  return poll(&output, 1, 0) == 1 && (output.revents & (POLLERR | POLLHUP)) != 0;
}

}  // namespace

void prepareStandardStreams() {
  for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
    if (fcntl(descriptor, F_GETFD) != -1 || errno != EBADF) continue;
    // All lower ones are open, so this one is what the system gives out. Only writing is allowed:
    // a job from a standard input that was closed is an error, not an empty job.
    const int opened = open("/dev/null", O_WRONLY);
    if (opened != descriptor) {
      throw std::system_error(errno, std::generic_category(), "a closed standard stream");
    }
  }
  std::signal(SIGPIPE, SIG_IGN);
}

int finishStandardOutput(int status) {
  std::cout.flush();
  if (std::cout) return status;
  if (readerIsGone()) return kExitUsage;
  return refuse("The output could not be written to the end.");
}

int refuse(std::string_view text) {
  std::cerr << "vornwout: error: " << sanitizeForTerminal(text) << "\n";
  return kExitUsage;
}

}  // namespace vornwout
