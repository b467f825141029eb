// Files by the names of commands: where they are looked for, and which are refused.
#include "platform/files/fetch_file.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "gtest/gtest.h"
#include "platform/files/path_context.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

namespace fs = std::filesystem;

class FetchFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "vornwout-fetch-XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    directory_ = pattern;
    fs::create_directory(directory_ + "/looks");
    write("plain.qtt", "plain");
    write("looks/a.qtt", std::string("a\0\xFF\r\n", 5));
    write("looks/empty.qtt", "");
  }
  void TearDown() override { fs::remove_all(directory_); }

  void write(const std::string& name, const std::string& content) const {
    std::ofstream(directory_ + "/" + name, std::ios::binary) << content;
  }
  std::string fetch(const std::string& name) const {
    const ScopedPathContext scope({directory_, {{"shared", directory_ + "/looks"}}});
    return FetchFile::fetch(name, true, true);
  }

  std::string directory_;
  const std::string bytes_{"a\0\xFF\r\n", 5};
};

TEST_F(FetchFileTest, filesAreFoundByEveryWayToNameThem) {
  const struct {
    std::string name;
    std::string content;
  } cases[] = {
      {directory_ + "/plain.qtt", "plain"}, {"plain.qtt", "plain"},   {"./plain.qtt", "plain"},
      {"looks/../plain.qtt", "plain"},      {"looks/a.qtt", bytes_},  {"looks\\a.qtt", bytes_},
      {".\\looks\\a.qtt", bytes_},          {"shared/a.qtt", bytes_}, {"shared\\a.qtt", bytes_}};
  for (const auto& c : cases) EXPECT_EQ(fetch(c.name), c.content) << c.name;
  std::string backslashes = directory_ + "/looks/a.qtt";
  for (char& c : backslashes) c = c == '/' ? '\\' : c;
  EXPECT_EQ(fetch(backslashes), bytes_);
}

TEST_F(FetchFileTest, aNameThatReallyHasABackslashComesFirst) {
  write("looks\\a.qtt", "written so");
  EXPECT_EQ(fetch("looks\\a.qtt"), "written so");
  EXPECT_EQ(fetch(directory_ + "/looks\\a.qtt"), "written so");
}

TEST_F(FetchFileTest, theFlagsSwitchHandlesAndBackslashesOff) {
  const ScopedPathContext scope({directory_, {{"shared", directory_ + "/looks"}}});
  EXPECT_EQ(FetchFile::fetch("shared/a.qtt", false, true), "");
  EXPECT_EQ(FetchFile::fetch("looks\\a.qtt", true, false), "");
  EXPECT_EQ(FetchFile::fetch("looks/a.qtt", false, false), bytes_);
}

TEST_F(FetchFileTest, whatIsNoReadableFileGivesNothing) {
  ASSERT_EQ(mkfifo((directory_ + "/pipe").c_str(), 0600), 0);
  fs::create_symlink("loop", directory_ + "/loop");
  for (const std::string& name :
       {std::string(), std::string("missing"), std::string("looks"), std::string("looks/"),
        std::string("pipe"), std::string("/dev/zero"), std::string("loop"), std::string("/"),
        std::string("plain.qtt/x"), std::string("plain.qtt\0x", 11), std::string("C:\\plain.qtt"),
        std::string("looks/empty.qtt"), std::string(100000, 'x'), std::string("\\\\"),
        std::string("shared")}) {
    EXPECT_EQ(fetch(name), "") << name.substr(0, 40);
  }
}

TEST_F(FetchFileTest, aPipeIsNotReadAlthoughItHoldsData) {
  const std::string pipe = directory_ + "/pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
  const int writer = open(pipe.c_str(), O_WRONLY);
  ASSERT_EQ(::write(writer, "data", 4), 4);
  ASSERT_EQ(close(writer), 0);
  EXPECT_EQ(fetch("pipe"), "");
  EXPECT_EQ(close(reader), 0);
}

TEST_F(FetchFileTest, filesUpToTheLimitAreReadWholeAndLargerOnesNot) {
  write("large", "begin");
  fs::resize_file(directory_ + "/large", FetchFile::kMaxFileSize);
  EXPECT_EQ(fetch("large").size(), FetchFile::kMaxFileSize);
  fs::resize_file(directory_ + "/large", FetchFile::kMaxFileSize + 1);
  EXPECT_EQ(fetch("large"), "");
}

TEST_F(FetchFileTest, filesThatTellNoSizeAreReadToTheirEnd) {
  EXPECT_NE(FetchFile::fetch("/proc/self/status", true, true).find("Pid:"), std::string::npos);
}

TEST_F(FetchFileTest, namesAreInTheCurrentEncoding) {
  write("\xE8\xA1\xA8.qtt", "table");
  const ScopedEncoding encoding(Encoding::find("Shift-JIS"));
  EXPECT_EQ(fetch("\x95\\.qtt"), "table");
  EXPECT_EQ(fetch("looks\\..\\\x95\\.qtt"), "table");
}

}  // namespace
}  // namespace vornwout
