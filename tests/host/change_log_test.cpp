// The transaction over a document's objects.
#include "host/changes/change_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

DocumentObject text(const char* label) {
  DocumentObject made;
  made.type = ObjectType::kText;
  made.label = label;
  made.content =
      ObjectContent(TextContent{{{TextParagraph::Kind::kPlain, 0, 0, {{label, {}, ""}}}}});
  return made;
}

/// a, H(b, I(c, d), e), f
Document makeDocument() {
  Document document(1, "", false);
  DocumentObject inner;
  inner.type = ObjectType::kHeading;
  inner.label = "I";
  inner.children = {text("c"), text("d")};
  DocumentObject heading;
  heading.type = ObjectType::kHeading;
  heading.label = "H";
  heading.children = {text("b"), inner, text("e")};
  document.append(text("a"));
  document.append(heading);
  document.append(text("f"));
  return document;
}

std::string outline(const DocumentObject& heading) {
  std::string all;
  for (const DocumentObject& object : heading.children) {
    if (!all.empty()) all += ' ';
    all += object.label;
    if (object.type == ObjectType::kHeading) all += "(" + outline(object) + ")";
  }
  return all;
}

TEST(ChangeLog, WhatIsNotCommittedIsTakenBack) {
  Document document = makeDocument();
  const Document before = document;
  {
    ChangeLog log(document);
    DocumentObject& a = document.editRoot().children[0];
    for (int i = 0; i < 2; ++i) {
      log.willChange(a);
      a.visible = false;
      a.size = ObjectSize{10, 20, i == 1};
      a.label = "changed";
      a.index = "iv";
      a.content.set(LogContent{"other"});
    }
    log.remove(document.editRoot().children[1]);
    EXPECT_EQ(log.changedCount(), 1U);
    EXPECT_EQ(log.removedCount(), 6U) << "the heading, b, I, c, d and e";
    EXPECT_FALSE(sameObject(document.root(), before.root()));
  }
  EXPECT_TRUE(sameObject(document.root(), before.root()));
}

TEST(ChangeLog, CommittedChangesStay) {
  Document document = makeDocument();
  {
    ChangeLog log(document);
    DocumentObject& f = document.editRoot().children[2];
    log.willChange(f);
    f.label = "g";
    log.remove(document.editRoot().children[0]);
    EXPECT_THAT(log.commit(), ElementsAre(0));
  }
  EXPECT_EQ(outline(document.root()), "H(b I(c d) e) g");
}

TEST(ChangeLog, ObjectsAtAnyDepthGoTogether) {
  struct Case {
    std::vector<std::vector<std::size_t>> removed;  ///< paths
    const char* left;
    std::size_t count;
    std::vector<std::size_t> positions;
  };
  const Case cases[] = {
      {{{1, 1, 0}}, "a H(b I(d) e) f", 1, {}},
      {{{1, 0}, {1, 2}}, "a H(I(c d)) f", 2, {}},
      {{{1, 1}, {1, 1, 1}, {2}}, "a H(b e)", 4, {2}},
      {{{1}, {1, 0}, {1, 1, 0}}, "a f", 6, {1}},
      {{{0}, {1}, {2}}, "", 8, {0, 1, 2}},
      {{{1, 1, 0}, {1, 1, 1}}, "a H(b I() e) f", 2, {}},
      {{}, "a H(b I(c d) e) f", 0, {}},
  };
  for (const Case& test : cases) {
    Document document = makeDocument();
    ChangeLog log(document);
    for (const std::vector<std::size_t>& path : test.removed) {
      DocumentObject* object = &document.editRoot();
      for (const std::size_t step : path) object = &object->children[step];
      log.remove(*object);
      log.remove(*object);
    }
    EXPECT_EQ(log.removedCount(), test.count) << test.left;
    EXPECT_EQ(log.commit(), test.positions) << test.left;
    EXPECT_EQ(outline(document.root()), test.left);
  }
}

TEST(ChangeLog, WhatIsChangedAndThenGoneCountsAsGoneOnly) {
  Document document = makeDocument();
  ChangeLog log(document);
  DocumentObject& heading = document.editRoot().children[1];
  log.willChange(heading.children[0]);
  log.willChange(document.editRoot().children[0]);
  log.remove(heading);
  EXPECT_EQ(log.changedCount(), 1U);
  EXPECT_EQ(log.removedCount(), 6U);
}

TEST(ChangeLog, KeepsContentsByReference) {
  Document document = makeDocument();
  const ObjectContent* before = &document.editRoot().children[0].content.get();
  ChangeLog log(document);
  log.willChange(document.editRoot().children[0]);
  document.editRoot().children[0].visible = false;
  EXPECT_EQ(&document.editRoot().children[0].content.get(), before) << "no content was copied";
  EXPECT_THAT(log.commit(), IsEmpty());
}

}  // namespace
}  // namespace vornwout
