#include "platform/text/html_text.h"

#include <gtest/gtest.h>

namespace vornwout {
namespace {

TEST(HtmlText, ReferencesBecomeTheirCharactersOnce) {
  const struct {
    const char* text;
    const char* expected;
  } cases[] = {
      {"", ""},
      {"plain \xC3\xA4", "plain \xC3\xA4"},
      {"R&amp;D &lt;b&gt; &quot;c&quot; &apos;d&apos;", "R&D <b> \"c\" 'd'"},
      {"&amp;lt;", "&lt;"},
      {"&amp", "&amp"},
      {"&", "&"},
      {"&nbsp;&#65;", "&nbsp;&#65;"},
  };
  for (const auto& c : cases) EXPECT_EQ(unescapedHtml(c.text), c.expected) << c.text;
}

}  // namespace
}  // namespace vornwout
