#include "host/build/markdown_text.h"

#include <string>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

using Kind = TextParagraph::Kind;

/// "H1 Title" per paragraph; styles as marks around runs.
std::string shown(std::string_view markdown) {
  static const char* const kNames[] = {"P", "H", "B", "N", "Q", "C"};
  std::string text;
  for (const TextParagraph& paragraph : textFromMarkdown(markdown).paragraphs) {
    text += kNames[static_cast<int>(paragraph.kind)] + std::to_string(paragraph.level);
    if (paragraph.kind == Kind::kNumbered) text += "." + std::to_string(paragraph.number);
    text += ' ';
    for (const TextRun& run : paragraph.runs) {
      const std::string marks = std::string(run.style.bold ? "*" : "") +
                                (run.style.italic ? "/" : "") + (run.style.monospaced ? "`" : "") +
                                (run.style.underlined ? "_" : "");
      text += marks + run.text + (run.link.empty() ? "" : "<" + run.link + ">") + marks;
    }
    text += '|';
  }
  return text;
}

TEST(MarkdownText, EveryConstructIsKept) {
  struct Case {
    const char* markdown;
    const char* text;
  };
  const Case cases[] = {
      {"", ""},
      {"one\ntwo\n\nthree", "P0 one two|P0 three|"},
      {"one  \ntwo", "P0 one\ntwo|"},
      {"# A\n### B", "H1 A|H3 B|"},
      {"a *b* **c** ***d*** `e`", "P0 a /b/ *c* */d*/ `e`|"},
      {"[a](https://b.c)", "P0 _a<https://b.c>_|"},
      {"[a](javascript:x)", "P0 a|"},
      {"[a](HTTPS://b)", "P0 _a<HTTPS://b>_|"},
      {"- a\n- b\n  - c\n    - d\n- e", "B1 a|B1 b|B2 c|B3 d|B1 e|"},
      {"3. a\n4. b\n   - c", "N1.3 a|N1.4 b|B2 c|"},
      {"- a\n\n  more\n- b", "B1 a|P1 more|B1 b|"},
      {"-\n- b", "B1 |B1 b|"},
      {"> a\n> > b", "Q1 a|Q2 b|"},
      {"```\na\n  b\n```", "C0 `a\n  b`|"},
      {"    code", "C0 `code`|"},
      {"a <b>c</b>", "P0 a <b>c</b>|"},
      {"<div>\nx\n</div>", "P0 <div>\nx\n</div>|"},
      {"![alt *text*](a.png)", "P0 alt /text/|"},
      {"a\n\n---\n\nb", "P0 a|P0 |P0 b|"},
      {"&amp; \\*", "P0 & *|"},
      {"\xEF\xBB\xBF# A", "H1 A|"},
      {"a\xFF", "P0 a\xEF\xBF\xBD|"},
  };
  for (const Case& c : cases) EXPECT_EQ(shown(c.markdown), c.text) << c.markdown;
}

TEST(MarkdownText, DepthOfNestingIsNoMatter) {
  EXPECT_FALSE(shown(std::string(20000, '>') + "a").empty());
  EXPECT_FALSE(shown(std::string(20000, '*') + "a" + std::string(20000, '*')).empty());
}

TEST(MarkdownText, PlainTextIsAParagraphPerLine) {
  const TextContent content = textFromPlain("a\r\n\n*b*\n");
  ASSERT_EQ(content.paragraphs.size(), 3U);
  EXPECT_EQ(content.paragraphs[0].runs[0].text, "a");
  EXPECT_TRUE(content.paragraphs[1].runs.empty());
  EXPECT_EQ(content.paragraphs[2].runs[0].text, "*b*");
  EXPECT_TRUE(textFromPlain("").paragraphs.empty());
}

}  // namespace
}  // namespace vornwout
