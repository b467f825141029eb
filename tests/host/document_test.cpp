#include "host/document/document.h"

#include <limits>
#include <stdexcept>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

DocumentObject labelled(const std::string& label) {
  DocumentObject object;
  object.type = ObjectType::kHeading;
  object.label = label;
  return object;
}

TEST(Document, NewOneHasItsNameAndAnUnlabelledEmptyRoot) {
  const Document document(3, "sales", true);
  EXPECT_EQ(document.number(), 3);
  EXPECT_EQ(document.name(), "sales");
  EXPECT_TRUE(document.isMinimized());
  EXPECT_EQ(document.root().type, ObjectType::kHeading);
  EXPECT_EQ(document.root().label, "");
  EXPECT_TRUE(document.root().children.empty());
}

TEST(Document, NameAndWindowStateCanChange) {
  Document document(1, "", false);
  document.setName("数据");
  document.setMinimized(true);
  EXPECT_EQ(document.name(), "数据");
  EXPECT_TRUE(document.isMinimized());
  document.setMinimized(false);
  EXPECT_FALSE(document.isMinimized());
}

TEST(Document, AppendedObjectsKeepTheirOrderAndPositions) {
  Document document(1, "", false);
  const std::size_t first = document.append(labelled("first"));
  for (int i = 0; i < 100; ++i) document.append(labelled("more"));
  const std::size_t last = document.append(labelled("last"));
  EXPECT_EQ(first, 0u);
  EXPECT_EQ(last, 101u);
  EXPECT_EQ(document.at(first).label, "first");
  EXPECT_EQ(document.root().children.back().label, "last");
}

TEST(Document, WhatIsAddedToAHeadingStandsInTheTree) {
  Document document(1, "", false);
  const std::size_t heading = document.append(labelled("heading"));
  document.at(heading).children.push_back(labelled("below"));
  ASSERT_EQ(document.root().children.at(0).children.size(), 1u);
  EXPECT_EQ(document.root().children.at(0).children.at(0).label, "below");
}

TEST(Document, PositionOutsideThrows) {
  Document document(1, "", false);
  EXPECT_THROW(document.at(0), std::out_of_range);
}

TEST(Document, RunsAreCountedPerCommandFromOne) {
  Document document(1, "", false);
  EXPECT_EQ(document.beginRun("OUTPUT COMMENT"), 1);
  EXPECT_EQ(document.beginRun("OUTPUT NEW"), 1);
  EXPECT_EQ(document.beginRun("OUTPUT COMMENT"), 2);
}

TEST(Document, RunsThatCannotBeCountedAnyMoreStayAtTheMost) {
  constexpr int kMost = std::numeric_limits<int>::max();
  Document document(1, "", false);
  document.setContents({}, {{"OUTPUT COMMENT", kMost - 1}});
  EXPECT_EQ(document.beginRun("OUTPUT COMMENT"), kMost);
  EXPECT_EQ(document.beginRun("OUTPUT COMMENT"), kMost);
  EXPECT_EQ(document.runs().at("OUTPUT COMMENT"), kMost);
}

TEST(DocumentObject, IsVisibleUnlessHidden) { EXPECT_TRUE(DocumentObject{}.visible); }

}  // namespace
}  // namespace vornwout
