#include "host/store/xml_check.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "host/store/store_error.h"
#include "host/store/xml_writer.h"

namespace vornwout {
namespace {

/// The reason for which a document is refused; empty when it is none.
std::string refusal(const std::string& xml, std::size_t maxNodes = 100) {
  try {
    checkXml(xml, maxNodes);
    return {};
  } catch (const StoreError& error) {
    EXPECT_EQ(error.kind(), StoreError::Kind::kDamaged);
    return error.what();
  }
}

TEST(XmlCheck, WellFormedDocumentsPass) {
  const std::vector<std::string> cases = {
      "<a/>",
      "\xEF\xBB\xBF<?xml version='1.0'?>\n<!-- one - two --><?target data?><a b='\"' c = \">\" "
      "/>\n",
      "<a><b x='&lt;&#9;&#x10FFFF;&apos;'>]] > &amp; \" ' =</b ><![CDATA[<&]]></a>",
      "<a>\xE8\xA1\xA8 \xEF\xBF\xBD</a><!---->",
  };
  for (const std::string& xml : cases) EXPECT_EQ(refusal(xml), "") << xml;
}

TEST(XmlCheck, WhatAParserPassesOverIsRefused) {
  const std::string shape = "near line 1: it is no well-formed XML";
  const std::string outside = "near line 1: a text stands outside of its root element";
  const std::string nothing = "near line 1: a reference stands for nothing";
  const std::string character = "near line 1: it has a character that XML cannot hold";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"<a/>\n\n<b/>", "near line 3: it has a second root element"},
      {"<a/>garbage", outside},
      {"garbage<a/>", outside},
      {"<a/>&amp;", outside},
      {"<a/><![CDATA[]]>", outside},
      {"<a x='1' y='2' x='3'/>", "near line 1: an attribute stands twice"},
      {"<a x='a<b'/>", "near line 1: an attribute has a \"<\""},
      {"<a>]]></a>", "near line 1: a text has a \"]]>\""},
      {"<a x='&foo;'/>", nothing},
      {"<a>&foo;</a>", nothing},
      {"<a>& b</a>", nothing},
      {"<a>&#0;</a>", nothing},
      {"<a>&#xD800;</a>", nothing},
      {"<a>&#xFFFE;</a>", nothing},
      {"<a>&#x110000;</a>", nothing},
      {"<a>&#-1;</a>", nothing},
      {"<a>&#;</a>", nothing},
      {"<a>\x01</a>", character},
      {"<a x='\x02'/>", character},
      {"<a>\xEF\xBF\xBF</a>", character},
      {"<a><!--\x01--></a>", character},
      {"<a x='1'y='2'/>", shape},
      {"<a x=1/>", shape},
      {"<a x/>", shape},
      {"<a x='1", shape},
      {"<a", shape},
      {"< a/>", shape},
      {"<1/>", shape},
      {"</a>", shape},
      {"<a><!-- -- --></a>", shape},
      {"<a><![CDATA[</a>", shape},
      {" <?xml version='1.0'?><a/>", shape},
      {"<a/><?XML x?>", shape},
      {"<!DOCTYPE a><a/>", "it has a document type declaration"},
  };
  for (const auto& [xml, reason] : cases) EXPECT_EQ(refusal(xml), reason) << xml;
}

TEST(XmlCheck, ElementsAndAttributesAreCounted) {
  EXPECT_EQ(refusal("<a b='=' c='='>= = =<d/></a>", 4), "");
  EXPECT_EQ(refusal("<a b='=' c='='>= = =<d/></a>", 3), "it has too many elements");
  EXPECT_EQ(refusal("<a><!----><![CDATA[]]><?b?></a>", 4), "");
  EXPECT_EQ(refusal("<a><!----><![CDATA[]]><?b?></a>", 3), "it has too many elements");
  std::string many = "<a";
  for (int i = 0; i < 65; ++i) many += " a" + std::to_string(i) + "='x'";
  EXPECT_EQ(refusal(many + "/>"), "near line 1: it is no well-formed XML");
}

TEST(XmlCheck, WhatIsWrittenIsCountedAsItWillBeRead) {
  std::string out;
  XmlWriter xml(out);
  xml.start("a");
  xml.attribute("b", "<=\"");
  xml.start("c");
  xml.text("<=");
  xml.end("c");
  xml.end("a");
  EXPECT_EQ(xmlNodeCount(out), 3u);
  EXPECT_EQ(refusal(out, 3), "");
  EXPECT_NE(refusal(out, 2), "");
}

}  // namespace
}  // namespace vornwout
