// The one way in which elements and attributes of the modify document are written.
#include "libvornwout/modify/xml/xml_element.h"

#include <limits>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

template <typename Value>
std::string attributeOf(const Value& value) {
  std::string document = "<a";
  appendAttribute(document, "n", value);
  return document;
}

TEST(XmlAttribute, IsABlankTheNameAndTheQuotedValue) {
  EXPECT_EQ(attributeOf(std::string("text")), "<a n=\"text\"");
  EXPECT_EQ(attributeOf(std::string_view("text")), "<a n=\"text\"");
  EXPECT_EQ(attributeOf("text"), "<a n=\"text\"") << "a constant is no bool";
  EXPECT_EQ(attributeOf(std::string()), "<a n=\"\"");
  EXPECT_EQ(attributeOf(true), "<a n=\"true\"");
  EXPECT_EQ(attributeOf(false), "<a n=\"false\"");
}

TEST(XmlAttribute, IsDeliberatelyNotEscaped) {
  EXPECT_EQ(attributeOf("a\"<&>'b"), "<a n=\"a\"<&>'b\"");
  EXPECT_EQ(attributeOf("&amp;"), "<a n=\"&amp;\"");
  EXPECT_EQ(attributeOf(std::string("a\0b", 3)), std::string("<a n=\"a\0b\"", 10));
}

TEST(XmlAttribute, WritesIntegersInPlainDecimal) {
  const struct {
    int value;
    const char* written;
  } cases[] = {{0, "<a n=\"0\""},
               {-1, "<a n=\"-1\""},
               {1000000, "<a n=\"1000000\""},
               {std::numeric_limits<int>::max(), "<a n=\"2147483647\""},
               {std::numeric_limits<int>::min(), "<a n=\"-2147483648\""}};
  for (const auto& test : cases) EXPECT_EQ(attributeOf(test.value), test.written);
}

TEST(XmlAttribute, WritesNumbersWithSixSignificantDigits) {
  const struct {
    double value;
    const char* written;
  } cases[] = {{10, "<a n=\"10\""},
               {10.5, "<a n=\"10.5\""},
               {0.1, "<a n=\"0.1\""},
               {85.0393701, "<a n=\"85.0394\""},
               {123456.4, "<a n=\"123456\""},
               {999999.5, "<a n=\"1e+06\""},
               {1234567, "<a n=\"1.23457e+06\""},
               {0.0001, "<a n=\"0.0001\""},
               {0.00001, "<a n=\"1e-05\""},
               {-2.5, "<a n=\"-2.5\""},
               {std::numeric_limits<double>::max(), "<a n=\"1.79769e+308\""},
               {std::numeric_limits<double>::denorm_min(), "<a n=\"4.94066e-324\""}};
  for (const auto& test : cases) EXPECT_EQ(attributeOf(test.value), test.written);
}

TEST(XmlElement, WithoutContentEndsItsStartTag) {
  std::string document = "<before/>";
  XmlElement element(document, "e");
  EXPECT_EQ(document, "<before/><e");
  element.attribute("n", 1);
  element.attribute("m", "t");
  element.end();
  EXPECT_EQ(document, "<before/><e n=\"1\" m=\"t\"/>");
}

TEST(XmlElement, WithContentHasAnEndTag) {
  std::string document;
  XmlElement element(document, "e");
  element.content("<x>");
  element.content("&");
  element.end();
  EXPECT_EQ(document, "<e><x>&</e>");
}

TEST(XmlElement, EndsItsStartTagOnceHoweverOftenContentBegins) {
  std::string document;
  XmlElement element(document, "e");
  element.beginContent();
  element.beginContent();
  EXPECT_EQ(document, "<e>");
  element.end();
  EXPECT_EQ(document, "<e></e>");
}

TEST(XmlElement, MayHaveEmptyContentWhichIsContent) {
  std::string document;
  XmlElement element(document, "e");
  element.content("");
  element.end();
  EXPECT_EQ(document, "<e></e>");
}

TEST(XmlElement, HasRoomForOthersInsideIt) {
  std::string document;
  XmlElement outer(document, "o");
  outer.beginContent();
  XmlElement inner(outer.document(), "i");
  inner.end();
  appendTextElement(document, "t", "a<b");
  outer.end();
  EXPECT_EQ(document, "<o><i/><t>a<b</t></o>");
}

}  // namespace
}  // namespace vornwout
