// Paths of commands: made absolute, handles replaced, looked at on disk.
#include "platform/files/file_specification.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <tuple>

#include <sys/stat.h>
#include <unistd.h>

#include "gtest/gtest.h"
#include "platform/files/path_context.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

namespace fs = std::filesystem;

using Expander = int (*)(const char*, char*, std::size_t);
const std::string kUntouched = "untouched";

/// The result and what the buffer holds afterwards; the bytes behind the buffer must stay.
std::pair<int, std::string> run(Expander expand, const std::string& path) {
  std::string buffer(kPathBufferSize + 16, '#');
  buffer.replace(0, kUntouched.size() + 1, kUntouched.c_str(), kUntouched.size() + 1);
  const int status = expand(path.data(), buffer.data(), path.size());
  EXPECT_EQ(buffer.substr(kPathBufferSize), std::string(16, '#'));
  return {status, buffer.c_str()};
}

TEST(ExpandFileSpecificationTest, relativePathsBecomeAbsoluteAndDotsAreResolved) {
  const ScopedPathContext scope({"/srv/jobs", {{"out", "/elsewhere"}}});
  const struct {
    const char* path;
    const char* expanded;
  } cases[] = {{"a.qxv", "/srv/jobs/a.qxv"},
               {"out/a.qxv", "/srv/jobs/out/a.qxv"},  // a handle is not replaced here
               {"out\\a.qxv", "/srv/jobs/out\\a.qxv"},
               {"./a", "/srv/jobs/a"},
               {"../a", "/srv/a"},
               {"..\\a", "/srv/a"},
               {"x/../y", "/srv/jobs/y"},
               {"x/./y//z", "/srv/jobs/x/y/z"},
               {"../../../../a", "/a"},
               {"...", "/srv/jobs/..."},
               {"..a/.b", "/srv/jobs/..a/.b"},
               {"a/", "/srv/jobs/a/"},
               {".", "/srv/jobs/"},
               {"..", "/srv/"},
               {" a ", "/srv/jobs/ a "},
               {"/a/../b", "/b"},
               {"/..", "/"},
               {"\\a\\..\\b", "\\b"},
               {"c:\\a\\..\\b", "c:\\a\\..\\b"},
               {"c:a", "/srv/jobs/c:a"}};
  for (const auto& c : cases) {
    EXPECT_EQ(run(ExpandFileSpecification, c.path), std::pair(0, std::string(c.expanded)))
        << c.path;
    EXPECT_EQ(expandPath(c.path), c.expanded);
  }
}

TEST(ExpandFileSpecificationTest, onlyTheGivenLengthCounts) {
  const ScopedPathContext scope({"/w", {}});
  std::array<char, kPathBufferSize> buffer{};
  EXPECT_EQ(ExpandFileSpecification("abcdef", buffer.data(), 3), 0);
  EXPECT_STREQ(buffer.data(), "/w/abc");
}

TEST(ExpandFileSpecificationTest, aResultFitsUpToTheLastByteOfTheBuffer) {
  const ScopedPathContext scope({"/w", {}});
  const std::string fits(kPathBufferSize - 1 - 3, 'x');
  EXPECT_EQ(run(ExpandFileSpecification, fits), std::pair(0, "/w/" + fits));
  EXPECT_EQ(run(ExpandFileSpecification, fits + "x"), std::pair(1, kUntouched));
  EXPECT_EQ(run(ExpandFileSpecification, std::string(1'000'000, 'x')), std::pair(1, kUntouched));
}

TEST(ExpandFileSpecificationTest, unusablePathsLeaveTheBufferUntouched) {
  std::string buffer = "same";
  EXPECT_NE(ExpandFileSpecification(nullptr, buffer.data(), 1), 0);
  EXPECT_EQ(buffer, "same");
  for (const std::string& path : {std::string(), std::string("a\0b", 3)}) {
    EXPECT_EQ(run(ExpandFileSpecification, path), std::pair(1, kUntouched));
  }
}

TEST(ExpandFileSpecificationTest, separatorsInsideCharactersSeparateNothing) {
  const ScopedEncoding encoding(Encoding::find("Shift-JIS"));
  const ScopedPathContext scope({"/w", {}});
  // The name is one character whose second byte is a backslash, then two periods.
  EXPECT_EQ(run(ExpandFileSpecification, "\x95\\../a").second, "/w/\x95\\../a");
  EXPECT_EQ(run(ExpandFileSpecification, "\x95\\\\../a").second, "/w/a");
  EXPECT_EQ(run(ExpandFileSpecification, "\x95").second, "/w/\x95");
}

TEST(ExpandDirectoryHandleTest, theFirstComponentIsReplacedWhenItIsAHandle) {
  const ScopedPathContext scope(
      {"/w", {{"reports", "/srv/reports"}, {"root", "/"}, {"", "/bad"}, {"rel", "sub"}}});
  const struct {
    const char* path;
    int status;
    std::string result;
  } cases[] = {{"reports/a.qxv", 0, "/srv/reports/a.qxv"},
               {"reports\\a.qxv", 0, "/srv/reports\\a.qxv"},
               {"reports", 0, "/srv/reports"},
               {"reports/", 0, "/srv/reports/"},
               {"reports/../a", 0, "/srv/reports/../a"},
               {"root/a", 0, "/a"},
               {"rel/a", 0, "sub/a"},
               {"reports2/a", 1, kUntouched},
               {"Reports/a", 1, kUntouched},
               {"a/reports", 1, kUntouched},
               {"/reports/a", 1, kUntouched},
               {"/a", 1, kUntouched},
               {"", 1, kUntouched}};
  for (const auto& c : cases) {
    EXPECT_EQ(run(ExpandDirectoryHandle, c.path), std::pair(c.status, c.result)) << c.path;
  }
}

