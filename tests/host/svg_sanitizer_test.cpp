#include "host/build/svg_sanitizer.h"

#include <string>

#include <gtest/gtest.h>

#include "host/build/css_filter.h"

namespace vornwout {
namespace {

const std::string kXmlns = "xmlns=\"http://www.w3.org/2000/svg\"";

/// A chart around the given elements.
std::string chart(const std::string& inside) { return "<svg " + kXmlns + ">" + inside + "</svg>"; }

/// The chart without what is not allowed, or why it is refused.
std::string cleaned(const std::string& svg) {
  try {
    return sanitizeSvg(svg);
  } catch (const SvgError& error) {
    return error.what();
  }
}

TEST(SvgSanitizer, HarmlessChartStaysAsItIs) {
  const char* insides[] = {
      "<rect x=\"1\" y=\"2\" fill=\"#fff\"/>",
      // One element of the list, of two lines.
      ("<defs><linearGradient id=\"a\"><stop offset=\"0\"/></linearGradient></defs>"
       "<rect fill=\"url(#a)\" style=\"stroke: url(#a); fill: red\"/>"),
      "<use href=\"#glyph\"/>",
      "<text xml:space=\"preserve\"> a &lt; b &amp; c </text>",
      "<style>.a { fill: red } .b::after { content: \"\\2022\" }</style>",
      "<image href=\"data:image/png;base64,iVBORw0KGgo=\"/>",
      "<image href=\"data:image/jpeg;base64,AA==\"/>",
      "<title>A &amp; B</title><desc>\xC3\xA4</desc>",
      "<circle r=\"1\"><animate attributeName=\"r\" values=\"1;2\" dur=\"1s\"/></circle>",
      "<g transform=\"translate(1 2) rotate(3)\" clip-path=\"url(#c)\" data-name=\"only\"/>",
      "<metadata><rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"/></metadata>",
      "<path d=\"M 1 2&#10;L 3 4\"/>",
  };
  for (const char* inside : insides) EXPECT_EQ(sanitizeSvg(chart(inside)), chart(inside));
}

TEST(SvgSanitizer, WhatRunsLoadsOrLeadsElsewhereIsTakenOut) {
  struct Case {
    const char* inside;
    const char* left;
  };
  const Case cases[] = {
      {"<script>alert(1)</script><g/>", "<g/>"},
      {"<SCRIPT>alert(1)</SCRIPT>", ""},
      {"<s:script xmlns:s=\"http://www.w3.org/2000/svg\">x</s:script>", ""},
      {"<h:script xmlns:h=\"http://www.w3.org/1999/xhtml\">x</h:script>", ""},
      {"<h:rect xmlns:h=\"http://www.w3.org/1999/xhtml\"/>", ""},
      {"<rect xmlns=\"http://www.w3.org/1999/xhtml\"/>", ""},
      {"<foreignObject><body xmlns=\"http://www.w3.org/1999/xhtml\"/></foreignObject>", ""},
      {"<iframe/><object/><embed/><video/><audio/><handler/><listener/>", ""},
      {"<g><script/><rect/></g>", "<g><rect/></g>"},
      {"<metadata><script/></metadata>", "<metadata/>"},
      {"<metadata><script xmlns=\"http://purl.org/dc/elements/1.1/\"/></metadata>", "<metadata/>"},
      {"<rect onclick=\"x()\" width=\"1\"/>", "<rect width=\"1\"/>"},
      {"<rect ONLOAD=\"x()\"/>", "<rect/>"},
      {"<rect onanything=\"x()\"/>", "<rect/>"},
      {"<rect e:onclick=\"x()\" xmlns:e=\"u\"/>", "<rect xmlns:e=\"u\"/>"},
      {"<a href=\"javascript:x()\"><rect/></a>", "<a><rect/></a>"},
      {"<a href=\" java&#10;script&#58;x()\"/>", "<a/>"},
      {"<a href=\"&#x6A;avascript:x()\"/>", "<a/>"},
      {"<a href=\"JaVaScRiPt:x()\"/>", "<a/>"},
      {"<a href=\"vbscript:x()\"/>", "<a/>"},
      {"<a href=\"data:text/html,x\"/>", "<a/>"},
      {"<a href=\"https://example.org/\"/>", "<a/>"},
      {"<a l:href=\"https://example.org/\" xmlns:l=\"http://www.w3.org/1999/xlink\"/>",
       "<a xmlns:l=\"http://www.w3.org/1999/xlink\"/>"},
      {"<use href=\"other.svg#a\"/>", "<use/>"},
      {"<use href=\"//example.org/#a\"/>", "<use/>"},
      {"<image href=\"http://example.org/a.png\"/>", "<image/>"},
      {"<image src=\"a.png\"/>", "<image/>"},
      {"<image href=\"data:image/svg+xml,x\"/>", "<image/>"},
      {"<image href=\"data:image/pngx;x\"/>", "<image/>"},
      {"<g xml:base=\"http://example.org/\"/>", "<g/>"},
      {"<rect fill=\"url(http://example.org/#a)\"/>", "<rect/>"},
      {"<rect fill=\"URL( 'http://example.org/#a' )\"/>", "<rect/>"},
      {"<rect fill=\"u\\72l(http://example.org/#a)\"/>", "<rect/>"},
      {"<rect mask=\"url(javascript:x)\"/>", "<rect/>"},
      {"<rect style=\"fill: url(http://example.org/#a); stroke: red\"/>",
       "<rect style=\"fill: none; stroke: red\"/>"},
      {"<rect style=\"background: u\\rl(http://example.org/)\"/>", "<rect/>"},
      {"<rect style=\"x: expression(y)\"/>", "<rect/>"},
      {"<style>@import url(http://example.org/a.css); .a { fill: red }</style>",
       "<style> .a { fill: red }</style>"},
      {"<style>@import 'a;b.css' screen;.a{}</style>", "<style>.a{}</style>"},
      {"<style>@im/**/port 'a'; @IMPORT 'b'; .a{}</style>", "<style>@im port 'a';  .a{}</style>"},
      {"<style>@\\69mport 'a';</style>", "<style/>"},
      {"<style>.a{background:url(\"http://example.org/\")}</style>",
       "<style>.a{background:none}</style>"},
      {"<style>.a{background:url(\"x)http\")}</style>", "<style/>"},
      {"<style>.a{background:image-set(\"a.png\" 1x)}</style>", "<style/>"},
      {"<style>.a{background:url(</style>", "<style/>"},
      {"<style>.a{}/* open</style>", "<style/>"},
      {"<style><![CDATA[.a > .b { fill: url(x) }]]></style>",
       "<style>.a &gt; .b { fill: none }</style>"},
      {"<style>@@import 'a';import 'b';</style>", "<style/>"},
      {"<style>.a{}<script/>.b{}</style>", "<style>.a{}.b{}</style>"},
      {"<a><set attributeName=\"href\" to=\"javascript:x()\"/></a>", "<a/>"},
      {"<a><animate attributeName=\"xlink:href\" values=\"javascript:x()\"/></a>", "<a/>"},
      {"<a><animate attributeName=\" hr&#9;ef\" to=\"#a\"/></a>", "<a/>"},
      {"<g><set attributeName=\"onclick\" to=\"x()\"/></g>", "<g/>"},
      {"<g><animate attributeName=\"fill\" values=\"red;url(http://example.org/#a)\"/></g>",
       "<g><animate attributeName=\"fill\"/></g>"},
      {"<?xml-stylesheet href=\"http://example.org/\"?><!-- x --><g/>", "<g/>"},
      {"<text><![CDATA[<script>]]></text>", "<text>&lt;script&gt;</text>"},
      {"<text a='\"&gt;&lt;script>'/>", "<text a=\"&quot;>&lt;script>\"/>"},
      {"<r\xC3\xA4"
       "ct/>",
       ""},
  };
  for (const Case& c : cases) {
    const std::string wanted =
        std::string(c.left).empty() ? "<svg " + kXmlns + "/>" : chart(c.left);
    const std::string once = cleaned(chart(c.inside));
    EXPECT_EQ(once, wanted) << c.inside;
    EXPECT_EQ(cleaned(once), once) << "a second time: " << c.inside;
  }
}

TEST(SvgSanitizer, WhatIsNoChartIsRefused) {
  struct Case {
    std::string svg;
    const char* reason;
  };
  const Case cases[] = {
      {"", "no single root"},
      {"no XML", "outside of its root"},
      {"<svg>", "no well-formed XML"},
      {"<svg></g>", "no well-formed XML"},
      {chart("<g></svg>"), "no well-formed XML"},
      {"<svg/><svg/>", "no single root"},
      {"<svg/>text", "outside of its root"},
      {"<html/>", "its root is another element"},
      {"<svg xmlns=\"http://www.w3.org/1999/xhtml\"/>", "its root is another element"},
      {"<x:svg xmlns:x=\"u\"/>", "its root is another element"},
      {"<!DOCTYPE svg [<!ENTITY a \"b\">]><svg/>", "declarations of its own"},
      {chart("<g a=\"1\" a=\"2\"/>"), "an attribute stands twice"},
      {chart("<text>&unknown;</text>"), "an entity that is not known"},
      {chart("<text>a & b</text>"), "an entity that is not known"},
      {chart("<text>&#0;</text>"), "an entity that is not known"},
      {chart("<text>&#xD800;</text>"), "an entity that is not known"},
      {chart("<text>&#x41</text>"), "an entity that is not known"},
      {chart("<text a=\"<\"/>"), "\"<\" stands in a value"},
      {chart("<text>]]></text>"), "\"]]>\" stands in a text"},
      {chart("<text>\x01</text>"), "a character that XML does not allow"},
      {chart("<text>\xEF\xBF\xBF</text>"), "a character that XML does not allow"},
      {chart("<text>\xE4</text>"), "a byte that is no character in UTF-8."},
      {"<?xml version=\"1.0\" encoding=\"none\"?><svg/>", "an encoding that is not known"},
  };
  for (const Case& c : cases) {
    EXPECT_NE(cleaned(c.svg).find(c.reason), std::string::npos) << c.svg << cleaned(c.svg);
  }
}

TEST(SvgSanitizer, DocumentTypeWithoutDeclarationsAndEncodingsAreTaken) {
  EXPECT_EQ(
      sanitizeSvg("\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE svg PUBLIC "
                  "\"-//W3C//DTD SVG 1.1//EN\" \"svg11.dtd\">\n<svg/>"),
      "<svg " + kXmlns + "/>");
  EXPECT_EQ(sanitizeSvg("<?xml version='1.0' encoding='iso-8859-1'?><svg><text>\xE4</text></svg>"),
            chart("<text>\xC3\xA4</text>"));
}

TEST(SvgSanitizer, DepthAndSizeAreBounded) {
  const auto nested = [](int depth) {
    std::string svg;
    for (int i = 2; i < depth; ++i) svg += "<g>";
    svg += "<g/>";
    for (int i = 2; i < depth; ++i) svg += "</g>";
    return chart(svg);
  };
  EXPECT_EQ(cleaned(nested(kMaxSvgDepth)), nested(kMaxSvgDepth));
  EXPECT_EQ(cleaned(nested(kMaxSvgDepth + 1)),
            "The chart's elements are nested more than 200 deep.");
  EXPECT_EQ(cleaned(nested(1000000)), "The chart's elements are nested more than 200 deep.");
  EXPECT_EQ(cleaned(chart(std::string(kMaxSvgBytes, ' '))), "The chart is larger than 64 MiB.");
}

TEST(CssFilter, InnerAddressesAreFragmentsAndPictures) {
  for (const char* inner : {"#a", " #a", "data:image/png;base64,AA", "DATA:image/GIF,x",
                            "data:image/webp;x", "data:image/jpeg,"}) {
    EXPECT_TRUE(isInnerAddress(inner)) << inner;
  }
  for (const char* outer : {"", "a#b", "http://a", "data:image/png", "data:image/svg+xml;x",
                            "data:text/html,x", "data:,x", "file:///etc/passwd", "\\#a"}) {
    EXPECT_FALSE(isInnerAddress(outer)) << outer;
  }
}

TEST(SvgSanitizer, AttributesAndNamespacesAreBounded) {
  const auto chart = [](const char* name, int count) {
    std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\"";
    for (int i = 0; i < count; ++i) svg += " " + std::string(name) + std::to_string(i) + "=\"x\"";
    return svg + "/>";
  };
  EXPECT_NO_THROW(sanitizeSvg(chart("data-a", 150)));
  EXPECT_THROW(sanitizeSvg(chart("data-a", 200)), SvgError);
  EXPECT_NO_THROW(sanitizeSvg(chart("xmlns:a", 99)));
  EXPECT_THROW(sanitizeSvg(chart("xmlns:a", 100)), SvgError);
}

TEST(SvgSanitizer, WhatIsCleanStaysAsItIs) {
  for (const char* inside :
       {"<a href='javascript:x'><![CDATA[]]></a>", "<text><![CDATA[a]]>b</text>",
        "<style><![CDATA[]]></style>", "<text>a<!-- b -->c</text>"}) {
    const std::string clean =
        sanitizeSvg("<svg xmlns=\"http://www.w3.org/2000/svg\">" + std::string(inside) + "</svg>");
    EXPECT_EQ(sanitizeSvg(clean), clean) << inside;
  }
}

}  // namespace
}  // namespace vornwout
