// What content_writer.h writes and content_reader.h reads.
#include <limits>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/store/content_reader.h"
#include "host/store/content_writer.h"
#include "host/store/store_error.h"
#include "host/store/xml_reader.h"
#include "tests/support/generated_documents.h"
#include "tests/support/pivot_tables.h"

namespace vornwout {
namespace {

std::string written(const ObjectContent& content) {
  std::string out;
  XmlWriter xml(out);
  writeContent(xml, 7, content);
  return out;
}

ObjectContent read(std::string bytes) {
  pugi::xml_document xml;
  parseXml(bytes, xml);
  return readContent(xml.document_element());
}

/// The reason for which a content is refused; empty when it is read.
std::string refusal(const std::string& bytes) {
  try {
    read(bytes);
    return {};
  } catch (const StoreError& error) {
    EXPECT_EQ(error.kind(), StoreError::Kind::kDamaged);
    return error.what();
  }
}

TEST(ContentXml, AnyContentComesBackAsItWas) {
  for (unsigned int seed = 0; seed < 2000; ++seed) {
    DocumentGenerator generator(seed);
    const DocumentObject object = generator.object();
    const ObjectContent& content = object.content.get();
    const std::string xml = written(content);
    EXPECT_TRUE(sameContent(read(xml), content)) << "seed " << seed << "\n" << xml;
  }
}

TEST(ContentXml, AUsualCellIsOneElementWithItsValue) {
  PivotTable table;
  table.dimensions = {makeDimension("Region", PivotPlace::kRows, 1, {"North", "South"})};
  CellText value = numberCell(12.5);
  value.format.display = parseDisplayFormat("F8.1");
  addCell(table, {1}, value);
  addCell(table, {0}, textCell("a < b"));
  EXPECT_EQ(written(std::make_shared<const PivotTable>(table)),
            "<table object=\"7\" cells=\"2\">\n<title/><subtype/>\n"
            "<dimension place=\"rows\" index=\"1\">\n<label>Region</label>\n"
            "<category>North</category>\n<category>South</category>\n</dimension>\n"
            "<cell at=\"1\" format=\"F8.1\" value=\"12.5\"/>\n"
            "<cell at=\"0\">a &lt; b</cell>\n</table>");
}

TextLook everyLook() { return {"red", "#00ff00", false, true, false, "DejaVu Sans", 12.5}; }

TEST(ContentXml, LooksAreAttributesAndFalseIsOneToo) {
  constexpr const char* kAll =
      " color=\"red\" background=\"#00ff00\" bold=\"false\" italic=\"true\" underlined=\"false\""
      " font=\"DejaVu Sans\" size=\"12.5\"";
  PivotTable table;
  table.title = textCell("T");
  table.titleLook = table.captionLook = table.footnoteLook = everyLook();
  table.summary = "S";
  table.dimensions = {makeDimension("R", PivotPlace::kLayers, 1, {"a", "b"})};
  table.dimensions[0].shownLeaf = 1;
  table.dimensions[0].categories[1].look = everyLook();
  table.dimensions[0].categories[1].width = 72;
  addCell(table, {1}, numberCell(1)).look = everyLook();
  const std::string all = kAll;
  EXPECT_EQ(written(std::make_shared<const PivotTable>(table)),
            "<table object=\"7\" cells=\"1\">\n<title" + all + ">T</title><subtype/><caption" +
                all + "/><summary>S</summary><footnote-look" + all +
                "/>\n<dimension place=\"layers\" index=\"1\" shown=\"1\">\n<label>R</label>\n"
                "<category>a</category>\n<category width=\"72\"" +
                all + ">b</category>\n</dimension>\n<cell at=\"1\"" + all +
                " value=\"1\"/>\n</table>");
}

TEST(ContentXml, WhatNoReaderTakesIsNotWritten) {
  PivotTable table;
  table.dimensions = {makeDimension("R", PivotPlace::kLayers, 1, {"a", "b"})};
  table.dimensions[0].shownLeaf = 2;
  table.dimensions[0].categories[0].width = 2001;
  table.dimensions[0].categories[1].width = -1;
  table.titleLook.edit([](TextLook& look) { look.size = 1000.5; });
  table.captionLook.edit([](TextLook& look) { look.size = -1; });
  const auto back =
      std::get<TableContent>(read(written(std::make_shared<const PivotTable>(table))));
  EXPECT_EQ(back->dimensions[0].shownLeaf, -1);
  EXPECT_EQ(back->dimensions[0].categories[0].width, 2000);
  EXPECT_EQ(back->dimensions[0].categories[1].width, 0);
  EXPECT_EQ(back->titleLook->size, 1000);
  EXPECT_TRUE(back->captionLook.empty());
}

TEST(ContentXml, LooksThatTakeTurnsAreSharedAndNoneIsMixedUp) {
  std::string xml = "<table><dimension><label/>";
  constexpr std::size_t kCells = 60;
  for (std::size_t i = 0; i < kCells; ++i) xml += "<category/>";
  xml += "</dimension>";
  // Three looks in turn, then more than are remembered.
  const auto sizeAt = [](std::size_t i) { return 1 + (i < 30 ? i % 3 : i % 13); };
  for (std::size_t i = 0; i < kCells; ++i) {
    const std::string at = std::to_string(i);
    xml += "<cell at='" + at + "' size='" + std::to_string(sizeAt(i)) + "'/>";
  }
  const TableContent table = std::get<TableContent>(read(xml + "</table>"));
  for (std::size_t i = 0; i < kCells; ++i) {
    EXPECT_EQ(table->cells[i].look->size, static_cast<double>(sizeAt(i))) << i;
    if (i >= 3 && i < 30) {
      EXPECT_EQ(&table->cells[i].look.get(), &table->cells[i - 3].look.get()) << i;
    }
  }
}

TEST(ContentXml, CellsThatLookLikeTheOneBeforeShareItsLook) {
  const std::string xml =
      "<table><dimension><label/>"
      "<category/><category/><category/><category/><category/><category/></dimension>"
      "<cell at='0' bold='true' color='red'/><cell at='1' bold='true' color='red'/><cell at='2'/>"
      "<cell at='3' bold='true' color='red'/><cell at='4' bold='true' color='blue'/>"
      "<cell at='5' bold='true'/></table>";
  const TableContent table = std::get<TableContent>(read(xml));
  const auto look = [&](std::size_t cell) { return &table->cells.at(cell).look.get(); };
  EXPECT_EQ(look(0), look(1));
  EXPECT_TRUE(table->cells[2].look.empty());
  EXPECT_EQ(look(0), look(3)) << "a cell without a look between them";
  EXPECT_EQ(look(0)->textColor, "red");
  EXPECT_EQ(look(4)->textColor, "blue");
  EXPECT_EQ(look(5)->textColor, "");
  EXPECT_EQ(look(5)->bold, true);
}

TEST(ContentXml, NumbersThatAreNoneHaveTheirNamesOfXmlSchema) {
  NotesContent notes;
  notes.entries = {{numberCell(std::numeric_limits<double>::infinity()),
                    numberCell(-std::numeric_limits<double>::infinity())},
                   {numberCell(std::numeric_limits<double>::quiet_NaN()), textCell("")}};
  const std::string xml = written(notes);
  EXPECT_THAT(xml, testing::HasSubstr("<label value=\"INF\"/><value value=\"-INF\"/>"));
  const auto back = std::get<NotesContent>(read(xml));
  EXPECT_TRUE(std::isnan(back.entries.at(1).label.number));
}

TEST(ContentXml, SecretsAreNotWritten) {
  CellText secret = textCell("s3cret");
  secret.secret = true;
  CellText message;
  message.kind = CellText::Kind::kComposite;
  message.text = "^1";
  message.arguments = {secret};
  const std::string xml = written(NotesContent{{{secret, message}}});
  EXPECT_THAT(xml, testing::Not(testing::HasSubstr("s3cret")));
  EXPECT_THAT(xml, testing::HasSubstr("<label>***</label>"));
}

TEST(ContentXml, TextsThatXmlCannotHoldAreBase64) {
  EXPECT_EQ(written(LogContent{"\x01"}), "<log object=\"7\" encoding=\"base64\">AQ==</log>");
  EXPECT_EQ(written(LogContent{"a\r\n"}), "<log object=\"7\">a&#13;\n</log>");
  EXPECT_EQ(written(LogContent{" "}), "<log object=\"7\"> </log>");
  TextContent text;
  text.paragraphs = {{TextParagraph::Kind::kPlain, 0, 0, {{"x", {}, "\x02\xff"}}}};
  EXPECT_THAT(written(text), testing::HasSubstr("<run link-base64=\"Av8=\">x</run>"));
}

TEST(ContentXml, WhatIsNoContentIsRefusedWithTheElement) {
  const std::string d = "<dimension><label/><category>a</category></dimension>";
  const auto size = [](const std::string& element) {
    return element + ": its size is not above 0 and at most 1,000 points";
  };
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"<nothing/>", "nothing: no content has this name"},
      {"<table><dog/></table>", "table: it holds an element dog"},
      {"<table>" + d + "<cell at='1' value='1'/></table>",
       "cell: it does not stand in one category of every dimension"},
      {"<table>" + d + "<cell at='' value='1'/></table>",
       "cell: it does not stand in one category of every dimension"},
      {"<table>" + d + "<cell at='-1' value='1'/></table>",
       "cell: it does not stand in one category of every dimension"},
      {"<table>" + d + "<cell at='0 0' value='1'/></table>",
       "cell: it stands in more dimensions than the table has"},
      {"<table>" + d + "<cell at='0' value='one'/></table>", "cell: a value is not a number"},
      {"<table>" + d + "<cell at='0' value='nan'/></table>", "cell: a value is not a number"},
      {"<table>" + d + "<cell at='0' value='1e999'/></table>", "cell: a value is not a number"},
      {"<table>" + d + "<cell at='0' value=''/></table>", "cell: a value is not a number"},
      {"<table>" + d + "<cell at='0' value='1' format='Q9'/></table>",
       "cell: Q9 is no display format"},
      {"<table>" + d + "<cell at='0' bold='yes'/></table>",
       "cell: its bold is neither true nor false"},
      {"<table>" + d + "<cell at='0'><content/><dog/></cell></table>",
       "cell: it holds an element dog"},
      {"<table>" + d + "<cell at='0'/>" + d + "</table>",
       "table: a dimension stands behind a cell"},
      {"<table><dimension><dog/></dimension></table>", "dimension: it holds an element dog"},
      {"<table><dimension><category parent='0'/></dimension></table>",
       "category: a number is not an integer, or out of bounds"},
      {"<table><dimension><category/><category parent='0'/></dimension></table>",
       "category: its parent is no group"},
      {"<table><dimension><category statistic='x'/></dimension></table>",
       "category: its statistic is unknown"},
      {"<table>" + d + "<cell at='0' size='0'/></table>", size("cell")},
      {"<table>" + d + "<cell at='0' size='-1'/></table>", size("cell")},
      {"<table>" + d + "<cell at='0' size='1000.5'/></table>", size("cell")},
      {"<table>" + d + "<cell at='0' size='NaN'/></table>", size("cell")},
      {"<table>" + d + "<cell at='0' size='INF'/></table>", size("cell")},
      {"<table>" + d + "<cell at='0' size='12pt'/></table>", "cell: a value is not a number"},
      {"<table>" + d + "<cell at='0' italic='2'/></table>",
       "cell: its italic is neither true nor false"},
      {"<table>" + d + "<cell at='0' font-base64='A'/></table>", "cell: its base64 is not whole"},
      {"<table><title size='0'/></table>", size("title")},
      {"<table><caption size='0'/></table>", size("caption")},
      {"<table><footnote-look size='0'/></table>", size("footnote-look")},
      {"<table><footnote-look/><footnote-look/></table>", "footnote-look: it stands twice"},
      {"<table><footnote-look>x</footnote-look></table>",
       "footnote-look: it holds a text where none may stand"},
      {"<table><summary/><summary/></table>", "summary: it stands twice"},
      {"<table><summary><b/></summary></table>", "summary: it holds an element b"},
      {"<table><dimension><category size='0'/></dimension></table>", size("category")},
      {"<table><dimension><group underlined=''/></dimension></table>",
       "group: its underlined is neither true nor false"},
      {"<table><dimension><category width='-1'/></dimension></table>",
       "category: a number is not an integer, or out of bounds"},
      {"<table><dimension><category width='2001'/></dimension></table>",
       "category: a number is not an integer, or out of bounds"},
      {"<table><dimension shown='-1'><category/></dimension></table>",
       "dimension: a number is not an integer, or out of bounds"},
      {"<table><dimension shown='1'><group/><category/></dimension></table>",
       "dimension: a number is not an integer, or out of bounds"},
      {"<table><dimension shown='0'><group/></dimension></table>",
       "dimension: a number is not an integer, or out of bounds"},
      {"<table><dimension place='x'/></table>",
       "dimension: a number is not an integer, or out of bounds"},
      {"<table cells='-1'/>", "table: a number is not an integer, or out of bounds"},
      {"<table min-column-width='99999999999'/>",
       "table: a number is not an integer, or out of bounds"},
      {"<notes><dog/></notes>", "notes: it holds an element dog"},
      {"<message severity='dog'/>", "message: its severity is unknown"},
      {"<message/>", "message: its severity is unknown"},
      {"<message severity='error' line='-1'/>",
       "message: a number is not an integer, or out of bounds"},
      {"<text><dog/></text>", "text: it holds an element dog"},
      {"<text><paragraph kind='dog'/></text>", "paragraph: its kind is unknown"},
      {"<text><paragraph><dog/></paragraph></text>", "paragraph: it holds an element dog"},
      {"<log encoding='rot13'>x</log>", "log: its encoding is unknown"},
      {"<log encoding='base64'>AQ=</log>", "log: its base64 is not whole"},
      {"<log encoding='base64'>A?==</log>", "log: its base64 has other characters"},
      {"<log encoding='base64'>=AAA</log>", "log: its base64 has other characters"},
      {"<table>" + d + "<cell at='0'/><cell at='0'/></table>",
       "table: two cells stand in one place"},
      {"<table><cell at=''/><cell at=''/></table>", "table: two cells stand in one place"},
      {"<table>" + d + "<cell at='-0'/></table>",
       "cell: it does not stand in one category of every dimension"},
      {"<table>" + d + d + "<cell at='0-0'/></table>",
       "cell: it does not stand in one category of every dimension"},
      {"<table><title/><title/></table>", "title: it stands twice"},
      {"<table><subtype/><title/><subtype/></table>", "subtype: it stands twice"},
      {"<table><caption/><caption/></table>", "caption: it stands twice"},
      {"<table><dimension><label/><label/></dimension></table>", "label: it stands twice"},
      {"<table><title kind='composite'><template/><template/></title></table>",
       "template: it stands twice"},
      {"<table><title kind='dog'/></table>", "title: its kind is unknown"},
      {"<notes><note><value/><value/></note></notes>", "value: it stands twice"},
      {"<notes><note><dog/></note></notes>", "note: it holds an element dog"},
      {"<notes>text</notes>", "notes: it holds a text where none may stand"},
      {"<table>text</table>", "table: it holds a text where none may stand"},
      {"<table><title kind='composite'>text<template/></title></table>",
       "title: it holds a text where none may stand"},
      {"<table>" + d + "<cell at='0' value='1'>text too</cell></table>",
       "cell: it holds a text where none may stand"},
      {"<table>" + d + "<cell at='0' value='1'><content/></cell></table>",
       "cell: it has a value beside its content"},
      {"<table>" + d + "<cell at='0'><content/>text</cell></table>",
       "cell: it holds a text where none may stand"},
      {"<text><paragraph><run>x<b>bold</b>y</run></paragraph></text>",
       "run: it holds an element b"},
      {"<log><b>bold</b></log>", "log: it holds an element b"},
      {"<text><paragraph>x<run/></paragraph></text>",
       "paragraph: it holds a text where none may stand"},
      {"<notes><note><label kind='composite'><dog/></label></note></notes>",
       "label: it holds an element dog"},
  };
  for (const auto& [xml, reason] : cases) EXPECT_EQ(refusal(xml), reason) << xml;
}

