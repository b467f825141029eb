#include "runner/terminal/pager.h"

#include <csignal>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/program_run.h"

namespace vornwout {
namespace {

struct Choice {
  bool isTerminal;
  std::string term;
  std::map<std::string, std::string> environment;
  std::optional<std::string> command;
};

TEST(Pager, CommandIsTheUsersOrLess) {
  const Choice cases[] = {
      {true, "xterm", {}, "less -FRX"},
      {true, "xterm", {{"PAGER", "more"}}, "more"},
      {true, "xterm", {{"PAGER", "more"}, {"VORNWOUT_PAGER", "cat -n"}}, "cat -n"},
      {true, "xterm", {{"PAGER", ""}}, std::nullopt},
      {true, "xterm", {{"PAGER", "more"}, {"VORNWOUT_PAGER", " "}}, std::nullopt},
      {true, "dumb", {}, std::nullopt},
      {true, "dumb", {{"PAGER", "more"}}, "more"},
      {false, "xterm", {{"PAGER", "more"}}, std::nullopt},
  };
  for (const Choice& c : cases) {
    TerminalFacts facts;
    facts.isTerminal = c.isTerminal;
    facts.term = c.term;
    const auto environment = [&](const char* name) -> std::optional<std::string> {
      const auto found = c.environment.find(name);
      return found == c.environment.end() ? std::nullopt : std::optional(found->second);
    };
    EXPECT_EQ(pagerCommand(facts, environment), c.command);
  }
}

/// The pager runs with the signals that the program sets.
class PagerTest : public testing::Test {
 protected:
  PagerTest() : before_(std::signal(SIGPIPE, SIG_IGN)) {}
  ~PagerTest() override { std::signal(SIGPIPE, before_); }

  /// A command that writes what it reads into a file.
  std::string toFile() const { return "tee '" + scratch_.file("out") + "' > /dev/null"; }

  ScratchDirectory scratch_;

 private:
  void (*before_)(int);
};

TEST_F(PagerTest, GetsAllThatIsWritten) {
  std::string text;
  for (int i = 0; i < 20'000; ++i) text += std::to_string(i) + "\n";
  {
    const auto pager = Pager::start(toFile());
    ASSERT_NE(pager, nullptr);
    pager->out() << text;
    pager->finish();
    EXPECT_TRUE(pager->out());
  }
  EXPECT_EQ(scratch_.read("out"), text);
}

TEST_F(PagerTest, ReaderWhoLeavesFailsTheStreamAndNothingElse) {
  const auto pager = Pager::start("true");
  ASSERT_NE(pager, nullptr);
  for (int i = 0; i < 1'000'000 && pager->out(); ++i) pager->out() << "a line\n";
  EXPECT_FALSE(pager->out());
}

TEST_F(PagerTest, ProgramThatIsNotThereIsNoPager) {
  EXPECT_EQ(Pager::start("/nowhere/no-such-pager -x"), nullptr);
  EXPECT_EQ(Pager::start(""), nullptr);
}

TEST_F(PagerTest, WordsAreReadAsAShellReadsThem) {
  const std::string file = scratch_.file("with blank");
  {
    const auto pager = Pager::start("cp /dev/stdin '" + file + "'");
    ASSERT_NE(pager, nullptr);
    pager->out() << "x\n";
  }
  EXPECT_EQ(scratch_.read("with blank"), "x\n");
}

TEST_F(PagerTest, LessIsToldToShowColoursUnlessTheUserHasChosen) {
  for (const char* chosen : {"", "S"}) {
    if (*chosen == 0) {
      unsetenv("LESS");
    } else {
      setenv("LESS", chosen, 1);
    }
    Pager::start("printenv LESS > '" + scratch_.file("out") + "'")->finish();
    EXPECT_EQ(scratch_.read("out"), *chosen == 0 ? "FRX\n" : "S\n");
  }
  unsetenv("LESS");
}

TEST_F(PagerTest, KeysThatEndProgramsAreThePagersWhileItRuns) {
  const auto handler = [] {
    struct sigaction now {};
    sigaction(SIGINT, nullptr, &now);
    return now.sa_handler;
  };
  const auto before = handler();
  const auto pager = Pager::start(toFile());
  ASSERT_NE(pager, nullptr);
  EXPECT_EQ(handler(), SIG_IGN);
  pager->finish();
  EXPECT_EQ(handler(), before);
}

}  // namespace
}  // namespace vornwout
