#include "runner/terminal/hidden_input.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <iostream>
#include <utility>

#include <poll.h>
#include <unistd.h>

namespace vornwout {
namespace {

constexpr std::size_t kLongestLine = 4095;

volatile std::sig_atomic_t caughtSignal = 0;

extern "C" void noteSignal(int number) { caughtSignal = number; }

}  // namespace

HiddenInput::HiddenInput() { begin(); }

// A signal that came behind the last key is delivered here, to the action that it had before.
HiddenInput::~HiddenInput() { end(); }

void HiddenInput::begin() {
  sigset_t blocked;
  sigemptyset(&blocked);
  for (const int number : kSignals) sigaddset(&blocked, number);
  sigprocmask(SIG_BLOCK, &blocked, &maskBefore_);
  struct sigaction noting {};
  noting.sa_handler = noteSignal;
  sigemptyset(&noting.sa_mask);
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    sigaction(kSignals[i], nullptr, &actionsBefore_[i]);
    // What whoever started the program has turned off stays off.
    if (actionsBefore_[i].sa_handler != SIG_IGN) sigaction(kSignals[i], &noting, nullptr);
  }
  isChanged_ = tcgetattr(STDIN_FILENO, &before_) == 0;
  if (!isChanged_) return;
  termios hidden = before_;
  hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  isChanged_ = tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden) == 0;
}

void HiddenInput::end() {
  if (std::exchange(isChanged_, false)) tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_);
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    sigaction(kSignals[i], &actionsBefore_[i], nullptr);
  }
  sigprocmask(SIG_SETMASK, &maskBefore_, nullptr);
}

bool HiddenInput::obeySignal() {
  const int number = caughtSignal;
  if (number == 0) return false;
  caughtSignal = 0;
  end();
  raise(number);
  begin();
  return true;
}

std::optional<std::string> HiddenInput::ask(const std::string& question) {
  std::cerr << question << std::flush;
  std::string line;
  for (;;) {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    if (ppoll(&input, 1, nullptr, &maskBefore_) < 0) {
      if (errno != EINTR) break;
      if (obeySignal()) {
        line.clear();
        std::cerr << '\n' << question << std::flush;
      }
      continue;
    }
    std::array<char, 256> bytes{};
    const ssize_t count = read(STDIN_FILENO, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    line.append(bytes.data(), static_cast<std::size_t>(count));
    explicit_bzero(bytes.data(), bytes.size());
    // A terminal hands out no more than one line at a time.
    if (line.ends_with('\n')) {
      line.pop_back();
      std::cerr << '\n';
      return line;
    }
    if (line.size() > kLongestLine) break;
  }
  std::cerr << '\n';
  return std::nullopt;
}

}  // namespace vornwout
