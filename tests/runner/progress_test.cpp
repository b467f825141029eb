#include "runner/terminal/progress.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/text/display_width.h"
#include "tests/support/terminal_run.h"

namespace vornwout {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::HasSubstr;
using testing::Not;

/// A bar with a clock that the test moves, and the terminal's line as it would look.
class ProgressTest : public testing::Test {
 protected:
  void report(std::string_view what, std::uint64_t done, std::uint64_t total) {
    bar_.progress(what, done, total);
  }
  void wait(milliseconds time) { now_ += time; }

  /// What stands in the line after all carriage returns.
  std::string line() const {
    std::string shown;
    std::istringstream parts(out_.str());
    for (std::string part; std::getline(parts, part, '\r');) {
      if (displayWidth(part) < displayWidth(shown)) {
        ADD_FAILURE() << "something of \"" << shown << "\" stays behind \"" << part << '"';
      }
      shown = part.find_first_not_of(' ') == std::string::npos ? std::string() : part;
    }
    return shown.substr(0, shown.find_last_not_of(' ') + 1);
  }

  std::ostringstream out_;
  ProgressBar::Time now_{seconds(1000)};
  ProgressBar bar_{out_, TerminalStyle{ColorDepth::kNone, 60}, [this] { return now_; }};
};

TEST_F(ProgressTest, NothingIsDrawnInTheFirstHalfSecond) {
  report("Saving", 0, 10);
  wait(milliseconds(499));
  report("Saving", 5, 10);
  EXPECT_EQ(out_.str(), "");
  wait(milliseconds(1));
  report("Saving", 5, 10);
  EXPECT_NE(out_.str(), "");
}

TEST_F(ProgressTest, LineTellsLabelPartAndTimes) {
  report("Saving a.qxv", 0, 100);
  wait(seconds(3));
  report("Saving a.qxv", 50, 100);
  EXPECT_EQ(line(), "Saving a.qxv  ██████████░░░░░░░░░░   50 %  0:03, 0:03 left");
  wait(seconds(62));
  report("Saving a.qxv", 99, 100);
  EXPECT_EQ(line(), "Saving a.qxv  ███████████████████░   99 %  1:05, 0:01 left");
}

TEST_F(ProgressTest, LineIsDrawnTenTimesASecondAtMost) {
  report("x", 0, 1000);
  wait(milliseconds(500));
  report("x", 1, 1000);
  const std::string first = out_.str();
  wait(milliseconds(99));
  report("x", 2, 1000);
  EXPECT_EQ(out_.str(), first);
  wait(milliseconds(1));
  report("x", 3, 1000);
  EXPECT_NE(out_.str(), first);
}

TEST_F(ProgressTest, NothingStaysOfABarWhoseWorkIsDone) {
  report("Saving", 0, 10);
  wait(seconds(1));
  report("Saving", 5, 10);
  EXPECT_THAT(line(), HasSubstr("Saving"));
  report("Saving", 10, 10);
  EXPECT_EQ(line(), "");
  EXPECT_EQ(out_.str().back(), '\r');
}

TEST_F(ProgressTest, HiddenBarComesBackWithTheNextReport) {
  report("Saving", 0, 10);
  wait(seconds(1));
  report("Saving", 5, 10);
  bar_.hide();
  EXPECT_EQ(line(), "");
  report("Saving", 6, 10);
  EXPECT_THAT(line(), HasSubstr("60 %"));
}

TEST(Progress, BarThatEndsTakesItselfAway) {
  std::ostringstream out;
  ProgressBar::Time now{seconds(1)};
  {
    ProgressBar bar(out, TerminalStyle{ColorDepth::kNone, 40}, [&] { return now; });
    bar.progress("x", 0, 2);
    now += seconds(1);
    bar.progress("x", 1, 2);
  }
  const std::string text = out.str();
  const std::size_t blanks = text.rfind('\r', text.size() - 2);
  EXPECT_EQ(text.find_first_not_of(' ', blanks + 1), text.size() - 1);
}

TEST_F(ProgressTest, EachWorkHasItsOwnHalfSecondAndItsOwnTimes) {
  report("Reading", 0, 10);
  wait(seconds(10));
  report("Reading", 10, 10);
  for (int i = 0; i < 100; ++i) {
    report("Saving", 0, 2);
    wait(milliseconds(400));
    report("Saving", 1, 2);
    report("Saving", 2, 2);
  }
  EXPECT_EQ(out_.str(), "");
  report("Saving", 0, 10);
  wait(seconds(1));
  report("Saving", 5, 10);
  EXPECT_THAT(line(), HasSubstr("0:01, 0:01 left"));
}

TEST_F(ProgressTest, WorkThatFailedIsNotGoneOnWith) {
  report("Opening a", 0, 10);
  wait(seconds(1));
  report("Opening a", 5, 10);
  report("Opening b", 0, 10);
  EXPECT_EQ(line(), "");
  wait(seconds(9));
  report("Opening b", 0, 10);
  report("Opening b", 5, 10);
  EXPECT_EQ(line(), "");
}

TEST_F(ProgressTest, UnknownTotalShowsTheTimeOnly) {
  report("Opening", 0, 0);
  wait(seconds(2));
  report("Opening", 7, 0);
  EXPECT_EQ(line(), "Opening  0:02");
}

TEST_F(ProgressTest, NoForecastIsMadeOfLittle) {
  report("x", 0, 1000);
  wait(seconds(2));
  report("x", 19, 1000);
  EXPECT_THAT(line(), Not(HasSubstr("left")));
  wait(seconds(2));
  report("x", 20, 1000);
  EXPECT_THAT(line(), HasSubstr("left"));
}

TEST_F(ProgressTest, ShorterLineLeavesNothingOfTheLongerOne) {
  report("A", 0, 100);
  wait(seconds(600));
  report("A", 50, 100);
  EXPECT_EQ(line(), "A  ██████████░░░░░░░░░░   50 %  10:00, 10:00 left");
  wait(seconds(1));
  report("A", 99, 100);
  EXPECT_EQ(line(), "A  ███████████████████░   99 %  10:01, 0:06 left");
}

TEST_F(ProgressTest, LabelIsSanitized) {
  report("a\x1b[31m\nb", 0, 0);
  wait(seconds(2));
  report("a\x1b[31m\nb", 1, 0);
  EXPECT_THAT(out_.str(), Not(HasSubstr("\x1b")));
  EXPECT_THAT(out_.str(), Not(HasSubstr("\n")));
}

TEST(Progress, LineFitsTheTerminalWithWideLabelsToo) {
  for (const char* label : {"x", "四半期の売上高をまとめた報告書を保存しています",
                            "Saving a report with a name that is too long for this line.qxv"}) {
    for (int width = 1; width <= 100; ++width) {
      std::ostringstream out;
      ProgressBar::Time now{seconds(1)};
      ProgressBar bar(out, TerminalStyle{ColorDepth::kNone, width}, [&] { return now; });
      bar.progress(label, 0, 10);
      now += seconds(1);
      bar.progress(label, 5, 10);
      const std::string drawn = out.str().substr(1);
      EXPECT_LE(displayWidth(drawn), std::max(0, width - 1)) << drawn;
    }
  }
}

TEST(Progress, ColoursAreForStyledTerminalsOnly) {
  for (const bool isStyled : {false, true}) {
    std::ostringstream out;
    ProgressBar::Time now{seconds(1)};
    ProgressBar bar(out, TerminalStyle{isStyled ? ColorDepth::k256 : ColorDepth::kNone, 60},
                    [&] { return now; });
    bar.progress("x", 0, 2);
    now += seconds(1);
    bar.progress("x", 1, 2);
    EXPECT_EQ(out.str().find('\x1b') != std::string::npos, isStyled);
    EXPECT_THAT(out.str(), HasSubstr("█"));
  }
}

TEST(Progress, BarBelongsOnATerminalThatIsNotQuiet) {
  TerminalFacts terminal;
  terminal.isTerminal = true;
  EXPECT_TRUE(ProgressBar::isWanted(terminal, false));
  EXPECT_FALSE(ProgressBar::isWanted(terminal, true));
  EXPECT_FALSE(ProgressBar::isWanted(TerminalFacts{}, false));
}

TEST(Progress, ClockTextTellsHoursOnlyWhereThereAreSome) {
  EXPECT_EQ(clockText(seconds(-1)), "0:00");
  EXPECT_EQ(clockText(seconds(7)), "0:07");
  EXPECT_EQ(clockText(seconds(3599)), "59:59");
  EXPECT_EQ(clockText(seconds(3723)), "1:02:03");
}

/// More than the bar waits before it is drawn.
constexpr milliseconds kLongEnough{1500};

TEST(ProgressProgram, BuildShowsABarOnceItTakesLong) {
  const ScratchDirectory scratch;
  const std::string quick = scratch.write("a.md", "text");
  const std::string slow = scratch.file("b.md");
  ASSERT_EQ(mkfifo(slow.c_str(), 0600), 0);
  std::thread writer([&] {
    std::ofstream pipe(slow);
    std::this_thread::sleep_for(kLongEnough);
    pipe << "more text";
  });
  const auto result =
      runOnTerminal({"build", "--text", quick, "--text", slow, "-o", scratch.file("report.qxv")});
  // A program that did not come to read would leave the writer waiting for ever.
  const int reader = open(slow.c_str(), O_RDONLY | O_NONBLOCK);
  writer.join();
  close(reader);
  ASSERT_TRUE(result.has_value());
  EXPECT_EQ(result->status, 0);
  EXPECT_THAT(result->out, HasSubstr("Building"));
  EXPECT_THAT(result->out, Not(HasSubstr("Saving"))) << "that was quick";
  EXPECT_THAT(result->out, testing::EndsWith(" ")) << "the bar is gone at the end";
}

TEST(ProgressProgram, QuickSavesOfALongRunLeaveNoTrace) {
  const ScratchDirectory scratch;
  const std::string file = scratch.file("report.qxv");
  // The terminal stands still, and so does the job, with more to show than fits into it.
  std::string job = "OUTPUT NEW NAME=a.\nOUTPUT SAVE OUTFILE='" + file + "'.\n";
  for (int i = 0; i < 1000; ++i) job += "OUTPUT COMMENT TEXT='" + std::string(100, 'x') + "'.\n";
  const std::string showing =
      scratch.write("a.qxs", job + "OUTPUT SAVE OUTFILE='" + scratch.file("later.qxv") + "'.\n");
  const auto result = runOnTerminal({"run", showing}, {}, 80, kLongEnough);
  ASSERT_TRUE(result.has_value());
  EXPECT_EQ(result->status, 0);
  EXPECT_THAT(result->out, Not(HasSubstr("Saving")));
}

/// Makes this process slow once there is something in `folder`, however fast the machine is: a
/// helper stops it again and again.
void slowDownOnceFilled(const std::string& folder) {
  const pid_t slow = getpid();
  if (fork() != 0) return;
  // Whoever reads the terminal waits until nobody has it any more.
  for (int i = 0; i < 3; ++i) close(i);
  while (getppid() == slow) {
    if (!std::filesystem::is_empty(folder)) {
      kill(slow, SIGSTOP);
      std::this_thread::sleep_for(milliseconds(50));
      kill(slow, SIGCONT);
    }
    std::this_thread::sleep_for(milliseconds(1));
  }
  _exit(0);
}

TEST(ProgressProgram, RunShowsABarWithinOneLargeTable) {
  const ScratchDirectory scratch;
  std::string csv = "key,v\n";
  for (int i = 0; i < 100'000; ++i) csv += std::to_string(i) + ',' + std::to_string(i * 7) + '\n';
  const std::string file = scratch.file("large.qxv");
  ASSERT_EQ(runProgram({"build", "--table", scratch.write("a.csv", csv), "--rows", "key", "--value",
                        "v", "-o", file})
                .status,
            0);
  std::filesystem::create_directory(scratch.file("out"));
  const std::string job =
      scratch.write("a.qxs", "OUTPUT OPEN FILE='" + file + "'.\nOUTPUT SAVE OUTFILE='" +
                                 scratch.file("out/page.qxw") + "'.\n");
  ProgramSetup setup;
  setup.prepare = [&] { slowDownOnceFilled(scratch.file("out")); };
  const auto result = runOnTerminal({"run", job}, setup);
  ASSERT_TRUE(result.has_value());
  EXPECT_EQ(result->status, 0);
  EXPECT_THAT(result->out, HasSubstr("Saving page.qxw"));
  // The page is the third of five steps.
  EXPECT_THAT(result->out, testing::ContainsRegex("(4[1-9]|5[0-9]) %"));
}

}  // namespace
}  // namespace vornwout