TEST(ExpandDirectoryHandleTest, resultsThatDoNotFitAndZeroBytesAreRefused) {
  const ScopedPathContext scope({"/w", {{"h", std::string(kPathBufferSize - 3, 'd')}}});
  EXPECT_EQ(run(ExpandDirectoryHandle, "h/a").first, 0);
  EXPECT_EQ(run(ExpandDirectoryHandle, "h/ab"), std::pair(1, kUntouched));
  EXPECT_EQ(run(ExpandDirectoryHandle, std::string("h\0a", 3)), std::pair(1, kUntouched));
}

TEST(ExpandDirectoryHandleTest, handleNamesEndAtRealSeparators) {
  const ScopedEncoding encoding(Encoding::find("Shift-JIS"));
  const ScopedPathContext scope({"/w", {{"\x95\\", "/d"}, {"\x95", "/wrong"}}});
  EXPECT_EQ(run(ExpandDirectoryHandle, "\x95\\/a"), std::pair(0, std::string("/d/a")));
}

TEST(CheckFileRefTest, handlesAreReplacedAndRelativePathsBecomeAbsolute) {
  const ScopedPathContext scope({"/srv/jobs", {{"reports", "/srv/reports"}, {"rel", "sub"}}});
  const struct {
    std::string text;
    std::string path;
  } cases[] = {{"", ""},
               {"a.pdf", "/srv/jobs/a.pdf"},
               {"../a.pdf", "/srv/a.pdf"},
               {"reports/a.pdf", "/srv/reports/a.pdf"},
               {"rel/a.pdf", "/srv/jobs/sub/a.pdf"},
               {"/x/../a.pdf", "/x/../a.pdf"},
               {"\\x\\a.pdf", "\\x\\a.pdf"},
               {"C:/a.pdf", "C:/a.pdf"},
               {std::string(10000, 'n'), "/srv/jobs/" + std::string(10000, 'n')}};
  for (const auto& c : cases) {
    for (const bool fromCommand : {false, true}) {
      EXPECT_EQ(CheckFileRef(c.text, fromCommand, false), c.path);
      EXPECT_EQ(CheckFileRef(c.text, fromCommand, true), c.path);
    }
  }
}

class ClientFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "vornwout-files-XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    directory_ = pattern;
    fs::permissions(directory_, fs::perms::all);
    std::ofstream(directory_ + "/file") << "x";
    fs::create_directory(directory_ + "/folder");
  }
  void TearDown() override { fs::remove_all(directory_); }

  static std::tuple<int, int, int> check(const std::string& path) {
    int usable = -1;
    int exists = -1;
    int accessible = -1;
    const int length = static_cast<int>(path.size());
    validateclientfilespec_(path.data(), &length, &usable, &exists, &accessible);
    return {usable, exists, accessible};
  }

  std::string directory_;
};

TEST_F(ClientFileTest, flagsTellUsableExistingAndWritable) {
  const struct {
    std::string path;
    std::tuple<int, int, int> flags;
  } cases[] = {{directory_ + "/file", {1, 1, 1}},
               {directory_ + "/new", {1, 0, 1}},
               {directory_ + "/missing/new", {1, 0, 0}},
               {directory_ + "/file/new", {1, 0, 0}},
               {directory_ + "/folder", {0, 0, 0}},
               {directory_ + "/folder/", {0, 0, 0}},
               {directory_ + "/new/", {0, 0, 0}},
               {"/", {0, 0, 0}},
               {"", {0, 0, 0}},
               {directory_ + std::string("/a\0b", 4), {0, 0, 0}},
               {directory_ + "/" + std::string(256, 'n'), {0, 0, 0}},
               {"/" + std::string(100000, 'n'), {0, 0, 0}}};
  for (const auto& c : cases) EXPECT_EQ(check(c.path), c.flags) << c.path.substr(0, 80);
  const int negative = -1;
  int usable = 1;
  int exists = 1;
  int accessible = 1;
  validateclientfilespec_("x", &negative, &usable, &exists, &accessible);
  EXPECT_EQ(std::tuple(usable, exists, accessible), std::tuple(0, 0, 0));
}

TEST_F(ClientFileTest, missingPermissionIsNoAccess) {
  fs::permissions(directory_ + "/file", fs::perms::owner_read);
  // Readable by all, so that only writing is what is missing.
  fs::permissions(directory_ + "/folder", fs::perms::all);
  fs::permissions(directory_ + "/folder",
                  fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                  fs::perm_options::remove);
  // Everything is permitted to the superuser, so the look is taken as somebody else.
  const uid_t self = geteuid();
  ASSERT_EQ(seteuid(self == 0 ? 65534 : self), 0);
  const auto file = check(directory_ + "/file");
  const auto inFolder = check(directory_ + "/folder/new");
  ASSERT_EQ(seteuid(self), 0);
  EXPECT_EQ(file, std::tuple(1, 1, 0));
  EXPECT_EQ(inFolder, std::tuple(1, 0, 0));
}

TEST_F(ClientFileTest, pathsAreInTheCurrentEncoding) {
  std::ofstream(directory_ + "/\xE8\xA1\xA8") << "x";
  const ScopedEncoding encoding(Encoding::find("Shift-JIS"));
  EXPECT_EQ(check(directory_ + "/\x95\\"), std::tuple(1, 1, 1));
  EXPECT_EQ(check(directory_ + "/\x95\\/x"), std::tuple(1, 0, 0));
}

}  // namespace
}  // namespace vornwout
