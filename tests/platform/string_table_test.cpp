// String tables by the paths that commands build.
#include "platform/strings/string_table.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/files/path_context.h"
#include "platform/text/encoding.h"
#include "tests/support/scratch_directory.h"
#include "tests/support/text_bundle_bytes.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Entries = std::vector<keyValueGloss>;

class StringTableTest : public testing::Test {
 protected:
  StringTableTest() { std::filesystem::create_directories(scratch_.file("lang/de")); }

  /// The entries at a path; there were others in the vector before.
  static Entries read(const std::string& path) {
    Entries entries = {{"stale", "", ""}};
    FacSTStringTable().GetKeysAndValues(path, entries);
    return entries;
  }

  const Entries some_ = {{"z", "M\xC3\xA4rz", ""}, {"a", "", "\xE6\x9C\x88"}};
  ScratchDirectory scratch_;
};

TEST_F(StringTableTest, BackslashesAreSeparators) {
  scratch_.write("lang/de/x.qbb", textBundleBytes(some_));
  const std::string base = scratch_.file("lang");
  for (const std::string& path : {base + "\\de\\x.qbb", base + "/de/x.qbb", base + "/de\\x.qbb"}) {
    EXPECT_EQ(read(path), some_) << path;
  }
}

TEST_F(StringTableTest, ANameThatIsThereAsItIsWrittenComesFirst) {
  scratch_.write("lang/de/x.qbb", textBundleBytes(some_));
  scratch_.write("lang\\de\\x.qbb", textBundleBytes({{"other", "", ""}}));
  EXPECT_THAT(read(scratch_.path() + "/lang\\de\\x.qbb"),
              ElementsAre(keyValueGloss{"other", "", ""}));
}

TEST_F(StringTableTest, WhatIsNoBundleHasNoEntries) {
  scratch_.write("text", "key a\ntext b\n");
  scratch_.write("empty", "");
  const std::string whole = textBundleBytes(some_);
  scratch_.write("cut", whole.substr(0, whole.size() - 4));
  for (const char* name : {"text", "empty", "cut", "missing", "lang", "lang/de", "a/b"}) {
    EXPECT_THAT(read(scratch_.file(name)), IsEmpty()) << name;
  }
  EXPECT_THAT(read(""), IsEmpty());
  EXPECT_THAT(read(scratch_.write("whole", whole) + std::string("\0x", 2)), IsEmpty());
}

TEST_F(StringTableTest, NoHandleIsReplacedInAPath) {
  scratch_.write("x.qbb", textBundleBytes(some_));
  const ScopedPathContext context({scratch_.file("lang"), {{"tables", scratch_.path()}}});
  EXPECT_THAT(read("tables/x.qbb"), IsEmpty());
  EXPECT_EQ(read("../x.qbb"), some_);
}

TEST_F(StringTableTest, EntriesComeInTheCurrentEncoding) {
  const std::string path = scratch_.write("x.qbb", textBundleBytes(some_));
  {
    const ScopedEncoding encoding(Encoding::find("windows-1252"));
    EXPECT_THAT(read(path),
                ElementsAre(keyValueGloss{"z", "M\xE4rz", ""}, keyValueGloss{"a", "", "?"}));
  }
  const ScopedEncoding encoding(Encoding::find("Shift-JIS"));
  EXPECT_EQ(read(path)[1].gloss, "\x8C\x8E");
}

TEST_F(StringTableTest, ATableIsReadAnewEachTime) {
  const std::string path = scratch_.write("x.qbb", textBundleBytes(some_));
  EXPECT_EQ(read(path), some_);
  scratch_.write("x.qbb", textBundleBytes({{"new", "", ""}}));
  EXPECT_THAT(read(path), ElementsAre(keyValueGloss{"new", "", ""}));
}

}  // namespace
}  // namespace vornwout
