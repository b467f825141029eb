// The question for a password on a pseudo terminal, and what Ctrl-C and its like do to it.
#include "runner/terminal/hidden_input.h"

#include <csignal>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utmp.h>

#include "host/store/document_store.h"
#include "tests/support/clean_environment.h"
#include "tests/support/scratch_directory.h"

namespace vornwout {
namespace {

constexpr int kPatience = 20'000;  // milliseconds

/// The program on a terminal of its own, below something like a shell.
class PasswordPrompt {
 public:
  explicit PasswordPrompt(const std::string& configuration,
                          std::vector<std::string> arguments = {"password"})
      : arguments_(std::move(arguments)) {
    if (openpty(&master_, &slave_, nullptr, nullptr, nullptr) != 0) return;
    shell_ = fork();
    if (shell_ == 0) runShell(configuration);
  }
  ~PasswordPrompt() {
    if (shell_ > 0 && !isOver_) {
      kill(shell_, SIGKILL);
      waitpid(shell_, nullptr, 0);
    }
    if (master_ >= 0) close(master_);
    if (slave_ >= 0) close(slave_);
  }
  PasswordPrompt(const PasswordPrompt&) = delete;
  PasswordPrompt& operator=(const PasswordPrompt&) = delete;

  bool isThere() const { return shell_ > 0; }

  void type(const std::string& keys) {
    EXPECT_EQ(write(master_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }

  /// Reads what is shown until `text` has been; false when it never is.
  bool waitFor(const std::string& text) {
    for (;;) {
      const std::size_t found = shown_.find(text, seen_);
      if (found != std::string::npos) {
        seen_ = found + text.size();
        return true;
      }
      pollfd output{master_, POLLIN, 0};
      if (poll(&output, 1, kPatience) <= 0) return false;
      char bytes[256];
      const ssize_t count = read(master_, bytes, sizeof bytes);
      if (count <= 0) return false;
      shown_.append(bytes, static_cast<std::size_t>(count));
    }
  }

  bool isEchoing() const {
    termios settings{};
    EXPECT_EQ(tcgetattr(slave_, &settings), 0);
    return (settings.c_lflag & ECHO) != 0;
  }

  /// The program's end: its status, 128 and more for a signal. A stop counts 64, and goes on.
  int status() {
    int status = 0;
    waitpid(shell_, &status, 0);
    isOver_ = true;
    return WEXITSTATUS(status);
  }

  const std::string& shown() const { return shown_; }

 private:
  [[noreturn]] void runShell(const std::string& configuration) {
    close(master_);
    login_tty(slave_);
    cleanEnvironment();
    setenv("XDG_CONFIG_HOME", configuration.c_str(), 1);
    signal(SIGTTOU, SIG_IGN);
    const pid_t program = fork();
    if (program == 0) {
      setpgid(0, 0);
      tcsetpgrp(STDIN_FILENO, getpid());
      signal(SIGTTOU, SIG_DFL);
      std::string name = "vornwout";
      std::vector<char*> argv = {name.data()};
      for (std::string& argument : arguments_) argv.push_back(argument.data());
      argv.push_back(nullptr);
      execv(VORN_BUILD_DIR "/runner/vornwout", argv.data());
      _exit(127);
    }
    int result = 0;
    int status = 0;
    while (waitpid(program, &status, WUNTRACED) == program && WIFSTOPPED(status)) {
      termios settings{};
      tcgetattr(STDIN_FILENO, &settings);
      if ((settings.c_lflag & ECHO) != 0) result += 64;
      kill(program, SIGCONT);
    }
    _exit(result + (WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status)));
  }

  std::vector<std::string> arguments_;
  int master_ = -1;
  int slave_ = -1;
  pid_t shell_ = -1;
  bool isOver_ = false;
  std::string shown_;
  std::size_t seen_ = 0;
};

class HiddenInputTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!prompt_.isThere()) GTEST_SKIP() << "the machine has no pseudo terminals";
    ASSERT_TRUE(prompt_.waitFor("Password: ")) << prompt_.shown();
    ASSERT_FALSE(prompt_.isEchoing());
  }

