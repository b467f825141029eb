// Where bundles are looked for, told by the location of the current language's tables.
#include "libvornwout/stbprint/bundle_path.h"

#include <gtest/gtest.h>

#include "platform/text/encoding.h"

namespace vornwout {
namespace {

TEST(BundlePath, DirectoryIsTheLocationWithoutItsLastTwoComponents) {
  const struct {
    const char* location;
    const char* directory;
  } cases[] = {
      {"/opt/pkg/lang/en/", "/opt/pkg/lang"},
      {"/opt/pkg/lang/en", "/opt/pkg"},
      {"/opt/pkg/lang/en\\", "/opt/pkg/lang"},
      {"/opt/pkg/lang\\en", "/opt/pkg"},
      // The second cut knows no backslash.
      {"C:\\pkg\\lang\\en\\", "C:\\pkg\\lang\\en"},
      {"C:\\pkg/lang\\en\\", "C:\\pkg"},
      {"/lang/en//", "/lang/en"},
      {"/en/", ""},
      {"/en", ""},
      {"en/", "en"},
      {"en", "en"},
      {"/", ""},
      {"", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(bundleDirectory(c.location), c.directory) << c.location;
}

TEST(BundlePath, ABackslashInsideACharacterIsNoSeparator) {
  const ScopedEncoding encoding(Encoding::find("Shift-JIS"));
  EXPECT_EQ(bundleDirectory("/opt/\x95\\lang/en/"), "/opt/\x95\\lang");
  EXPECT_EQ(bundleDirectory("/opt/lang/\x95\\"), "/opt") << "the location has no separator behind";
}

TEST(BundlePath, HasBackslashesBehindTheDirectory) {
  EXPECT_EQ(bundlePath("/opt/pkg/lang", "de", "B"), "/opt/pkg/lang\\de\\B");
  EXPECT_EQ(bundlePath("", "", ""), "\\\\");
}

}  // namespace
}  // namespace vornwout
