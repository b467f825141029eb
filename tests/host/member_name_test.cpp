#include "host/store/member_name.h"

#include <gtest/gtest.h>

namespace vornwout {
namespace {

TEST(MemberName, UsualNamesHaveNoFault) {
  for (const char* name : {"a", "mimetype", "parts/1.xml", "a/b/c", "a..b", "...", ".hidden",
                           "dir/", "表/グラフ.png", "naïve-é.txt", "a'\"<>&|*?"}) {
    EXPECT_EQ(faultOfMemberName(name), "") << name;
  }
}

TEST(MemberName, FaultsEndASentence) {
  EXPECT_EQ(faultOfMemberName(""), "is empty");
  EXPECT_EQ(faultOfMemberName("/"), "is an absolute path");
  EXPECT_EQ(faultOfMemberName("a//"), "has an empty component");
  EXPECT_EQ(faultOfMemberName(".."), "leaves its place by \".\" or \"..\"");
  EXPECT_EQ(faultOfMemberName("\xC0\xAE\xC0\xAE/a"), "is not valid UTF-8");
}

TEST(MemberName, IsShownShortenedAndHarmless) {
  EXPECT_EQ(quotedMemberName("a.xml"), "\"a.xml\"");
  EXPECT_EQ(quotedMemberName("a\x1B[31m\n"), "\"a?[31m?\"");
  EXPECT_EQ(quotedMemberName("a\xFF"), "\"a\xEF\xBF\xBD\"");
  EXPECT_EQ(quotedMemberName(std::string(81, 'x')), "\"" + std::string(80, 'x') + "...\"");
}

TEST(MemberName, FoldsCaseInEveryScript) {
  EXPECT_EQ(caseFoldedName("Parts/A.XML"), "parts/a.xml");
  EXPECT_EQ(caseFoldedName("ÄÖÜ"), caseFoldedName("äöü"));
  EXPECT_EQ(caseFoldedName("STRASSE"), caseFoldedName("straße"));
  EXPECT_EQ(caseFoldedName("ΣΑΣ"), caseFoldedName("σας"));
  EXPECT_NE(caseFoldedName("a"), caseFoldedName("b"));
}

}  // namespace
}  // namespace vornwout
