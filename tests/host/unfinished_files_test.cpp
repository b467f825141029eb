#include "host/store/unfinished_files.h"

#include <cerrno>
#include <filesystem>
#include <list>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/support/scratch_directory.h"

namespace vornwout {
namespace {

class UnfinishedFilesTest : public testing::Test {
 protected:
  UnfinishedFilesTest() : directory_(open(scratch_.path().c_str(), O_RDONLY | O_DIRECTORY)) {}
  ~UnfinishedFilesTest() override { close(directory_); }

  bool isThere(const std::string& name) const {
    return std::filesystem::exists(scratch_.file(name));
  }

  ScratchDirectory scratch_;
  int directory_;
};

TEST_F(UnfinishedFilesTest, AreRemovedWhileTheyAre) {
  for (const char* name : {"before", "now", "other"}) scratch_.write(name, "x");
  { const UnfinishedFile before(directory_, "before"); }
  const UnfinishedFile now(directory_, "now");
  const UnfinishedFile missing(directory_, "missing");
  errno = 7;
  removeUnfinishedFiles();
  EXPECT_EQ(errno, 7) << "a handler must not change it";
  EXPECT_TRUE(isThere("before"));
  EXPECT_FALSE(isThere("now"));
  EXPECT_TRUE(isThere("other"));
}

TEST_F(UnfinishedFilesTest, SlotsAreUsedAgainAndMoreThanThereAreDoNoHarm) {
  for (int round = 0; round < 3; ++round) {
    std::list<UnfinishedFile> files;
    for (int i = 0; i < 40; ++i) {
      const std::string name = "f" + std::to_string(i);
      scratch_.write(name, "x");
      files.emplace_back(directory_, name);
    }
    files.emplace_back(directory_, std::string(300, 'n'));
    removeUnfinishedFiles();
    EXPECT_FALSE(isThere("f0"));
    EXPECT_FALSE(isThere("f15"));
    EXPECT_TRUE(isThere("f39"));
  }
}

}  // namespace
}  // namespace vornwout