TEST(ContentXml, CellsInAnyOrderHaveAPlaceEach) {
  const std::string two = "<dimension><label/><category/><category/></dimension>";
  // Places that 64 bits count, and places that they do not.
  for (const int dimensions : {2, 70}) {
    std::string start = "<table>";
    std::string first;
    for (int i = 0; i < dimensions; ++i) start += two;
    for (int i = 1; i < dimensions; ++i) first += "0 ";
    const auto cells = [&](const std::string& lasts) {
      std::string all = start;
      for (const char last : lasts) all += "<cell at='" + first + last + "'/>";
      return all + "</table>";
    };
    EXPECT_EQ(refusal(cells("01")), "");
    EXPECT_EQ(refusal(cells("10")), "");
    EXPECT_EQ(refusal(cells("101")), "table: two cells stand in one place") << dimensions;
    EXPECT_EQ(refusal(cells("100")), "table: two cells stand in one place") << dimensions;
  }
}

TEST(ContentXml, ATextIsWholeWhateverPartsIt) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"Profit<!-- n --> fell<![CDATA[ & rose]]> again", "Profit fell & rose again"},
      {"a<!-- n --> <![CDATA[b]]>", "a b"},
      {" <?x y?> ", "  "},
      {"<![CDATA[ ]]>", " "},
      {"<!---->", ""},
      {"a\r\nb\rc\n<![CDATA[\r\n]]>&#13;\n", "a\nb\nc\n\n\r\n"},
  };
  for (const auto& [xml, text] : cases) {
    EXPECT_EQ(std::get<LogContent>(read("<?xml version='1.0'?>\n<log>" + xml + "</log>")).text,
              text)
        << xml;
  }
  EXPECT_EQ(
      std::get<LogContent>(read("<log encoding='base64'>\nQU\r\n<!-- n -->\tJ D </log>")).text,
      "ABC");
  // The blanks between elements are no texts, also where a comment stands among them.
  const auto text = std::get<TextContent>(
      read("<text>\n<!-- n -->\n<paragraph>\n<run>a</run> <run>b</run>\n</paragraph>\n</text>"));
  ASSERT_EQ(text.paragraphs.size(), 1u);
  EXPECT_EQ(text.paragraphs[0].runs.size(), 2u);
  EXPECT_EQ(std::get<MediaContent>(read("<media type='a\r\nb&#10;'/>")).mediaType, "a b\n");
}

