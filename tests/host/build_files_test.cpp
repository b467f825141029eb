#include "host/build/build_files.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "host/build/build_error.h"
#include "tests/support/program_run.h"

namespace vornwout {
namespace {

std::string textOf(BuildFiles& files, const std::string& name, std::size_t limit = 100) {
  try {
    return readWhole(files, name, limit);
  } catch (const BuildError& error) {
    return std::string("refused: ") + error.what();
  }
}

TEST(DiskFiles, NamesAreRelativeToTheFolder) {
  const ScratchDirectory scratch;
  scratch.write("a.csv", "text");
  DiskFiles files(scratch.file(""), FileReach::kFolder);
  EXPECT_EQ(textOf(files, "a.csv"), "text");
  EXPECT_EQ(textOf(files, "./x/../a.csv").substr(0, 26), "refused: It cannot be read");
  EXPECT_EQ(textOf(files, "b.csv"), "refused: It cannot be read: No such file or directory.");
  EXPECT_EQ(textOf(files, "."), "refused: It is a folder, not a file.");
  EXPECT_EQ(textOf(files, ""), "refused: This is no name of a file.");
  EXPECT_EQ(textOf(files, std::string("a.csv\0b", 7)), "refused: This is no name of a file.");
  EXPECT_EQ(textOf(files, "a.csv", 3), "refused: It is too large: more than 0 MiB are not read.");
}

TEST(DiskFiles, NothingOutsideTheFolderIsReadUnlessAllowed) {
  const ScratchDirectory scratch;
  const std::string secret = scratch.write("secret", "secret");
  std::filesystem::create_directory(scratch.file("in"));
  std::filesystem::create_symlink("../secret", scratch.file("in/link"));
  scratch.write("in/a", "a");
  std::filesystem::create_symlink("a", scratch.file("in/inner"));
  DiskFiles files(scratch.file("in"), FileReach::kFolder);
  EXPECT_EQ(textOf(files, "../secret"), "refused: The file lies outside the manifest's folder.");
  EXPECT_EQ(textOf(files, "x/../../secret"),
            "refused: The file lies outside the manifest's folder.");
  EXPECT_EQ(textOf(files, secret), "refused: A manifest names files relative to its folder.");
  EXPECT_EQ(textOf(files, "link"), "refused: A symbolic link leads outside the manifest's folder.");
  EXPECT_EQ(textOf(files, "inner"), "a");
  DiskFiles all(scratch.file("in"), FileReach::kAnywhere);
  EXPECT_EQ(textOf(all, "../secret"), "secret");
  EXPECT_EQ(textOf(all, secret), "secret");
  EXPECT_EQ(textOf(all, "link"), "secret");
}

TEST(DiskFiles, PipeIsRefusedAtOnceBelowAFolderThatAManifestNames) {
  const ScratchDirectory scratch;
  ASSERT_EQ(mkfifo(scratch.file("pipe").c_str(), 0600), 0);
  std::filesystem::create_symlink("pipe", scratch.file("link"));
  DiskFiles files(scratch.file(""), FileReach::kFolder);
  EXPECT_EQ(textOf(files, "pipe"), "refused: It is no ordinary file.");
  EXPECT_EQ(textOf(files, "link"), "refused: It is no ordinary file.");
  EXPECT_EQ(files.sizeOf("pipe"), 0U);
}

TEST(DiskFiles, SizeIsThatOfTheFileAndNothingWhereThereIsNone) {
  const ScratchDirectory scratch;
  scratch.write("a", "text");
  DiskFiles files(scratch.file(""), FileReach::kFolder);
  EXPECT_EQ(files.sizeOf("a"), 4U);
  EXPECT_EQ(files.sizeOf("b"), 0U);
  EXPECT_EQ(files.sizeOf("."), 0U);
}

TEST(DiskFiles, WhatCannotBeReadIsNoMistakeInTheFile) {
  const ScratchDirectory scratch;
  scratch.write("a", "text");
  DiskFiles files(scratch.file(""), FileReach::kFolder);
  for (const char* name : {"none", "", ".", "../a", "/a"}) {
    try {
      files.open(name);
      ADD_FAILURE() << name;
    } catch (const BuildError& error) {
      EXPECT_EQ(error.kind(), BuildError::Kind::kUnreadable) << name;
    }
  }
}

TEST(DiskFiles, SourceIsReadAgainFromItsStart) {
  const ScratchDirectory scratch;
  scratch.write("a", "text");
  DiskFiles files(scratch.file(""), FileReach::kFolder);
  const auto source = files.open("a");
  char buffer[10];
  EXPECT_EQ(source->read(buffer, sizeof buffer), 4U);
  EXPECT_EQ(source->read(buffer, sizeof buffer), 0U);
  source->rewind();
  EXPECT_EQ(source->read(buffer, 2), 2U);
  EXPECT_EQ(std::string(buffer, 2), "te");
}

}  // namespace
}  // namespace vornwout
