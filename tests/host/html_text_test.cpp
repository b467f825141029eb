#include "host/export/html/html_text.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

using Kind = TextParagraph::Kind;

TextParagraph paragraph(Kind kind, int level, std::string text, int number = 0) {
  TextParagraph result;
  result.kind = kind;
  result.level = level;
  result.number = number;
  result.runs.push_back({std::move(text), {}, {}});
  return result;
}

std::string htmlOf(std::vector<TextParagraph> paragraphs, int headingLevel = 2) {
  std::string out;
  HtmlWriter html(out);
  writeHtmlText(html, {std::move(paragraphs)}, headingLevel);
  return out;
}

std::string htmlOf(const TextRun& run) {
  TextParagraph only;
  only.runs.push_back(run);
  const std::string html = htmlOf({only});
  return html.substr(3, html.size() - 8);  // between <p> and </p> and the line end
}

TEST(HtmlText, ParagraphsBecomeElements) {
  EXPECT_EQ(htmlOf({paragraph(Kind::kHeading, 1, "h"), paragraph(Kind::kPlain, 0, "a<b"),
                    paragraph(Kind::kCode, 0, "x\n  y")}),
            "<h2>h</h2>\n<p>a&lt;b</p>\n<pre><code>x\n  y</code></pre>\n");
}

TEST(HtmlText, HeadingsFollowEachOtherWithoutAGap) {
  const auto heading = [](int level) { return paragraph(Kind::kHeading, level, "h"); };
  EXPECT_EQ(htmlOf({heading(3)}, 2), "<h2>h</h2>\n") << "the topmost stands where it should";
  EXPECT_EQ(htmlOf({heading(2), heading(4), heading(2), heading(3)}, 2),
            "<h2>h</h2>\n<h3>h</h3>\n<h2>h</h2>\n<h3>h</h3>\n");
  EXPECT_EQ(htmlOf({heading(3), heading(1)}, 3), "<h3>h</h3>\n<h3>h</h3>\n");
  EXPECT_EQ(htmlOf({heading(-5), heading(2'000'000'000)}, 6), "<h6>h</h6>\n<h6>h</h6>\n");
}

TEST(HtmlText, ListsNest) {
  EXPECT_EQ(htmlOf({paragraph(Kind::kBullet, 1, "a"), paragraph(Kind::kBullet, 2, "b"),
                    paragraph(Kind::kBullet, 1, "c")}),
            "<ul><li>a<ul><li>b</li></ul></li><li>c</li></ul>\n");
  EXPECT_EQ(htmlOf({paragraph(Kind::kNumbered, 1, "a", 3), paragraph(Kind::kNumbered, 1, "b", 4),
                    paragraph(Kind::kBullet, 1, "c")}),
            "<ol start=\"3\"><li>a</li><li>b</li></ol>\n<ul><li>c</li></ul>\n");
  // A level that was left out has an item of its own.
  EXPECT_EQ(htmlOf({paragraph(Kind::kBullet, 2, "a")}), "<ul><li><ul><li>a</li></ul></li></ul>\n");
}

TEST(HtmlText, QuotesNestAndEndLists) {
  EXPECT_EQ(htmlOf({paragraph(Kind::kBullet, 1, "a"), paragraph(Kind::kQuote, 2, "q"),
                    paragraph(Kind::kQuote, 1, "r"), paragraph(Kind::kPlain, 0, "p")}),
            "<ul><li>a</li></ul>\n<blockquote><blockquote><p>q</p>\n</blockquote><p>r</p>\n"
            "</blockquote>\n<p>p</p>\n");
}

TEST(HtmlText, HostileDepthIsBounded) {
  const std::string html = htmlOf(
      {paragraph(Kind::kBullet, 2'000'000'000, "a"), paragraph(Kind::kQuote, 2'000'000'000, "b")});
  EXPECT_LT(html.size(), 2000U);
}

TEST(HtmlText, StylesBecomeElementsAndCheckedStyles) {
  TextStyle all;
  all.bold = all.italic = all.underlined = all.monospaced = true;
  EXPECT_EQ(htmlOf(TextRun{"x", all, ""}), "<strong><em><u><code>x</code></u></em></strong>");
  TextStyle looks;
  looks.font = "Noto Sans";
  looks.size = 12.5;
  looks.color = "#102030";
  EXPECT_EQ(htmlOf(TextRun{"x", looks, ""}),
            "<span class=\"ink\" style=\"color:#102030;font-family:&#39;Noto Sans&#39;;"
            "font-size:12.5pt;\">x</span>");
  TextStyle hostile;
  hostile.font = "x';background:url(//evil)";
  hostile.size = 1e9;
  hostile.color = "red;}</style>";
  EXPECT_EQ(htmlOf(TextRun{"x", hostile, ""}), "x");
}

TEST(HtmlText, LinksAreThoseThatAreSafe) {
  EXPECT_EQ(htmlOf(TextRun{"x", {}, "https://a/?b&c"}),
            "<a href=\"https://a/?b&amp;c\" rel=\"noopener noreferrer\">x</a>");
  EXPECT_EQ(htmlOf(TextRun{"x", {}, "javascript:alert(1)"}), "x");
}

}  // namespace
}  // namespace vornwout
