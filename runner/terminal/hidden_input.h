// Lines that a person types on the terminal of standard input and that it does not show.
//
// What would end or stop the program meanwhile (Ctrl-C, Ctrl-Z, a closed window) first gives the
// terminal back as it was and then takes its course; back from a stop the question stands there
// again. The signals are blocked but while the program waits for a key, so that none falls between
// looking for one and waiting.
#pragma once

#include <array>
#include <csignal>
#include <optional>
#include <string>

#include <termios.h>

namespace vornwout {

class HiddenInput {
 public:
  /// Hides what is typed from now on, and forgets what was typed before.
  HiddenInput();
  ~HiddenInput();
  HiddenInput(const HiddenInput&) = delete;
  HiddenInput& operator=(const HiddenInput&) = delete;

  /// Writes the question to standard error and reads a line, without its end. Nothing at the end of
  /// the input, where it fails, and for a line longer than 4095 bytes.
  std::optional<std::string> ask(const std::string& question);

 private:
  static constexpr std::array<int, 5> kSignals = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP};

  void begin();
  void end();
  /// Lets a signal that has come take its course; false when none has.
  bool obeySignal();

  bool isChanged_ = false;
  termios before_{};
  sigset_t maskBefore_{};
  std::array<struct sigaction, kSignals.size()> actionsBefore_{};
};

}  // namespace vornwout