  ScratchDirectory configuration_;
  PasswordPrompt prompt_{configuration_.path()};
};

TEST_F(HiddenInputTest, ReadsTwoLinesAndShowsNeither) {
  prompt_.type("s3cret\n");
  ASSERT_TRUE(prompt_.waitFor("The same again: "));
  prompt_.type("s3cret\n");
  EXPECT_EQ(prompt_.status(), 0);
  EXPECT_TRUE(prompt_.isEchoing());
  EXPECT_THAT(prompt_.shown(), testing::Not(testing::HasSubstr("s3cret")));
}

TEST_F(HiddenInputTest, TheEndOfTheInputGivesTheTerminalBack) {
  prompt_.type("\x04");
  EXPECT_EQ(prompt_.status(), 2);
  EXPECT_TRUE(prompt_.isEchoing());
}

TEST_F(HiddenInputTest, WhatEndsTheProgramGivesTheTerminalBack) {
  prompt_.type("s3c\x03");
  EXPECT_EQ(prompt_.status(), 128 + SIGINT);
  EXPECT_TRUE(prompt_.isEchoing());
}

TEST_F(HiddenInputTest, AtTheSecondQuestionToo) {
  prompt_.type("s3cret\n");
  ASSERT_TRUE(prompt_.waitFor("The same again: "));
  prompt_.type("\x1C");
  EXPECT_EQ(prompt_.status(), 128 + SIGQUIT);
  EXPECT_TRUE(prompt_.isEchoing());
}

TEST_F(HiddenInputTest, AStopGivesTheTerminalBackAndAsksAgainAfterwards) {
  prompt_.type("half\x1A");
  ASSERT_TRUE(prompt_.waitFor("Password: ")) << prompt_.shown();
  EXPECT_FALSE(prompt_.isEchoing());
  prompt_.type("s3cret\n");
  ASSERT_TRUE(prompt_.waitFor("The same again: "));
  prompt_.type("s3cret\n");
  EXPECT_EQ(prompt_.status(), 64) << "stopped once, with the terminal as it was before";
  EXPECT_TRUE(prompt_.isEchoing());
}

TEST(HiddenPassword, OfADocumentIsAskedForOnATerminal) {
  const ScratchDirectory scratch;
  const std::string text = scratch.write("a.md", "Read me");
  const std::string file = scratch.file("a.qxv");
  const std::vector<std::string> build = {"build", "--text", text, "--password-file",
                                          "-",     "-o",     file};
  {
    PasswordPrompt prompt(scratch.path(), build);
    if (!prompt.isThere()) GTEST_SKIP() << "the machine has no pseudo terminals";
    ASSERT_TRUE(prompt.waitFor("Password: "));
    prompt.type("s3cret\n");
    ASSERT_TRUE(prompt.waitFor("The same again: "));
    prompt.type("secret\n");
    ASSERT_TRUE(prompt.waitFor("The two passwords differ."));
    EXPECT_EQ(prompt.status(), 2);
  }
  {
    PasswordPrompt prompt(scratch.path(), build);
    ASSERT_TRUE(prompt.waitFor("Password: "));
    prompt.type("s3cret\n");
    ASSERT_TRUE(prompt.waitFor("The same again: "));
    prompt.type("s3cret\n");
    EXPECT_EQ(prompt.status(), 0);
    EXPECT_THAT(prompt.shown(), testing::Not(testing::HasSubstr("s3cret")));
  }
  EXPECT_NO_THROW(openDocument(file, {"s3cret"}));
  // What opens a document is asked for once.
  PasswordPrompt prompt(scratch.path(), {"show", file, "--no-pager", "--password-file", "-"});
  ASSERT_TRUE(prompt.waitFor("Password: "));
  prompt.type("s3cret\n");
  EXPECT_TRUE(prompt.waitFor("Read me"));
  EXPECT_EQ(prompt.status(), 0);
  EXPECT_THAT(prompt.shown(), testing::Not(testing::HasSubstr("again")));
}

}  // namespace
}  // namespace vornwout
