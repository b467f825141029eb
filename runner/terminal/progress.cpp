#include "runner/terminal/progress.h"

#include <algorithm>
#include <iostream>
#include <utility>

#include <fmt/format.h>
#include <unistd.h>

#include "platform/text/display_width.h"
#include "runner/terminal/color.h"
#include "runner/terminal/terminal_text.h"

namespace vornwout {
namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr milliseconds kPatience{500};
constexpr milliseconds kBetweenDrawings{100};
constexpr int kUsualWidth = 80;
constexpr int kLongestBar = 20;
constexpr int kShortestBar = 5;
constexpr int kShortestLabel = 8;
constexpr int kGap = 2;
constexpr std::string_view kBarCodes = "36";
/// A remaining time is told when this much is known of the work.
constexpr std::uint64_t kPartsForForecast = 50;

}  // namespace

std::string clockText(seconds duration) {
  const auto count = std::max<seconds::rep>(0, duration.count());
  if (count < 3600) return fmt::format("{}:{:02}", count / 60, count % 60);
  return fmt::format("{}:{:02}:{:02}", count / 3600, count / 60 % 60, count % 60);
}

ProgressBar::ProgressBar(std::ostream& err, const TerminalStyle& style, Clock clock)
    : err_(err), style_(style), clock_(std::move(clock)) {
  if (!clock_) clock_ = [] { return std::chrono::steady_clock::now(); };
}

ProgressBar::~ProgressBar() { hide(); }

void ProgressBar::progress(std::string_view what, std::uint64_t done, std::uint64_t total) {
  const Time now = clock_();
  // Work that failed does not report its end; what comes then begins with another name or anew.
  if (!start_ || what != what_ || done == 0) {
    hide();
    what_ = what;
    start_ = now;
  }
  if (total > 0 && done >= total) {
    hide();
    start_.reset();
    return;
  }
  if (now - *start_ < kPatience) return;
  if (lastDrawn_ && now - *lastDrawn_ < kBetweenDrawings) return;
  lastDrawn_ = now;
  draw(done, total, now);
}

void ProgressBar::draw(std::uint64_t done, std::uint64_t total, Time now) {
  // The last column stays free: a terminal may go to the next line behind it.
  const int width = (style_.width > 0 ? style_.width : kUsualWidth) - 1;
  const auto elapsed = now - *start_;
  std::string figures = clockText(duration_cast<seconds>(elapsed));
  double part = 0;
  if (total > 0) {
    part = static_cast<double>(done) / static_cast<double>(total);
    if (done > 0 && done >= total / kPartsForForecast) {
      const auto left = std::chrono::duration<double>(elapsed).count() * (1 - part) / part;
      // More than a hundred hours nobody can foretell.
      if (left < 360'000) {
        figures += ", " + clockText(seconds(static_cast<seconds::rep>(left + 0.5))) + " left";
      }
    }
    // Cut, not rounded: nothing is whole before it is.
    figures = fmt::format("{:3} %  {}", static_cast<int>(part * 100), figures);
  }
  const int figuresWidth = displayWidth(figures);
  const std::string text = shownLine(what_);
  int bar = 0;
  if (total > 0) {
    // A long label shortens the bar before it is cut itself.
    const int room = width - figuresWidth - 2 * kGap;
    bar = std::min(kLongestBar, room - displayWidth(text));
    if (bar < kShortestBar) bar = room - kShortestBar < kShortestLabel ? 0 : kShortestBar;
  }
  const int barRoom = bar > 0 ? bar + kGap : 0;
  std::string line = cutLine(text, width - figuresWidth - barRoom - kGap);
  if (!line.empty()) line += repeated(" ", kGap);
  int taken = displayWidth(line);
  if (bar > 0) {
    const int filled = static_cast<int>(part * bar);
    line += withStyle(repeated("█", filled), kBarCodes, style_) + repeated("░", bar - filled) +
            repeated(" ", kGap);
    taken += barRoom;
  }
  const std::string shownFigures = cutLine(figures, width - taken);
  line += shownFigures;
  taken += displayWidth(shownFigures);
  err_ << '\r' << line << repeated(" ", drawnWidth_ - taken) << std::flush;
  drawnWidth_ = std::max(taken, drawnWidth_);
}

void ProgressBar::hide() {
  if (drawnWidth_ == 0) return;
  err_ << '\r' << repeated(" ", drawnWidth_) << '\r' << std::flush;
  drawnWidth_ = 0;
  lastDrawn_.reset();
}

StandardProgress::StandardProgress(bool quiet, StyleMode style) {
  const TerminalFacts facts = readTerminalFacts(STDERR_FILENO);
  if (!ProgressBar::isWanted(facts, quiet)) return;
  registration_.emplace(bar_.emplace(std::cerr, chooseStyle(style, facts)));
}

void StandardProgress::hide() {
  if (bar_) bar_->hide();
}

}  // namespace vornwout
