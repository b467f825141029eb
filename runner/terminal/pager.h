// The pager: the program in which a reader on a terminal turns the pages of long output.
//
// Entry points: pagerCommand() says which one the user wants, Pager::start() runs it and gives the
// stream to write to. A reader who leaves early has seen enough: the stream then fails, and that is
// no error. The terminal's keys that end programs belong to the pager while it runs.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "runner/terminal/style.h"

namespace vornwout {

/// A variable of the environment, nothing where it is not set.
using Environment = std::function<std::optional<std::string>(const char* name)>;

/// The command to show long output with: VORNWOUT_PAGER, or PAGER, or less. Nothing where standard
/// output is no terminal, or the variable that counts is empty, which turns the pager off, or the
/// terminal is too simple for less.
std::optional<std::string> pagerCommand(const TerminalFacts& facts, const Environment& environment);

class Pager {
 public:
  /// Runs `command`, words as a shell would read them. Null when there is no such program; the
  /// output is then written as it would be without one.
  static std::unique_ptr<Pager> start(const std::string& command);

  /// Finishes.
  ~Pager();
  Pager(const Pager&) = delete;
  Pager& operator=(const Pager&) = delete;

  /// Fails when the reader has left.
  std::ostream& out() { return *stream_; }

  /// Writes what is left and waits until the reader leaves.
  void finish();

 private:
  class Pipe;
  class KeysIgnored;
  explicit Pager(std::unique_ptr<Pipe> pipe, int process);

  std::unique_ptr<Pipe> pipe_;
  std::unique_ptr<KeysIgnored> keys_;
  std::unique_ptr<std::ostream> stream_;
  int process_;
};

}  // namespace vornwout
