// Responses to an export: what is written, that it reads back, and what is refused.
#include "platform/exportspec/response_spec.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/encoding.h"
#include "tests/support/generated_export_specs.h"
#include "tests/support/schema_check.h"

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

TEST(ResponseXml, WhatXmlCannotHoldIsReplaced) {
  ExportResponse response;
  response.name =
      "a\x01"
      "b";
  EXPECT_EQ(exportResponseXml(response),
            "<outputExportResponse success=\"true\" errorCode=\"0\" name=\"a\xEF\xBF\xBD"
            "b\"/>");
}

TEST(ResponseSpec, PlainSuccessHasNothingElse) {
  ResponseSpec spec;
  ASSERT_TRUE(spec.processResponse(exportResponseXml({}))) << spec.getParserError();
  EXPECT_TRUE(spec.getSuccessCode());
  EXPECT_EQ(spec.getErrorCode(), 0);
  EXPECT_FALSE(spec.warningsFound());
  EXPECT_TRUE(spec.getWarnings(WARNING_CODE::LONG_ROW_LABEL).empty());
  EXPECT_EQ(spec.getName() + spec.getDocumentFile() + spec.getImageRoot() + spec.getImageFormat(),
            "");
  EXPECT_FALSE(spec.isImageCountPresent());
  EXPECT_EQ(spec.getImageCount(), 0);
  EXPECT_EQ(spec.getParserError(), "");
}

TEST(ResponseSpec, AnyResponseReadsBackAndIsValid) {
  std::vector<std::string> documents;
  for (unsigned int seed = 0; seed < 200; ++seed) {
    ExportSpecGenerator generator(seed);
    ExportResponse response;
    response.success = generator.chance();
    response.errorCode = generator.upTo(20) - 2;
    response.name = generator.text();
    response.documentFile = generator.text();
    response.imageRoot = generator.text();
    response.imageFormat = generator.text();
    if (generator.chance()) response.imageCount = generator.upTo(1000);
    for (auto& names : response.warnings) {
      for (int i = generator.upTo(3); i > 0; --i) names.push_back(generator.text());
    }
    documents.push_back(exportResponseXml(response));
    ResponseSpec spec;
    ASSERT_TRUE(spec.processResponse(documents.back())) << spec.getParserError();
    EXPECT_EQ(spec.getSuccessCode(), response.success);
    EXPECT_EQ(spec.getErrorCode(), response.errorCode);
    EXPECT_EQ(spec.getName(), response.name);
    EXPECT_EQ(spec.getDocumentFile(), response.documentFile);
    EXPECT_EQ(spec.getImageRoot(), response.imageRoot);
    EXPECT_EQ(spec.getImageFormat(), response.imageFormat);
    EXPECT_EQ(spec.isImageCountPresent(), response.imageCount.has_value());
    EXPECT_EQ(spec.getImageCount(), response.imageCount.value_or(0));
    bool anyWarning = false;
    for (std::size_t code = 0; code < kWarningCodes; ++code) {
      EXPECT_EQ(spec.getWarnings(static_cast<WARNING_CODE>(code)), response.warnings[code]);
      anyWarning = anyWarning || !response.warnings[code].empty();
    }
    EXPECT_EQ(spec.warningsFound(), anyWarning);
  }
  EXPECT_EQ(SchemaCheck("export-response.xsd").refusal(documents), "");
}

TEST(ResponseSpec, TextsComeInTheCurrentEncoding) {
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  ExportResponse response;
  response.name = "Caf\xC3\xA9";
  response.warnings[0] = {"\xC3\xA4"};
  ResponseSpec spec;
  ASSERT_TRUE(spec.processResponse(exportResponseXml(response)));
  EXPECT_EQ(spec.getName(), "Caf\xE9");
  EXPECT_EQ(spec.getWarnings(WARNING_CODE::LONG_ROW_LABEL), std::vector<std::string>{"\xE4"});
}

TEST(ResponseSpec, WhatIsNotValidIsRefusedAndSaysWhy) {
  const struct {
    const char* xml;
    const char* error;
  } cases[] = {
      {"<not xml", "line 1, column 9: equal sign expected"},
      {"<outputExport/>", "no declaration found for element 'outputExport'"},
      {"<outputExportResponse/>", "missing required attribute"},
      {"<outputExportResponse success='yes' errorCode='0'/>", "value 'yes'"},
      {"<outputExportResponse success='true' errorCode='x'/>", "value 'x'"},
      {"<outputExportResponse success='true' errorCode='99999999999'/>", "99999999999"},
      {"<outputExportResponse success='true' errorCode='0' imageCount='-1'/>", "value '-1'"},
      {"<outputExportResponse success='true' errorCode='0'><warning code='3' name='a'/>"
       "</outputExportResponse>",
       "value '3'"},
      {"<outputExportResponse success='true' errorCode='0'><warning code='1'/>"
       "</outputExportResponse>",
       "missing required attribute 'name'"},
  };
  for (const auto& c : cases) {
    ResponseSpec spec;
    EXPECT_FALSE(spec.processResponse(c.xml)) << c.xml;
    EXPECT_THAT(spec.getParserError(), testing::HasSubstr(c.error)) << c.xml;
    EXPECT_TRUE(spec.processResponse(exportResponseXml({}))) << "the next one is read";
    EXPECT_EQ(spec.getParserError(), "");
  }
}

TEST(ResponseSpec, NumbersMayHaveASignAndBlanks) {
  ResponseSpec spec;
  ASSERT_TRUE(spec.processResponse(
      "<outputExportResponse success='true' errorCode=' -2 ' imageCount=' +7 '/>"));
  EXPECT_EQ(spec.getErrorCode(), -2);
  EXPECT_EQ(spec.getImageCount(), 7);
}

}  // namespace
}  // namespace vornwout
