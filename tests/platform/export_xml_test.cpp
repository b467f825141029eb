// Export documents: what is written, that it is valid, that it reads back, and what is refused.
#include "platform/exportspec/export_xml.h"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/exportspec/schema_reader.h"
#include "platform/text/encoding.h"
#include "tests/support/generated_export_specs.h"
#include "tests/support/schema_check.h"

namespace vornwout {
namespace {

using testing::HasSubstr;

std::string xmlOf(const ExportSpec& spec) {
  std::string xml = "what stood here before is gone";
  ExportXML().convertToXML(spec, xml);
  return xml;
}

/// The document of one option, without the root.
std::string written(const std::function<void(ExportSpec&)>& edit) {
  ExportSpec spec;
  edit(spec);
  const std::string xml = xmlOf(spec);
  const std::string start = "<outputExport>";
  const std::string end = "</outputExport>";
  if (!xml.starts_with(start) || !xml.ends_with(end)) return xml;
  return xml.substr(start.size(), xml.size() - start.size() - end.size());
}

TEST(ExportXml, NothingGivenIsAnEmptyRoot) {
  EXPECT_EQ(xmlOf(ExportSpec()), "<outputExport/>");
  EXPECT_TRUE(sameSpec(readExportXml("<outputExport/>"), ExportSpec()));
}

TEST(ExportXml, OnlyWhatIsPresentIsWritten) {
  EXPECT_EQ(written([](ExportSpec& spec) { spec.png.setDepth(ExportPNGSpec::DEPTH::SCREEN); }),
            "<outputExport/>");
  EXPECT_EQ(written([](ExportSpec& spec) {
              spec.png.setOptionPresent(true);
              spec.png.setDepth(ExportPNGSpec::DEPTH::SCREEN);
              spec.png.setOptionPresent(false);
            }),
            "<outputExport/>");
  EXPECT_EQ(written([](ExportSpec& spec) { spec.tif.setOptionPresent(true); }), "<tif/>");
  EXPECT_EQ(written([](ExportSpec& spec) {
              spec.contents.setOptionPresent(true);
              spec.contents.setModelViews(ExportContentsSpec::MODELVIEWS_TYPE::PRINTSETTING);
            }),
            "<contents modelViews=\"PRINTSETTING\"/>");
}

TEST(ExportXml, EverySettingHasItsAttribute) {
  struct Case {
    std::function<void(ExportSpec&)> edit;
    const char* xml;
  };
  using Contents = ExportContentsSpec;
  using Eps = ExportEPSSpec;
  std::string root = "r";
  const Case cases[] = {
      {[](ExportSpec& s) {
         s.global.setOptionPresent(true);
         s.global.setName("a");
       },
       "<global name=\"a\"/>"},
      {[](ExportSpec& s) {
         s.global.setOptionPresent(true);
         s.global.setPrintOption(ExportGlobalSpec::PRINT_OPTION::ERRORS);
       },
       "<global printOption=\"ERRORS\"/>"},
      {[](ExportSpec& s) {
         s.contents.setOptionPresent(true);
         s.contents.setExport(Contents::EXPORT_TYPE::VISIBLE);
       },
       "<contents export=\"VISIBLE\"/>"},
      {[](ExportSpec& s) {
         s.contents.setOptionPresent(true);
         s.contents.setLayers(Contents::LAYERS_TYPE::ALL);
       },
       "<contents layers=\"ALL\"/>"},
      {[](ExportSpec& s) {
         s.doc.setOptionPresent(true);
         s.doc.setDocumentFile("d");
         s.doc.setNotesAndCaptions(false);
         s.doc.setWideTables(WIDE_TABLES_TYPE::SHRINK);
         s.doc.setPageSizeWidth(MEASUREMENT_TYPE::INCHES, 8.5, "8.50");
         s.doc.setPageSizeHeight(MEASUREMENT_TYPE::MM, 11, "11");
         s.doc.setTopMargin(MEASUREMENT_TYPE::MM, 1, "1");
         s.doc.setBottomMargin(MEASUREMENT_TYPE::MM, 2, "2");
         s.doc.setLeftMargin(MEASUREMENT_TYPE::MM, 3, "3");
         s.doc.setRightMargin(MEASUREMENT_TYPE::MM, 4, "4");
         s.doc.setPageBreaks(true);
       },
       "<doc documentFile=\"d\" notesAndCaptions=\"false\" wideTables=\"SHRINK\" "
       "pageSizeWidth=\"8.50\" pageSizeWidthUnit=\"INCHES\" pageSizeHeight=\"11\" "
       "pageSizeHeightUnit=\"MM\" topMargin=\"1\" topMarginUnit=\"MM\" bottomMargin=\"2\" "
       "bottomMarginUnit=\"MM\" leftMargin=\"3\" leftMarginUnit=\"MM\" rightMargin=\"4\" "
       "rightMarginUnit=\"MM\" pageBreaks=\"true\"/>"},
      {[](ExportSpec& s) {
         s.html.setOptionPresent(true);
         s.html.setDocumentFile("h");
         s.html.setNotesAndCaptions(true);
         s.html.setImageFormat(ExportHTMLSpec::IMAGEFORMAT::BMP);
         s.html.setStyling(false);
         s.html.setInteractiveLayers(true);
       },
       "<html documentFile=\"h\" notesAndCaptions=\"true\" imageFormat=\"BMP\" "
       "styling=\"false\" interactiveLayers=\"true\"/>"},
      {[](ExportSpec& s) {
         s.report.setOptionPresent(true);
         s.report.setDocumentFile("r");
         s.report.setTitle("t");
         s.report.setMHT(true);
         s.report.restyle(false);
         s.report.excludeWarnings();
         s.report.addURL("u", "v");
         s.report.excludeTexts();
       },
       "<report documentFile=\"r\" title=\"t\" mht=\"true\" restyle=\"false\">"
       "<exclude type=\"WARNINGS\"/><link first=\"u\" second=\"v\"/><exclude type=\"TEXTS\"/>"
       "</report>"},
      {[](ExportSpec& s) {
         s.pdf.setOptionPresent(true);
         s.pdf.setDocumentFile("p");
         s.pdf.setEmbedBookmarks(false);
         s.pdf.setEmbedFonts(false);
       },
       "<pdf documentFile=\"p\" embedBookmarks=\"false\" embedFonts=\"false\"/>"},
      {[](ExportSpec& s) {
         s.ppt.setOptionPresent(true);
         s.ppt.setSlideTitles(false);
         s.ppt.setWideTables(WIDE_TABLES_TYPE::ASIS);
         s.ppt.setSlideSizeWidth(MEASUREMENT_TYPE::INCHES, 1, "1");
         s.ppt.setSlideSizeHeight(MEASUREMENT_TYPE::INCHES, 2, "2");
       },
       "<ppt slideTitles=\"false\" wideTables=\"ASIS\" slideSizeWidth=\"1\" "
       "slideSizeWidthUnit=\"INCHES\" slideSizeHeight=\"2\" slideSizeHeightUnit=\"INCHES\"/>"},
      {[](ExportSpec& s) {
         s.text.setOptionPresent(true);
         s.text.setDocumentFile("t");
         s.text.setEncoding(ExportTextSpec::ENCODING_TYPE::UTF16);
         s.text.setNotesAndCaptions(false);
         s.text.setColumnWidth(0, "0", true);
         s.text.setSeparator(ExportTextSpec::SEPARATOR_TYPE::TAB);
         s.text.setRowBorder('=');
         s.text.setColumnBorder("\xE2\x94\x82");
         s.text.setImageFormat(ExportTextSpec::IMAGEFORMAT::PNG);
       },
       "<text documentFile=\"t\" encoding=\"UTF16\" notesAndCaptions=\"false\" columnWidth=\"0\" "
       "columnWidthAutofit=\"true\" separator=\"TAB\" rowBorder=\"=\" "
       "columnBorder=\"\xE2\x94\x82\" imageFormat=\"PNG\"/>"},
      {[](ExportSpec& s) {
         s.xlsm.setOptionPresent(true);
         s.xlsm.setDocumentFile("x");
         s.xlsm.setOperation(ExportXLSSpec::OPERATION_TYPE::MODIFYSHEET);
         s.xlsm.setSheet("S");
         s.xlsm.setLocation(ExportXLSSpec::LOCATION_TYPE::STARTCELL);
         s.xlsm.setStartCell("B3");
         s.xlsm.setNotesAndCaptions(false);
       },
       "<xlsm documentFile=\"x\" operation=\"MODIFYSHEET\" sheet=\"S\" location=\"STARTCELL\" "
       "startCell=\"B3\" notesAndCaptions=\"false\"/>"},
      {[&](ExportSpec& s) {
         s.bmp.setOptionPresent(true);
         s.bmp.setImageRoot(root);
         s.bmp.setCompress(false);
         s.bmp.setPercentSize(200, "2E2");
       },
       "<bmp imageRoot=\"r\" compress=\"false\" percentSize=\"2E2\"/>"},
      {[&](ExportSpec& s) {
         s.emf.setOptionPresent(true);
         s.emf.setImageRoot(root);
         s.emf.setPercentSize(50, "50");
       },
       "<emf imageRoot=\"r\" percentSize=\"50\"/>"},
      {[&](ExportSpec& s) {
         s.eps.setOptionPresent(true);
         s.eps.setImageRoot(root);
         s.eps.setWidth(Eps::WIDTH_UNIT::CENTIMETERS, "7", 7);
         s.eps.setPreview(true);
         s.eps.setFontHandling(Eps::FONT_HANDLING::CURVES);
       },
       "<eps imageRoot=\"r\" width=\"7\" widthUnit=\"CENTIMETERS\" preview=\"true\" "
       "fontHandling=\"CURVES\"/>"},
      {[&](ExportSpec& s) {
         s.jpg.setOptionPresent(true);
         s.jpg.setGrayscale(true);
       },
       "<jpg grayscale=\"true\"/>"},
      {[&](ExportSpec& s) {
         s.png.setOptionPresent(true);
         s.png.setDepth(ExportPNGSpec::DEPTH::TRUE32BIT);
       },
       "<png depth=\"TRUE32BIT\"/>"},
  };
  const SchemaCheck schema("export-document.xsd");
  for (const Case& c : cases) {
    const std::string xml = written(c.edit);
    EXPECT_EQ(xml, c.xml);
    EXPECT_EQ(schema.refusal("<outputExport>" + xml + "</outputExport>"), "");
  }
}

TEST(ExportXml, OptionsStandInTheirOrder) {
  ExportSpec spec;
  std::string expected;
  ExportSpec::visit(spec, [&](std::string_view name, auto& option) {
    expected += std::string(name) + " ";
    option.setOptionPresent(true);
  });
  EXPECT_EQ(expected,
            "global contents doc html report pdf ppt text xls xlsx xlsm bmp emf eps jpg png tif ");
  EXPECT_EQ(xmlOf(spec),
            "<outputExport><global/><contents/><doc/><html/><report/><pdf/><ppt/><text/><xls/"
            "><xlsx/><xlsm/><bmp/>"
            "<emf/><eps/><jpg/><png/><tif/></outputExport>");
}

TEST(ExportXml, AnySpecificationReadsBackAndIsValid) {
  std::vector<std::string> documents;
  for (unsigned int seed = 0; seed < 500; ++seed) {
    const ExportSpec spec = ExportSpecGenerator(seed).spec();
    documents.push_back(xmlOf(spec));
    const ExportSpec read = readExportXml(documents.back());
    EXPECT_TRUE(sameSpec(read, spec)) << documents.back();
    EXPECT_EQ(xmlOf(read), documents.back());
  }
  EXPECT_EQ(SchemaCheck("export-document.xsd").refusal(documents), "");
}

TEST(ExportXml, TextsOfOtherEncodingsBecomeUtf8) {
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  EXPECT_EQ(written([](ExportSpec& s) {
              s.global.setOptionPresent(true);
              s.global.setName("Caf\xE9");
            }),
            "<global name=\"Caf\xC3\xA9\"/>");
}

TEST(ExportXml, WhatXmlCannotHoldIsReplaced) {
  for (const std::string& bad : {std::string("\0", 1), std::string("\x01"), std::string("\x1F"),
                                 std::string("\xFF"), std::string("\xEF\xBF\xBE")}) {
    EXPECT_EQ(written([&](ExportSpec& s) {
                s.global.setOptionPresent(true);
                s.global.setName("a" + bad + "b");
              }),
              "<global name=\"a\xEF\xBF\xBD"
              "b\"/>");
  }
}

TEST(ExportXml, DefaultsAreWhatTheDocumentsSay) {
  const ExportSpec spec;
  EXPECT_EQ(spec.global.getPrintOption(), ExportGlobalSpec::PRINT_OPTION::ALWAYS);
  EXPECT_EQ(spec.contents.getExport(), ExportContentsSpec::EXPORT_TYPE::VISIBLE);
  EXPECT_EQ(spec.contents.getLayers(), ExportContentsSpec::LAYERS_TYPE::PRINTSETTING);
  EXPECT_EQ(spec.contents.getModelViews(), ExportContentsSpec::MODELVIEWS_TYPE::PRINTSETTING);
  EXPECT_TRUE(spec.doc.getNotesAndCaptions());
  EXPECT_EQ(spec.doc.getWideTables(), WIDE_TABLES_TYPE::WRAP);
  EXPECT_FALSE(spec.doc.getPageSizeWidth());
  EXPECT_TRUE(spec.doc.getPageBreaks());
  EXPECT_FALSE(spec.html.getImageFormat());
  EXPECT_TRUE(spec.html.getStyling());
  EXPECT_FALSE(spec.html.getInteractiveLayers());
  EXPECT_FALSE(spec.report.getMHT());
  EXPECT_TRUE(spec.report.restyles());
  EXPECT_TRUE(spec.report.links().empty());
  EXPECT_TRUE(spec.pdf.getEmbedBookmarks());
  EXPECT_TRUE(spec.pdf.getEmbedFonts());
  EXPECT_TRUE(spec.ppt.getSlideTitles());
  EXPECT_EQ(spec.ppt.getWideTables(), WIDE_TABLES_TYPE::SHRINK);
  EXPECT_EQ(spec.text.getEncoding(), ExportTextSpec::ENCODING_TYPE::UTF8);
  EXPECT_FALSE(spec.text.getColumnWidth());
  EXPECT_EQ(spec.text.getSeparator(), ExportTextSpec::SEPARATOR_TYPE::SPACE);
  EXPECT_EQ(spec.text.getRowBorder(), "-");
  EXPECT_EQ(spec.text.getColumnBorder(), "|");
  EXPECT_EQ(spec.text.getImageFormat(), ExportTextSpec::IMAGEFORMAT::PNG);
  EXPECT_EQ(spec.xls.getOperation(), ExportXLSSpec::OPERATION_TYPE::CREATEFILE);
  EXPECT_EQ(spec.xls.getLocation(), ExportXLSSpec::LOCATION_TYPE::LASTCOLUMN);
  EXPECT_TRUE(spec.bmp.getCompress());
  EXPECT_EQ(spec.emf.getPercentSize(), 100);
  EXPECT_FALSE(spec.eps.getWidth());
  EXPECT_FALSE(spec.eps.getPreview());
  EXPECT_EQ(spec.eps.getFontHandling(), ExportEPSSpec::FONT_HANDLING::REFERENCES);
  EXPECT_FALSE(spec.jpg.getGrayscale());
  EXPECT_EQ(spec.png.getDepth(), ExportPNGSpec::DEPTH::SCREEN);
}

TEST(ExportXml, ColumnsHaveAWidthUnlessTheyFit) {
  ExportTextSpec text;
  text.setColumnWidth(12, "12", false);
  EXPECT_EQ(text.getColumnWidth(), 12);
  text.setColumnWidth(0, "0", true);
  EXPECT_FALSE(text.getColumnWidth());
}

TEST(ExportXml, WhatTheReportExcludesIsAnswered) {
  ExportReportSpec report;
  report.excludeLogs();
  report.addURL("a", "b");
  EXPECT_TRUE(report.excludes(ExportReportSpec::Excluded::LOGS));
  EXPECT_FALSE(report.excludes(ExportReportSpec::Excluded::TEXTS));
  EXPECT_EQ(report.links(), (std::vector<ExportReportSpec::Link>{{"a", "b"}}));
}

std::string refusal(const std::string& xml) {
  try {
    readExportXml(xml);
    return {};
  } catch (const XmlError& error) {
    return error.what();
  }
}

std::string nested(int depth) {
  std::string xml;
  for (int i = 0; i < depth; ++i) xml += "<outputExport>";
  for (int i = 0; i < depth; ++i) xml += "</outputExport>";
  return xml;
}

std::string wide(int attributes) {
  std::string xml = "<outputExport";
  for (int i = 0; i < attributes; ++i) xml += " a" + std::to_string(i) + "=\"\"";
  return xml + "/>";
}

TEST(ExportXml, WhatIsNotValidIsRefusedWithItsPlace) {
  struct Case {
    std::string xml;
    const char* refusal;
  };
  const Case cases[] = {
      {"", "line 1, column 1: invalid document structure"},
      {"<outputExport>", "line 1, column 15: input ended before all started tags were ended"},
      {"<a/>", "no declaration found for element 'a'"},
      {"<outputExport a='b'/>", "attribute 'a' is not declared for element 'outputExport'"},
      {"<outputExport>\n<png depth='DEEP'/></outputExport>", "line 2, column 20: value 'DEEP'"},
      {"<outputExport><tif/><png/></outputExport>", "element 'png' is not allowed"},
      {"<outputExport><png/><png/></outputExport>", "element 'png' is not allowed"},
      {"<outputExport>text</outputExport>", "no character data is allowed"},
      {"<outputExport/><outputExport/>", "line 1, column 16:"},
      {"<outputExport><global name='\xFF'/></outputExport>", "invalid byte"},
      {"<outputExport><global name='&x;'/></outputExport>", "entity 'x' not found"},
      {"<outputExport><bmp percentSize='x'/></outputExport>", "value 'x' does not match"},
      {"<outputExport><bmp percentSize='1e999'/></outputExport>",
       "percentSize is not a number that can be used"},
      {"<outputExport><doc topMargin='1'/></outputExport>", "topMargin has no topMarginUnit"},
      {"<!DOCTYPE outputExport><outputExport/>", "it has a document type declaration"},
      {"<!DOCTYPE a [<!ENTITY b SYSTEM 'file:///etc/passwd'>]><outputExport/>",
       "it has a document type declaration"},
      {"<outputExport><![CDATA[a]]></outputExport>", "a CDATA section"},
      {nested(17), "its elements stand too deep in each other"},
      {nested(100'000), "its elements stand too deep in each other"},
      {wide(65), "an element has too many attributes"},
      // A comment that ends later than it seems to.
      {"<!--><?-->" + wide(65), "an element has too many attributes"},
      {std::string(kMaxXmlBytes + 1, ' '), "it is larger than 4 MiB"},
  };
  for (const Case& c : cases) {
    EXPECT_THAT(refusal(c.xml), HasSubstr(c.refusal)) << c.xml.substr(0, 200);
  }
  EXPECT_EQ(refusal("<outputExport xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
                    "xsi:noNamespaceSchemaLocation='/nowhere.xsd'/>"),
            "")
      << "a place to fetch a schema from is passed over";
  EXPECT_EQ(refusal("<?xml version='1.0'?><!-- a > b --><outputExport/>"), "");
}

TEST(ExportXml, NumbersMayBeAsLongAsTheyLike) {
  const std::string number = "1." + std::string(1000, '0');
  const ExportSpec spec =
      readExportXml("<outputExport><bmp percentSize='" + number + "'/></outputExport>");
  EXPECT_EQ(spec.bmp.getPercentSize(), 1);
}

TEST(ExportXml, AfterARefusalTheNextDocumentIsRead) {
  EXPECT_NE(refusal("<outputExport><png"), "");
  EXPECT_EQ(refusal("<outputExport><png/></outputExport>"), "");
}

TEST(ExportXml, HostileDocumentsAreRefusedAtOnce) {
  std::string laughs = "<!DOCTYPE l [<!ENTITY a0 'ha'>";
  for (int i = 1; i < 40; ++i) {
    laughs += "<!ENTITY a" + std::to_string(i) + " '&a" + std::to_string(i - 1) + ";&a" +
              std::to_string(i - 1) + ";'>";
  }
  laughs += "]><outputExport>&a39;</outputExport>";
  for (const std::string& xml :
       {wide(300'000), wide(1'000'000), nested(100'000), laughs,
        "<outputExport name='" + std::string(3'000'000, 'a') + "'/>",
        "<outputExport>" + std::string(4'000'000, '<') + "</outputExport>"}) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_NE(refusal(xml), "");
    // A tenth of a second is what it may take; a sanitizer, or a busy machine, takes longer.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
  }
}

}  // namespace
}  // namespace vornwout
