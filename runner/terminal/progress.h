// A progress bar on a terminal: what is being done, how far it is, how long it takes yet.
//
//   Saving report.qxv  ██████████░░░░░░░░░░  52 %  0:03, 0:03 left
//
// Nothing is drawn in the first half second of a work, so that short ones leave no trace however
// many there are, and nothing more than ten times a second afterwards. The bar stays in one line
// and moves within it by carriage returns and blanks alone, which every terminal understands;
// hide() takes it away, and so does the end of the work.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <ostream>
#include <string>

#include "platform/adapter/progress_listener.h"
#include "runner/terminal/style.h"

namespace vornwout {

class ProgressBar : public ProgressListener {
 public:
  using Time = std::chrono::steady_clock::time_point;
  using Clock = std::function<Time()>;

  /// Draws on `err`, which must outlive the bar. `clock` tells the time; empty for the system's.
  ProgressBar(std::ostream& err, const TerminalStyle& style, Clock clock = {});
  ~ProgressBar() override;
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  void progress(std::string_view what, std::uint64_t done, std::uint64_t total) override;

  /// Takes the bar off the terminal, before something else is written there. It comes back with the
  /// next report.
  void hide();

  /// Whether a bar belongs on the stream: on a terminal only, and not when quiet was asked for.
  static bool isWanted(const TerminalFacts& facts, bool quiet) {
    return facts.isTerminal && !quiet;
  }

 private:
  using Duration = std::chrono::steady_clock::duration;

  void draw(std::uint64_t done, std::uint64_t total, Time now);

  std::ostream& err_;
  TerminalStyle style_;
  Clock clock_;
  std::string what_;
  std::optional<Time> start_;  ///< of what is being done now, nothing between two works
  std::optional<Time> lastDrawn_;
  int drawnWidth_ = 0;  ///< columns that are taken now
};

/// The bar on standard error while it lives, registered for all progress; nothing where none is
/// wanted.
class StandardProgress {
 public:
  explicit StandardProgress(bool quiet, StyleMode style = StyleMode::kAuto);
  StandardProgress(const StandardProgress&) = delete;
  StandardProgress& operator=(const StandardProgress&) = delete;

  /// Takes the bar off the terminal, before something else is written there.
  void hide();

 private:
  std::optional<ProgressBar> bar_;
  std::optional<ProgressRegistration> registration_;
};

/// Minutes and seconds, or hours before them: "0:07", "12:30", "1:02:03".
std::string clockText(std::chrono::seconds duration);

}  // namespace vornwout