TEST(ContentXml, BlanksInPlaceOfElementsAreNothing) {
  for (const char* xml :
       {"<table> </table>", "<notes>\n</notes>", "<text>\n</text>",
        "<text><paragraph> </paragraph></text>", "<table><title value='1'> </title></table>"}) {
    EXPECT_EQ(refusal(xml), "") << xml;
  }
}

TEST(ContentXml, ArgumentsWithinArgumentsHaveAnEnd) {
  std::string open;
  std::string close;
  for (int i = 0; i < 40; ++i) {
    open += "<argument kind='composite'>";
    close += "</argument>";
  }
  EXPECT_EQ(
      refusal("<notes><note><label kind='composite'>" + open + close + "</label></note></notes>"),
      "argument: its arguments are nested too deeply");
}

TEST(ParseXml, RefusesWhatIsNotWellFormedWithItsLine) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"<log>\n\n</lag>", "near line 3: start-end tags mismatch"},
      {"<log>\n\xC3(</log>", "line 2 is not valid UTF-8"},
      {"<!DOCTYPE log [<!ENTITY a \"aaaa\">]><log>&a;</log>", "it has a document type declaration"},
      {"", "near line 1: no document element found"},
  };
  for (const auto& [xml, reason] : cases) EXPECT_EQ(refusal(xml), reason) << xml;
}

TEST(ParseXml, RefusesMoreElementsThanMemoryShouldHold) {
  std::string xml = "<text>";
  for (std::size_t i = 0; i < kMaxXmlNodes; ++i) xml += "<a>";
  EXPECT_EQ(refusal(xml), "it has too many elements");
}

}  // namespace
}  // namespace vornwout
