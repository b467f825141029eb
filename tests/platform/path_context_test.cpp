// The working directory and handles in force, and names between the encoding and the file system.
#include "platform/files/path_context.h"

#include <filesystem>
#include <string>

#include "gtest/gtest.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

TEST(PathContextTest, withoutAContextTheRealWorkingDirectoryAndNoHandlesHold) {
  EXPECT_EQ(workingDirectory(), std::filesystem::current_path().string());
  EXPECT_TRUE(currentPathContext().handles.empty());
}

TEST(PathContextTest, aScopeReplacesTheContextAndBringsItBack) {
  {
    const ScopedPathContext outer({"/srv/jobs", {{"a", "/data/a"}}});
    {
      const ScopedPathContext inner({"/tmp", {}});
      EXPECT_EQ(workingDirectory(), "/tmp");
      EXPECT_TRUE(currentPathContext().handles.empty());
    }
    EXPECT_EQ(workingDirectory(), "/srv/jobs");
    EXPECT_EQ(currentPathContext().handles.at("a"), "/data/a");
  }
  EXPECT_EQ(currentPathContext().workingDirectory, "");
}

TEST(PathContextTest, workingDirectoryIsAbsoluteAndHasNoTrailingSlash) {
  const std::string real = std::filesystem::current_path().string();
  const struct {
    std::string given;
    std::string directory;
  } cases[] = {{"", real}, {"/", "/"}, {"/a/", "/a"}, {"/a//", "/a"}, {"sub", real + "/sub"}};
  for (const auto& c : cases) {
    const ScopedPathContext scope({c.given, {}});
    EXPECT_EQ(workingDirectory(), c.directory) << c.given;
  }
}

TEST(PathContextTest, nativeNamesAreUtf8WhateverTheEncoding) {
  EXPECT_EQ(toNativePath("a\xFF"), "a\xFF");  // reachable although it is not valid
  EXPECT_EQ(fromNativePath("a\xFF"), "a\xFF");
  const ScopedEncoding scope(Encoding::find("Shift-JIS"));
  EXPECT_EQ(toNativePath("\x95\\/a\\b"), "\xE8\xA1\xA8/a\\b");
  EXPECT_EQ(fromNativePath("\xE8\xA1\xA8/a"), "\x95\\/a");
}

}  // namespace
}  // namespace vornwout
