#include "host/export/html/html_writer.h"

#include <string>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

TEST(HtmlWriter, EveryTextBecomesText) {
  const struct {
    std::string text;
    const char* html;
  } cases[] = {
      {"", ""},
      {"plain", "plain"},
      {"<script>alert(1)</script>", "&lt;script&gt;alert(1)&lt;/script&gt;"},
      {"a & b &amp; c", "a &amp; b &amp;amp; c"},
      {"\"' onload='x", "&quot;&#39; onload=&#39;x"},
      {"naïve 日本 😀", "naïve 日本 😀"},
      {"a\r\nb\rc\nd\te", "a\nb\nc\nd\te"},
      {std::string("a\0b", 3), "a\uFFFDb"},
      {"\x1b[2J\x7f", "\uFFFD[2J\uFFFD"},
      {"\xC2\x85\xC2\x9F", "\uFFFD\uFFFD"},
      {"\xEF\xBF\xBF\xEF\xB7\x90", "\uFFFD\uFFFD"},
      {"\xFF<\xC3", "\uFFFD&lt;\uFFFD"},
  };
  for (const auto& c : cases) EXPECT_EQ(escapedHtml(c.text), c.html);
}

TEST(HtmlWriter, LinksGoOnlyWhereAReaderMayBeSent) {
  for (const char* link :
       {"http://a", "https://a.example/b?c=d#e", "HTTPS://a", "mailto:a@b", "#o1"}) {
    EXPECT_TRUE(isSafeLink(link)) << link;
  }
  for (const char* link :
       {"", "javascript:alert(1)", "JAVASCRIPT:x", " https://a", "java\nscript:x",
        "data:text/html,x", "file:///etc/passwd", "//evil.example", "/a", "vbscript:x", "http://",
        "https://a b", "https://a\x01", "#"}) {
    EXPECT_FALSE(isSafeLink(link)) << link;
  }
}

TEST(HtmlWriter, StartTagsCloseBeforeWhateverFollows) {
  std::string out;
  HtmlWriter html(out);
  html.start("p");
  html.attribute("class", "a\"b");
  html.attribute("tabindex", 3);
  html.optionalAttribute("title", "");
  html.text("x<y");
  html.start("img");
  html.end("p");
  html.element("i", "t", "c");
  html.raw("<hr>");
  EXPECT_EQ(out, "<p class=\"a&quot;b\" tabindex=\"3\">x&lt;y<img></p><i class=\"c\">t</i><hr>");
}

TEST(HtmlWriter, ColoursAreHexadecimal) { EXPECT_EQ(htmlColor({0, 10, 255}), "#000aff"); }

}  // namespace
}  // namespace vornwout
