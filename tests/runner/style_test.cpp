#include "runner/terminal/style.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace vornwout {
namespace {

TerminalFacts terminal() {
  TerminalFacts facts;
  facts.isTerminal = true;
  facts.term = "xterm";
  return facts;
}

TEST(Style, ModesAreReadByTheirExactNames) {
  EXPECT_EQ(parseStyleMode("auto"), StyleMode::kAuto);
  EXPECT_EQ(parseStyleMode("always"), StyleMode::kAlways);
  EXPECT_EQ(parseStyleMode("never"), StyleMode::kNever);
  for (const char* text : {"", "Auto", "yes", "always "}) {
    EXPECT_EQ(parseStyleMode(text), std::nullopt) << text;
  }
}

TEST(Style, AutoStylesATerminalThatAllowsIt) {
  EXPECT_TRUE(chooseStyle(StyleMode::kAuto, terminal()).isStyled());
  EXPECT_FALSE(chooseStyle(StyleMode::kAuto, TerminalFacts{}).isStyled()) << "no terminal";
  TerminalFacts noColor = terminal();
  noColor.noColor = "0";
  EXPECT_FALSE(chooseStyle(StyleMode::kAuto, noColor).isStyled()) << "any value counts";
  TerminalFacts dumb = terminal();
  dumb.term = "dumb";
  EXPECT_FALSE(chooseStyle(StyleMode::kAuto, dumb).isStyled());
}

TEST(Style, ExplicitChoiceComesBeforeTheEnvironment) {
  TerminalFacts facts;
  facts.noColor = "1";
  facts.term = "dumb";
  EXPECT_TRUE(chooseStyle(StyleMode::kAlways, facts).isStyled());
  EXPECT_FALSE(chooseStyle(StyleMode::kNever, terminal()).isStyled());
}

TEST(Style, TrueColourWhereTheTerminalSaysSo) {
  TerminalFacts facts = terminal();
  EXPECT_EQ(chooseStyle(StyleMode::kAuto, facts).depth, ColorDepth::k256);
  for (const char* value : {"truecolor", "24bit"}) {
    facts.colorTerm = value;
    EXPECT_EQ(chooseStyle(StyleMode::kAuto, facts).depth, ColorDepth::kTrueColor) << value;
  }
  facts.colorTerm = "yes";
  EXPECT_EQ(chooseStyle(StyleMode::kAuto, facts).depth, ColorDepth::k256);
}

TEST(Style, WidthComesFromTheTerminalThenFromTheEnvironment) {
  TerminalFacts facts = terminal();
  facts.windowColumns = 101;
  facts.columns = "99";
  EXPECT_EQ(chooseStyle(StyleMode::kAuto, facts).width, 101);
  facts.windowColumns = 0;
  EXPECT_EQ(chooseStyle(StyleMode::kAuto, facts).width, 99);
  facts.columns = "";
  EXPECT_EQ(chooseStyle(StyleMode::kAuto, facts).width, 80);
  facts.isTerminal = false;
  EXPECT_EQ(chooseStyle(StyleMode::kAuto, facts).width, 0);
  facts.columns = "60";
  EXPECT_EQ(chooseStyle(StyleMode::kAlways, facts).width, 0) << "a file has no columns";
}

TEST(Style, SenselessColumnsAreNoWidth) {
  TerminalFacts facts = terminal();
  facts.windowColumns = 0;
  for (const char* columns : {"0", "-5", "abc", "80x", " 80", "99999999999999", "10001"}) {
    facts.columns = columns;
    EXPECT_EQ(chooseStyle(StyleMode::kAuto, facts).width, 80) << columns;
  }
}

/// Sets a variable of the environment while it lives.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value) : name_(name) {
    const char* old = std::getenv(name);
    if (old != nullptr) old_ = old;
    setenv(name, value, 1);
  }
  ~ScopedVariable() {
    if (old_) {
      setenv(name_, old_->c_str(), 1);
    } else {
      unsetenv(name_);
    }
  }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  const char* name_;
  std::optional<std::string> old_;
};

TEST(Style, FactsOfATerminalAreItsSizeAndTheEnvironment) {
  const ScopedVariable columns("COLUMNS", "70");
  const ScopedVariable noColor("NO_COLOR", "1");
  const ScopedVariable term("TERM", "vt100");
  const ScopedVariable colorTerm("COLORTERM", "24bit");
  int master = -1;
  int slave = -1;
  winsize size{};
  size.ws_row = 20;
  size.ws_col = 123;
  if (openpty(&master, &slave, nullptr, nullptr, &size) != 0) {
    GTEST_SKIP() << "this system gives no pseudo terminal: " << std::strerror(errno);
  }
  const TerminalFacts facts = readTerminalFacts(slave);
  close(slave);
  close(master);
  EXPECT_TRUE(facts.isTerminal);
  EXPECT_EQ(facts.windowColumns, 123);
  EXPECT_EQ(facts.columns, "70");
  EXPECT_EQ(facts.noColor, "1");
  EXPECT_EQ(facts.term, "vt100");
  EXPECT_EQ(facts.colorTerm, "24bit");
}

TEST(Style, FileIsNoTerminal) {
  const int file = open("/dev/null", O_WRONLY);
  ASSERT_GE(file, 0);
  const TerminalFacts facts = readTerminalFacts(file);
  close(file);
  EXPECT_FALSE(facts.isTerminal);
  EXPECT_EQ(facts.windowColumns, 0);
}

}  // namespace
}  // namespace vornwout
