#include <cctype>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "host/store/password_form.h"
#include "tests/support/program_run.h"

namespace vornwout {
namespace {

class PasswordCommandTest : public testing::Test {
 protected:
  ProgramResult run(const std::string& input) {
    return runProgram({"password"}, {input, {{"XDG_CONFIG_HOME", config_.path()}}, {}});
  }

  ScratchDirectory config_;
};

TEST_F(PasswordCommandTest, PrintsTwoDigitsForEachByte) {
  const ProgramResult result = run("s3cret\n");
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_THAT(result.out, testing::MatchesRegex("[0-9A-F]{12}\n"));
  EXPECT_EQ(run("s3cret").out, result.out);
  EXPECT_EQ(run("s3cret\r\n").out, result.out);
  EXPECT_NE(run("s3creT\n").out, result.out);
}

TEST_F(PasswordCommandTest, MakesTheKeyOnFirstUseAndSaysSo) {
  const std::string key = config_.file("vornwout/password-key");
  EXPECT_EQ(run("s3cret\n").err, "Made the key " + key + ".\n");
  struct stat status {};
  ASSERT_EQ(stat(key.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  EXPECT_EQ(run("s3cret\n").err, "");
}

TEST_F(PasswordCommandTest, WarnsOfAShortPassword) {
  run("s3cret\n");
  const ProgramResult result = run("s3cre\n");
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, testing::MatchesRegex("[0-9A-F]{10}\n"));
  EXPECT_EQ(result.err,
            "Warning: the password has fewer than 6 bytes. Under another key, its form may be "
            "taken for another password instead of being refused.\n");
}

TEST_F(PasswordCommandTest, TheFormStandsForThePassword) {
  std::string form = run("tenbytes10\n").out;
  form.pop_back();
  EXPECT_EQ(form.size(), 20U);
  const PasswordKey key = PasswordKey::loadOrCreate(config_.file("vornwout/password-key"));
  EXPECT_EQ(decryptPassword(key, form)->view(), "tenbytes10");
}

TEST_F(PasswordCommandTest, RefusesWhatIsNoPassword) {
  const struct {
    const char* input;
    const char* text;
  } cases[] = {{"", "The password's standard input is empty."},
               {"\n", "The password's standard input is empty."},
               {"one\ntwo\n", "holds more than one line"},
               {"a\x1B[2J\n", "The password has control characters, or is not in UTF-8."},
               {"a\xFF\n", "The password has control characters, or is not in UTF-8."},
               {"elevenbytes\n", "The password has 11 bytes; OUTPUT SAVE takes 10 at most."}};
  for (const auto& c : cases) {
    const ProgramResult result = run(c.input);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, testing::HasSubstr(c.text));
    EXPECT_THAT(result.err, testing::Not(testing::HasSubstr("elevenbytes")));
  }
}

TEST_F(PasswordCommandTest, RefusesAZeroByte) {
  const ProgramResult result = run(std::string("a\0b\n", 4));
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.err, testing::HasSubstr("standard input"));
}

TEST_F(PasswordCommandTest, ReadsNoMoreThanAPasswordMayHave) {
  const ProgramResult result = run(std::string(100'000, 'x'));
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.err, testing::HasSubstr("holds more than 4096 bytes"));
}

TEST_F(PasswordCommandTest, RefusesAKeyThatOthersMayRead) {
  run("a\n");
  chmod(config_.file("vornwout/password-key").c_str(), 0644);
  const ProgramResult result = run("a\n");
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.err, testing::HasSubstr("password-key"));
}

TEST(PasswordCommand, HelpSaysWhatItProtectsAgainst) {
  const ProgramResult result = runProgram({"password", "--help"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out,
              testing::HasSubstr("It protects the password from whoever reads the job"));
  EXPECT_THAT(result.out, testing::HasSubstr("It does not protect it from"));
  EXPECT_THAT(result.out, testing::HasSubstr("With fewer than 6 bytes, a form made with another"));
}

}  // namespace
}  // namespace vornwout
