#include "platform/text/strict_json.h"

#include <string>

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace vornwout {
namespace {

std::string problemOf(const std::string& text, std::size_t maxDepth = 4) {
  const auto problem = findJsonProblem(text, maxDepth);
  if (!problem) return "none";
  const SourcePlace place = placeInText(text, problem->offset);
  return fmt::format("{}:{}: {}: {}", place.line, place.column, jsonPointer(problem->path),
                     problem->message);
}

TEST(StrictJson, SoundTextsHaveNoProblem) {
  for (const char* text : {"{}", "[]", "null", "1", "\"a\"", "[[[[]]]]",
                           "{\"a\":{\"a\":1},\"b\":[1,2]}", "[{\"a\":1},{\"a\":2}]"}) {
    EXPECT_EQ(problemOf(text), "none") << text;
  }
}

TEST(StrictJson, ProblemIsNamedAtItsPlace) {
  struct Case {
    const char* text;
    const char* problem;
  };
  const Case cases[] = {
      {"{\"a\": 1,\n \"a\": 2}", "2:2: /a: member \"a\" stands twice"},
      {"{\"a\": [0, {\"b\": 1, \"b\": 2}]}", "1:20: /a/1/b: member \"b\" stands twice"},
      {"[[[[[]]]]]", "1:5: /0/0/0/0: nested deeper than 4 levels"},
      {"{\"a\":{\"a\":{\"a\":{\"a\":{}}}}}", "1:21: /a/a/a/a: nested deeper than 4 levels"},
  };
  for (const Case& c : cases) EXPECT_EQ(problemOf(c.text), c.problem);
}

TEST(StrictJson, SyntaxErrorNamesWhereTheTextEndsToBeJson) {
  EXPECT_EQ(problemOf("{\"a\": }").substr(0, 9), "1:7: /a: ");
  EXPECT_EQ(problemOf("{\n\"a\" 1}").substr(0, 5), "2:5: ");
  EXPECT_EQ(problemOf("[1").substr(0, 3), "1:3");
  EXPECT_NE(problemOf("\"\xFF\""), "none");
  EXPECT_NE(problemOf(""), "none");
  EXPECT_NE(problemOf("{} {}"), "none");
  EXPECT_NE(problemOf(std::string(1000000, '[')), "none");
}

}  // namespace
}  // namespace vornwout
