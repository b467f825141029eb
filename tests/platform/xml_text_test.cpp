// Which texts XML can hold, and how they are written.
#include "platform/text/xml_text.h"

#include <string>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

TEST(XmlText, KnowsWhatXmlCannotHold) {
  for (const char* text : {"", "a\t\n\r", "\x7F", "ü日😀", "\xEF\xBF\xBD"}) {
    EXPECT_TRUE(isXmlText(text)) << testing::PrintToString(text);
  }
  for (const char* text : {"\x01", "a\x1F", "\xEF\xBF\xBE", "a\xEF\xBF\xBF"}) {
    EXPECT_FALSE(isXmlText(text)) << testing::PrintToString(text);
  }
}

TEST(XmlText, BlanksAreWrittenByNumberWhereAReaderWouldChangeThem) {
  std::string text;
  appendXmlEscaped(text, "<a> & \"b\"\t\n\r", false);
  EXPECT_EQ(text, "&lt;a&gt; &amp; \"b\"\t\n&#13;");
  std::string attribute;
  appendXmlAttribute(attribute, "n", "<a> & \"b\"\t\n\r");
  EXPECT_EQ(attribute, " n=\"&lt;a&gt; &amp; &quot;b&quot;&#9;&#10;&#13;\"");
}

}  // namespace
}  // namespace vornwout
