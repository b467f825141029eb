// The path of a file as it goes to the output controller.
#include "libvornwout/frame/file_path.h"

#include <gtest/gtest.h>

#include "platform/files/path_context.h"
#include "platform/text/encoding.h"
#include "tests/support/command_run.h"

namespace vornwout {
namespace {

struct PathCase {
  const char* condition;
  const char* path;
  const char* expanded;    ///< with a host that allows expansion
  const char* suppressed;  ///< without host, or with one that suppresses it
};

class NormalizeOutputFilePathTest : public testing::TestWithParam<PathCase> {
 protected:
  static std::string normalized(HostAdapter* host) {
    const ScopedPathContext context({"/srv/jobs", {}});
    const AdapterRegistration adapter(host);
    std::string path = GetParam().path;
    NormalizeOutputFilePath(path);
    return path;
  }
};

TEST_P(NormalizeOutputFilePathTest, IsExpandedWhereTheHostAllowsIt) {
  FakeHost host;
  EXPECT_EQ(normalized(&host), GetParam().expanded);
}

TEST_P(NormalizeOutputFilePathTest, StaysAsWrittenButForItsSlashesWhereTheHostSuppressesExpansion) {
  FakeHost host;
  host.pathExpansionSuppressed = true;
  EXPECT_EQ(normalized(&host), GetParam().suppressed);
}

TEST_P(NormalizeOutputFilePathTest, StaysAsWrittenButForItsSlashesWithoutAHost) {
  EXPECT_EQ(normalized(nullptr), GetParam().suppressed);
}

INSTANTIATE_TEST_SUITE_P(
    Paths, NormalizeOutputFilePathTest,
    testing::Values(
        PathCase{"Relative", "out/a.qxv", "\\srv\\jobs\\out\\a.qxv", "out\\a.qxv"},
        PathCase{"PlainName", "a.qxv", "\\srv\\jobs\\a.qxv", "a.qxv"},
        PathCase{"OneLetter", "a", "\\srv\\jobs\\a", "a"},
        PathCase{"UpwardPath", "../a.qxv", "\\srv\\a.qxv", "..\\a.qxv"},
        PathCase{"StartingWithSlash", "/out/a.qxv", "\\out\\a.qxv", "\\out\\a.qxv"},
        PathCase{"RootedWithDots", "/out/../a.qxv", "\\out\\..\\a.qxv", "\\out\\..\\a.qxv"},
        PathCase{"StartingWithBackslash", "\\out/a.qxv", "\\out\\a.qxv", "\\out\\a.qxv"},
        PathCase{"StartingWithBackslashWithDots", "\\out\\..\\a.qxv", "\\out\\..\\a.qxv",
                 "\\out\\..\\a.qxv"},
        PathCase{"WithDriveLetter", "c:/out/a.qxv", "c:\\out\\a.qxv", "c:\\out\\a.qxv"},
        PathCase{"WithDriveLetterAlone", "c:a.qxv", "c:a.qxv", "c:a.qxv"},
        PathCase{"WithColonLater", "ab:c/d", "\\srv\\jobs\\ab:c\\d", "ab:c\\d"},
        PathCase{"ManySlashes", "a///b", "\\srv\\jobs\\a\\b", "a\\\\\\b"},
        PathCase{"Empty", "", "", ""}),
    [](const auto& test) { return test.param.condition; });

TEST(NormalizeOutputFilePath, LeavesAPathThatCannotBeExpandedAsItWas) {
  FakeHost host;
  const AdapterRegistration adapter(&host);
  std::string path(100000, 'a');
  path += "/b";
  NormalizeOutputFilePath(path);
  EXPECT_EQ(path, std::string(100000, 'a') + "\\b");
}

TEST(NormalizeOutputFilePath, LooksInsideNoCharacterOfTwoBytes) {
  const ScopedEncoding encoding(Encoding::find("Shift-JIS"));
  FakeHost host;
  const AdapterRegistration adapter(&host);
  const ScopedPathContext context({"/srv", {}});
  // The trail byte of the first character is a backslash; it starts no rooted path.
  std::string path = "\x83\x5C/a";
  NormalizeOutputFilePath(path);
  EXPECT_EQ(path, "\\srv\\\x83\x5C\\a");
  path = "\\\x95\x5C/\x94\x5C/\x83\x41";
  NormalizeOutputFilePath(path);
  EXPECT_EQ(path, "\\\x95\x5C\\\x94\x5C\\\x83\x41");
}

TEST(NormalizeOutputFilePath, KeepsTrailBytesThatEqualABackslash) {
  const ScopedEncoding encoding(Encoding::find("Big5"));
  std::string path = "\xA5\x5C/\xB3\x5C/x";
  NormalizeOutputFilePath(path);
  EXPECT_EQ(path, "\xA5\x5C\\\xB3\x5C\\x");
}

}  // namespace
}  // namespace vornwout
