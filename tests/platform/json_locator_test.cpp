// Places in a JSON text.
#include "platform/text/json_locator.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace vornwout {
namespace {

TEST(JsonPointer, EscapesItsSteps) {
  EXPECT_EQ(jsonPointer({}), "");
  EXPECT_EQ(jsonPointer({"responses", "0", ""}), "/responses/0/");
  EXPECT_EQ(jsonPointer({"a/b~c"}), "/a~1b~0c");
}

constexpr std::string_view kText =
    R"( {"a" : [1, {"b": "]}\"{[", "c": -1.5e3}, [] ,true],
  "d\"\u00e4": {"a": null, "e": {}}, "": 0} )";

TEST(LocateJsonValue, FindsTheStartOfAValue) {
  struct Case {
    JsonPath path;
    std::string_view startsWith;
  };
  const Case cases[] = {
      {{}, "{\"a\" :"},
      {{"a"}, "[1, {"},
      {{"a", "0"}, "1, {"},
      {{"a", "1"}, "{\"b\""},
      {{"a", "1", "b"}, "\"]}"},
      {{"a", "1", "c"}, "-1.5e3"},
      {{"a", "2"}, "[] ,"},
      {{"a", "3"}, "true"},
      {{"d\"\xC3\xA4", "a"}, "null"},
      {{"d\"\xC3\xA4", "e"}, "{}}"},
      {{""}, "0}"},
  };
  for (const Case& c : cases) {
    const auto offset = locateJsonValue(kText, c.path);
    ASSERT_TRUE(offset) << jsonPointer(c.path);
    EXPECT_EQ(kText.substr(*offset, c.startsWith.size()), c.startsWith) << jsonPointer(c.path);
  }
}

TEST(LocateJsonValue, FindsNothingBesideThePath) {
  const JsonPath paths[] = {{"b"}, {"a", "4"}, {"a", "x"}, {"a", "0", "0"}, {"a", "2", "0", "0"}};
  for (const JsonPath& path : paths)
    EXPECT_FALSE(locateJsonValue(kText, path)) << jsonPointer(path);
}

TEST(LocateJsonName, FindsTheNameAndItsRepetition) {
  constexpr std::string_view kTwice = R"({"a": {"x": 1, "\u0078": [2]}, "x": 3})";
  EXPECT_EQ(locateJsonName(kTwice, {"a"}), std::size_t{1});
  EXPECT_EQ(locateJsonName(kTwice, {"a", "x"}), std::size_t{7});
  EXPECT_EQ(locateJsonName(kTwice, {"a", "x"}, 2), std::size_t{15});
  EXPECT_EQ(locateJsonName(kTwice, {"a", "x"}, 3), std::nullopt);
  EXPECT_EQ(locateJsonName(kTwice, {}), std::nullopt);
  EXPECT_EQ(locateJsonName("[1]", {"0"}), std::nullopt);
}

TEST(LocateJson, SurvivesEveryTruncationAndEveryByteChanged) {
  const JsonPath paths[] = {{"a", "1", "c"}, {"d\"\xC3\xA4", "e", "f"}, {""}, {"zz"}};
  for (std::size_t size = 0; size < kText.size(); ++size) {
    for (const JsonPath& path : paths) {
      const auto offset = locateJsonValue(kText.substr(0, size), path);
      EXPECT_LE(offset.value_or(0), size);
    }
    for (const char c : {'{', '}', '[', ']', '"', '\\', ',', ':', 'x', '\0'}) {
      std::string changed(kText);
      changed[size] = c;
      for (const JsonPath& path : paths) {
        EXPECT_LE(locateJsonValue(changed, path).value_or(0), changed.size());
        EXPECT_LE(locateJsonName(changed, path, 2).value_or(0), changed.size());
      }
    }
  }
}

TEST(LocateJson, SkipsDeepNestingWithoutDescending) {
  const std::string deep(1'000'000, '[');
  EXPECT_FALSE(locateJsonValue("[" + deep, {"1"}));
  const std::string text = "[" + deep + std::string(deep.size(), ']') + ", 7]";
  EXPECT_EQ(locateJsonValue(text, {"1"}), text.size() - 2);
}

TEST(PlaceInText, CountsLinesAndCharacters) {
  struct Case {
    std::string_view text;
    std::size_t offset;
    SourcePlace place;
  };
  const Case cases[] = {
      {"", 0, {1, 1}},     {"abc", 2, {1, 3}},       {"abc", 99, {1, 4}},
      {"a\nb", 2, {2, 1}}, {"a\r\n\nxy", 5, {3, 2}}, {"\xC3\xA4\xE2\x82\xACx", 5, {1, 3}},
  };
  for (const Case& c : cases) EXPECT_EQ(placeInText(c.text, c.offset), c.place) << c.text;
}

}  // namespace
}  // namespace vornwout
