#include "host/document/outline.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/document/content_view.h"

namespace vornwout {
namespace {

DocumentObject object(const std::string& label, std::vector<DocumentObject> children = {}) {
  DocumentObject result;
  result.type = children.empty() ? ObjectType::kText : ObjectType::kHeading;
  result.label = label;
  result.children = std::move(children);
  return result;
}

DocumentObject hidden(DocumentObject object) {
  object.visible = false;
  return object;
}

TEST(Outline, ObjectsAreNumberedDepthFirst) {
  const DocumentObject root = object(
      "", {object("a"), object("b", {object("b1"), object("b2", {object("b21")})}), object("c")});
  const std::vector<OutlineEntry> entries = outlineOf(root);
  struct Expected {
    const char* label;
    int depth;
    bool isLast;
    std::size_t nextNumber;
  };
  const Expected expected[] = {{"a", 0, false, 2}, {"b", 0, false, 6},  {"b1", 1, false, 4},
                               {"b2", 1, true, 6}, {"b21", 2, true, 6}, {"c", 0, true, 7}};
  ASSERT_EQ(entries.size(), std::size(expected));
  for (std::size_t i = 0; i < entries.size(); ++i) {
    SCOPED_TRACE(expected[i].label);
    EXPECT_EQ(entries[i].object->label, expected[i].label);
    EXPECT_EQ(entries[i].number, i + 1);
    EXPECT_EQ(entries[i].depth, expected[i].depth);
    EXPECT_EQ(entries[i].isLast, expected[i].isLast);
    EXPECT_EQ(entries[i].nextNumber, expected[i].nextNumber);
  }
}

TEST(Outline, HiddenObjectsCountAndHideWhatStandsBelowThem) {
  const DocumentObject root =
      object("", {hidden(object("a")), hidden(object("b", {object("b1")})), object("c")});
  const std::vector<OutlineEntry> entries = outlineOf(root);
  ASSERT_EQ(entries.size(), 4U);
  EXPECT_FALSE(entries[0].isShown);
  EXPECT_FALSE(entries[1].isShown);
  EXPECT_FALSE(entries[2].isShown);
  EXPECT_TRUE(entries[3].isShown);
  EXPECT_EQ(entries[3].number, 4U);
}

TEST(Outline, DocumentWithoutObjectsHasNone) { EXPECT_TRUE(outlineOf(DocumentObject()).empty()); }

class CountingSource : public ContentSource {
 public:
  ObjectContent load(std::uint64_t) override {
    ++loads;
    return LogContent{"read"};
  }
  int loads = 0;
};

TEST(ContentView, ForgetsWhatItReadAndKeepsWhatWasThere) {
  const auto source = std::make_shared<CountingSource>();
  const LazyContent content(LazyContent::Place{source, 1});
  {
    const ContentView view(content);
    EXPECT_EQ(std::get<LogContent>(*view).text, "read");
  }
  EXPECT_FALSE(content.isLoaded());
  content.get();
  { const ContentView view(content); }
  EXPECT_TRUE(content.isLoaded());
  EXPECT_EQ(source->loads, 2);
}

}  // namespace
}  // namespace vornwout
