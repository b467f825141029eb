#include "runner/ending_signals.h"

#include <csignal>

#include "host/store/unfinished_files.h"

namespace vornwout {
namespace {

extern "C" void removeFilesAndEnd(int number) {
  removeUnfinishedFiles();
  // It has its default action again, which comes when this returns.
  raise(number);
}

}  // namespace

void removeFilesOnEndingSignals() {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction before {};
    sigaction(number, nullptr, &before);
    if (before.sa_handler == SIG_IGN) continue;
    struct sigaction action {};
    action.sa_handler = removeFilesAndEnd;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    sigaction(number, &action, nullptr);
  }
}

}  // namespace vornwout
