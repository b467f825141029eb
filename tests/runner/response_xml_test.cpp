#include "runner/response_xml.h"

#include <gtest/gtest.h>

namespace vornwout {
namespace {

TEST(ResponseXml, PlainSuccessHasNothingElse) {
  EXPECT_EQ(exportResponseXml({}), R"(<outputExportResponse success="true" errorCode="0"/>)");
}

TEST(ResponseXml, EverythingThatIsGivenIsAnAttribute) {
  ExportResponse response;
  response.success = false;
  response.errorCode = -7;
  response.name = "n";
  response.documentFile = "d";
  response.imageRoot = "r";
  response.imageFormat = "f";
  response.imageCount = 0;
  EXPECT_EQ(exportResponseXml(response),
            R"(<outputExportResponse success="false" errorCode="-7" name="n" documentFile="d" )"
            R"(imageRoot="r" imageFormat="f" imageCount="0"/>)");
}

TEST(ResponseXml, WarningsStandByCodeAndInTheirOrder) {
  ExportResponse response;
  response.warnings = {{{"b", "a"}, {}, {""}}};
  EXPECT_EQ(exportResponseXml(response),
            R"(<outputExportResponse success="true" errorCode="0"><warning code="0" name="b"/>)"
            R"(<warning code="0" name="a"/><warning code="2" name=""/></outputExportResponse>)");
}

TEST(ResponseXml, ValuesAreEscaped) {
  ExportResponse response;
  response.name = "<a> & \"b\" 'c'\t\n\r ü";
  EXPECT_EQ(exportResponseXml(response),
            "<outputExportResponse success=\"true\" errorCode=\"0\" name=\"&lt;a&gt; &amp; "
            "&quot;b&quot; 'c'&#9;&#10;&#13; ü\"/>");
}

TEST(ResponseXml, KnowsWhatXmlCannotHold) {
  for (const char* text : {"", "a\t\n\r", "\x7F", "ü日😀", "\xEF\xBF\xBD"}) {
    EXPECT_TRUE(isXmlText(text)) << testing::PrintToString(text);
  }
  for (const char* text : {"\x01", "a\x1F", "\xEF\xBF\xBE", "a\xEF\xBF\xBF"}) {
    EXPECT_FALSE(isXmlText(text)) << testing::PrintToString(text);
  }
}

}  // namespace
}  // namespace vornwout
