#include "runner/password_file.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/program_run.h"

namespace vornwout {
namespace {

std::string passwordIn(const std::string& content) {
  const ScratchDirectory scratch;
  const auto result = readPasswordFile(scratch.write("p", content), PasswordUse::kOpen);
  if (const auto* error = std::get_if<PasswordFileError>(&result)) return "error: " + error->text;
  return std::get<std::string>(result);
}

TEST(PasswordFile, PasswordIsItsOnlyLine) {
  EXPECT_EQ(passwordIn("secret"), "secret");
  EXPECT_EQ(passwordIn("secret\n"), "secret");
  EXPECT_EQ(passwordIn("secret\r\n"), "secret");
  EXPECT_EQ(passwordIn(" with blanks "), " with blanks ");
  EXPECT_EQ(passwordIn(std::string(4096, 'x') + "\n"), std::string(4096, 'x'));
}

TEST(PasswordFile, AnythingElseIsRefusedWithoutSayingIt) {
  for (const std::string& content :
       {std::string(), std::string("\n"), std::string("hunter2\nb\n"), std::string("hunter2\0b", 9),
        std::string(4097, 'x'), std::string(1'000'000, 'x')}) {
    const std::string result = passwordIn(content);
    EXPECT_THAT(result, testing::StartsWith("error: The password's file "));
    EXPECT_THAT(result, testing::Not(testing::HasSubstr("hunter2")));
  }
}

TEST(PasswordFile, FileThatCannotBeReadSaysWhy) {
  const auto missing = readPasswordFile("/nowhere/p", PasswordUse::kOpen);
  EXPECT_EQ(std::get<PasswordFileError>(missing).text,
            "The password's file /nowhere/p cannot be read: No such file or directory.");
  EXPECT_THAT(std::get<PasswordFileError>(readPasswordFile("/", PasswordUse::kOpen)).text,
              testing::HasSubstr("Is a directory"));
}

}  // namespace
}  // namespace vornwout
