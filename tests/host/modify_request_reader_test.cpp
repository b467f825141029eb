// Reading the modify document.
#include "host/changes/modify_request_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/changes/change_notes.h"
#include "platform/text/display_width.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string inRoot(const std::string& events) {
  return "<modifyOutputObject documentName=\"*\">" + events + "</modifyOutputObject>";
}

ModifyEvent eventOf(const std::string& content, const std::string& attributes = "") {
  return readModifyRequest(inRoot("<modifyEvent" + attributes + ">" + content + "</modifyEvent>"))
      .events.at(0);
}

std::string refusalOf(const std::string& xml) {
  try {
    readModifyRequest(xml);
  } catch (const ChangeError& error) {
    return error.what();
  }
  return "accepted";
}

bool has(const ModifyEvent& event, ObjectType type) {
  return event.types[static_cast<std::size_t>(type)];
}

TEST(ModifyRequestReader, TheRootNamesTheDocument) {
  EXPECT_EQ(readModifyRequest("<modifyOutputObject documentName=\"\"/>").documentName, "");
  EXPECT_EQ(readModifyRequest("<modifyOutputObject documentName=\"a &amp; b\" debug=\"true\"/>")
                .documentName,
            "a & b");
  EXPECT_THAT(readModifyRequest(inRoot("")).events, IsEmpty());
  EXPECT_EQ(readModifyRequest(inRoot("<modifyEvent></modifyEvent><modifyEvent/>")).events.size(),
            2U);
}

TEST(ModifyRequestReader, TypesAreSelectedAndExcepted) {
  const ModifyEvent some = eventOf("", " charts=\"true\" pagetitles=\"true\"");
  EXPECT_TRUE(has(some, ObjectType::kChart));
  EXPECT_TRUE(has(some, ObjectType::kPageTitle));
  EXPECT_FALSE(has(some, ObjectType::kTable));
  const ModifyEvent all = eventOf(
      "", " all=\"true\" tables=\"false\" logs=\"false\" tables=\"false\" visibleOnly=\"true\"");
  EXPECT_FALSE(has(all, ObjectType::kTable));
  EXPECT_FALSE(has(all, ObjectType::kLog));
  EXPECT_TRUE(has(all, ObjectType::kTree));
  EXPECT_TRUE(all.conditions.visibleOnly);
  EXPECT_EQ(eventOf("").types, ObjectTypes{});
  // Both names of headings mean the same objects.
  EXPECT_EQ(eventOf("", " outlineheaders=\"true\"").types, eventOf("", " headings=\"true\"").types);
}

TEST(ModifyRequestReader, ConditionsAreReadInTheirOrder) {
  const ModifyEvent event = eventOf(
      "<command commandName=\"Means\" instance=\"2\"/><command  last=\"true\"/><command />"
      "<subtype subtype=\"R&D <old>\"/><label expression=\"a\" begins=\"true\"/>"
      "<label expression=\"b\" exact=\"true\"/><label expression=\"c\" ends=\"true\"/>"
      "<label expression=\"d\" contains=\"true\"/><instance instance=\"3\"/>"
      "<instance last=\"true\"/>");
  ASSERT_EQ(event.conditions.commands.size(), 3U);
  EXPECT_EQ(event.conditions.commands[0].name, "Means");
  EXPECT_EQ(event.conditions.commands[0].run, 2);
  EXPECT_FALSE(event.conditions.commands[0].isLast);
  EXPECT_EQ(event.conditions.commands[1].name, "");
  EXPECT_TRUE(event.conditions.commands[1].isLast);
  EXPECT_EQ(event.conditions.commands[2].run, 0);
  // What the writers leave unescaped is text.
  EXPECT_THAT(event.conditions.subtypes, ElementsAre("R&D <old>"));
  ASSERT_EQ(event.conditions.labels.size(), 4U);
  EXPECT_EQ(event.conditions.labels[0].match, LabelCondition::Match::kBegins);
  EXPECT_EQ(event.conditions.labels[1].match, LabelCondition::Match::kExact);
  EXPECT_EQ(event.conditions.labels[2].match, LabelCondition::Match::kEnds);
  EXPECT_EQ(event.conditions.labels[3].match, LabelCondition::Match::kContains);
  EXPECT_EQ(event.conditions.labels[3].text, "d");
  EXPECT_THAT(event.conditions.instances, ElementsAre(3, 0));
}

TEST(ModifyRequestReader, ChangesOfObjectsAreRead) {
  const ModifyEvent event = eventOf(
      "<indexObject type=\"romanCap\" indexStart=\"510\"/><deleteObject/>"
      "<modifyGraph styleSheet=\"calm\"><chartTemplate><template a=\"1\"/></chartTemplate>"
      "<chartTemplate><template b='\"&lt;&#233;'>x &amp; y</template></chartTemplate></modifyGraph>"
      "<objectProperties visible=\"no\" sizeWidth=\"85.0394\" sizeHeightPCT=\"50\" "
      "label=\"x &lt; y\"/>"
      "<modifyText expression=\"t\" fontFamily=\"Noto Sans\" textRed=\"255\" textGreen=\"0\" "
      "textBlue=\"9\" fontSize=\"10.5\" fontBold=\"true\" fontItalic=\"false\"/>");
  EXPECT_EQ(event.index->style, IndexChange::Style::kCapitalRoman);
  EXPECT_EQ(event.index->start, 510);
  EXPECT_TRUE(event.deletes);
  EXPECT_EQ(event.graph->styleSheet, "calm");
  EXPECT_THAT(
      event.graph->chartTemplates,
      ElementsAre("<template a=\"1\"/>", "<template b=\"&quot;&lt;&#233;\">x &amp; y</template>"));
  EXPECT_EQ(event.properties->visible, false);
  EXPECT_DOUBLE_EQ(*event.properties->width, 85.0394);
  EXPECT_FALSE(event.properties->height.has_value());
  EXPECT_DOUBLE_EQ(*event.properties->heightPercent, 50);
  EXPECT_EQ(event.properties->label, "x < y");
  EXPECT_EQ(event.text->text, "t");
  EXPECT_EQ(event.text->font, "Noto Sans");
  EXPECT_EQ(event.text->color, "#ff0009");
  EXPECT_DOUBLE_EQ(event.text->fontSize, 10.5);
  EXPECT_EQ(event.text->bold, true);
  EXPECT_EQ(event.text->italic, false);
  EXPECT_FALSE(event.text->underline.has_value());
  EXPECT_FALSE(eventOf("<objectProperties visible=\"asis\"/>").properties->visible.has_value());
}

TEST(ModifyRequestReader, ChangesOfTablesAreRead) {
  const ModifyEvent event = eventOf(
      "<modifyTable title=\"a &amp; b\" summary=\"s\" transpose=\"true\" sortPosition=\"-1\" "
      "ascending=\"false\" format=\"F8.2\" defaultTableLook=\"true\">"
      "<layer layer=\"Year\" category=\"2024\"/><layer layerInt=\"0\" categoryInt=\"0\"/>"
      "<tableLook><tableProperties><a b=\"1\"/>t</tableProperties></tableLook></modifyTable>");
  ASSERT_TRUE(event.table.has_value());
  EXPECT_EQ(event.table->title, "a & b");
  EXPECT_EQ(event.table->summary, "s");
  EXPECT_TRUE(event.table->transposes);
  EXPECT_EQ(event.table->sort->position, -1);
  EXPECT_FALSE(event.table->sort->label.has_value());
  EXPECT_FALSE(event.table->sort->isAscending);
  EXPECT_EQ(event.table->format, "F8.2");
  EXPECT_TRUE(event.table->usesDefaultLook);
  ASSERT_EQ(event.table->layers.size(), 2U);
  EXPECT_EQ(event.table->layers[0].layer, "Year");
  EXPECT_EQ(event.table->layers[0].category, "2024");
  EXPECT_FALSE(event.table->layers[1].layer.has_value());
  EXPECT_EQ(event.table->layers[1].layerPosition, 0);
  EXPECT_EQ(event.table->layers[1].categoryPosition, 0);
  EXPECT_EQ(event.table->look, "<tableProperties><a b=\"1\"/>t</tableProperties>");
  EXPECT_FALSE(eventOf("<modifyTable/>").table->sort.has_value());
}

TEST(ModifyRequestReader, ChangesOfCellsAreRead) {
  const ModifyEvent event = eventOf(
      "<tableCells mean=\"true\" significance=\"true\" title=\"true\" "
      "selectExpression=\"Total;n &amp; N\" selectPosition=\"1;3\" selectColumns=\"false\" "
      "selectCondition=\"top(3)\" selectCondition=\"bottom(2)\" revertToDefault=\"true\" "
      "bold=\"true\" underline=\"false\" italic=\"true\" columnWidth=\"28\" fontSize=\"9.5\" "
      "textRed=\"1\" textGreen=\"2\" textBlue=\"3\" backgroundRed=\"255\" backgroundGreen=\"255\" "
      "backgroundBlue=\"0\" applyTo=\"ROWDATA\" format=\"F8.2\" font=\"ARIAL\" replace=\"-\"/>"
      "<tableCells selectColumns=\"both\" replaceValue=\"-1\"/>"
      "<tableCells selectColumns=\"true\"/>");
  ASSERT_EQ(event.cells.size(), 3U);
  const CellsChange& cells = event.cells[0];
  EXPECT_TRUE(cells.mean && cells.significance && cells.title);
  EXPECT_FALSE(cells.median || cells.body || cells.headers);
  EXPECT_THAT(cells.labels, ElementsAre("Total", "n & N"));
  EXPECT_THAT(cells.positions, ElementsAre(1, 3));
  EXPECT_EQ(cells.dimension, CellsChange::Dimension::kRows);
  EXPECT_THAT(cells.conditions, ElementsAre("top(3)", "bottom(2)"));
  EXPECT_TRUE(cells.revertsToDefault);
  EXPECT_EQ(cells.bold, true);
  EXPECT_EQ(cells.underline, false);
  EXPECT_EQ(cells.italic, true);
  EXPECT_EQ(cells.columnWidth, 28);
  EXPECT_DOUBLE_EQ(cells.fontSize, 9.5);
  EXPECT_EQ(cells.textColor, "#010203");
  EXPECT_EQ(cells.backgroundColor, "#ffff00");
  EXPECT_EQ(cells.applyTo, "ROWDATA");
  EXPECT_EQ(cells.format, "F8.2");
  EXPECT_EQ(cells.font, "ARIAL");
  EXPECT_EQ(cells.replacement, "-");
  EXPECT_EQ(event.cells[1].dimension, CellsChange::Dimension::kBoth);
  EXPECT_EQ(event.cells[1].replacementValue, -1);
  EXPECT_EQ(event.cells[2].dimension, CellsChange::Dimension::kColumns);
  EXPECT_EQ(event.cells[2].textColor, "");
}

TEST(ModifyRequestReader, TextsOfTheJobsEncodingBecomeUtf8) {
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  const ModifyEvent event = eventOf(
      "<subtype subtype=\"Gr\xC3\xB6\xC3\x9F"
      "e\"/><modifyTable title=\"Gr\xF6\xDF"
      "e\"/>");
  EXPECT_EQ(event.table->title,
            "Gr\xC3\xB6\xC3\x9F"
            "e");
  EXPECT_THAT(event.conditions.subtypes, ElementsAre("Gr\xC3\xB6\xC3\x9F"
                                                     "e"));
}

TEST(ModifyRequestReader, WhatCannotBeReadIsRefusedWithItsPlace) {
  struct Case {
    std::string xml;
    const char* place;
  };
  const Case cases[] = {
      {"", "byte 0"},
      {"x", "byte 1"},
      {"<other/>", "no modify document"},
      {inRoot("<modifyEvent>"), "byte "},
      {inRoot("<modifyEvent><subtype subtype=\"a\"b\"/></modifyEvent>"), "stray quote"},
      {inRoot("<other/>"), "modifyOutputObject must not hold an element other"},
      {inRoot("text"), "modifyOutputObject must not hold a text"},
      {inRoot("<modifyEvent><other/></modifyEvent>"), "modifyEvent must not hold an element other"},
      {inRoot("<modifyEvent kind=\"true\"/>"), "modifyEvent has an unknown attribute kind"},
      {inRoot("<modifyEvent tables=\"yes\"/>"),
       "tables of modifyEvent is \"yes\", not true or false"},
      {inRoot("<modifyEvent all=\"false\"/>"), "not true"},
      {inRoot("<modifyEvent><command instance=\"0\"/></modifyEvent>"),
       "is \"0\", at least 1 is allowed"},
      {inRoot("<modifyEvent><command instance=\"99999999999\"/></modifyEvent>"),
       "instance is \"99999999999\", at most 2147483647 is allowed"},
      {inRoot("<modifyEvent><indexObject type=\"Roman\"/></modifyEvent>"), "no type"},
      {inRoot("<modifyEvent><objectProperties sizeWidth=\"2001\"/></modifyEvent>"),
       "sizeWidth is \"2001\", at most 2000 is allowed"},
      {inRoot("<modifyEvent><objectProperties sizeWidth=\"inf\"/></modifyEvent>"), "no number"},
      {inRoot("<modifyEvent><tableCells selectPosition=\"1;x\"/></modifyEvent>"),
       "no list of positions"},
      {inRoot("<modifyEvent><tableCells textRed=\"256\"/></modifyEvent>"),
       "textRed of tableCells is \"256\", at most 255 is allowed"},
      {inRoot("<modifyEvent><tableCells textPink=\"2\"/></modifyEvent>"),
       "tableCells has an unknown attribute textPink"},
      {inRoot("<modifyEvent><tableCells columnWidth=\"2001\"/></modifyEvent>"),
       "columnWidth of tableCells is \"2001\", at most 2000 is allowed"},
      {inRoot("<modifyEvent><subtype subtype=\"\xF6\"/></modifyEvent>"), "not UTF-8"},
      {inRoot("<modifyEvent><deleteObject a=\"1\"/></modifyEvent>"), "unknown attribute a"},
      {inRoot("<modifyEvent><deleteObject><a/></deleteObject></modifyEvent>"),
       "deleteObject must not hold an element a"},
  };
  for (const Case& test : cases) {
    EXPECT_THAT(refusalOf(test.xml), HasSubstr(test.place)) << test.xml;
  }
}

TEST(ModifyRequestReader, EncodingGoesByTheAttributeAndNotByItsBytes) {
  // Both are valid in either encoding.
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  const std::string utf8 = "\xC3\xB6";             // an o with two dots
  const std::string doubled = "\xC3\x83\xC2\xB6";  // what its bytes are in the job's encoding
  const ModifyEvent event =
      eventOf("<command commandName=\"" + utf8 + "\"/><subtype subtype=\"" + utf8 +
              "\"/><label expression=\"" + utf8 + "\" exact=\"true\"/><modifyGraph styleSheet=\"" +
              utf8 + "\"/><objectProperties label=\"" + utf8 + "\"/><modifyTable title=\"" + utf8 +
              "\" summary=\"" + utf8 + "\" ascending=\"true\" sortLabel=\"" + utf8 +
              "\" format=\"" + utf8 + "\"><layer layer=\"" + utf8 + "\" category=\"" + utf8 +
              "\"/></modifyTable><tableCells selectColumns=\"both\" selectExpression=\"" + utf8 +
              "\" selectCondition=\"" + utf8 + "\" format=\"" + utf8 + "\" font=\"" + utf8 +
              "\" replace=\"" + utf8 + "\"/><modifyText expression=\"" + utf8 + "\" fontFamily=\"" +
              utf8 + "\"/>");
  for (const std::string& text : {event.conditions.commands[0].name, event.conditions.subtypes[0],
                                  event.conditions.labels[0].text, event.graph->styleSheet,
                                  *event.properties->label, *event.text->text, event.text->font}) {
    EXPECT_EQ(text, utf8);
  }
  const CellsChange& cells = event.cells[0];
  for (const std::string& text :
       {*event.table->title, *event.table->summary, *event.table->sort->label, event.table->format,
        *event.table->layers[0].layer, *event.table->layers[0].category, cells.labels[0],
        cells.conditions[0], cells.format, cells.font, *cells.replacement}) {
    EXPECT_EQ(text, doubled);
  }
}

TEST(ModifyRequestReader, EscapesAreResolvedWhereTheyAreWritten) {
  const std::string raw = "&amp;lt;&#65;&x;'";
  const ModifyRequest request = readModifyRequest(
      "<modifyOutputObject documentName=\"" + raw + "\"><modifyEvent><command commandName=\"" +
      raw + "\"/><subtype subtype=\"" + raw + "\"/><label expression=\"" + raw +
      "\" exact=\"true\"/><modifyGraph styleSheet=\"" + raw + "\"/><objectProperties label=\"" +
      raw + "\"/><modifyTable title=\"" + raw + "\" summary=\"" + raw +
      "\" ascending=\"true\" sortLabel=\"" + raw + "\" format=\"" + raw + "\"><layer layer=\"" +
      raw + "\" category=\"" + raw +
      "\"/></modifyTable><tableCells selectColumns=\"both\" selectExpression=\"a&gt;&quot;&apos;\" "
      "selectCondition=\"" +
      raw + "\" format=\"" + raw + "\" font=\"" + raw + "\" replace=\"" + raw +
      "\"/><modifyText expression=\"" + raw + "\" fontFamily=\"" + raw +
      "\"/></modifyEvent></modifyOutputObject>");
  const ModifyEvent& event = request.events[0];
  const CellsChange& cells = event.cells[0];
  for (const std::string& text :
       {event.conditions.commands[0].name, event.conditions.subtypes[0],
        event.conditions.labels[0].text, event.graph->styleSheet, event.text->font,
        event.table->format, cells.format, cells.font, *cells.replacement}) {
    EXPECT_EQ(text, raw);
  }
  for (const std::string& text :
       {request.documentName, *event.properties->label, *event.text->text, *event.table->title,
        *event.table->summary, *event.table->sort->label, *event.table->layers[0].layer,
        *event.table->layers[0].category, cells.conditions[0]}) {
    EXPECT_EQ(text, "&lt;&#65;&x;'");
  }
  EXPECT_EQ(cells.labels[0], "a>\"'");
}

TEST(ModifyRequestReader, WhatNoCommandWritesIsRefused) {
  const std::string look = "<tableProperties></tableProperties>";
  const struct {
    std::string event;
    const char* reason;
  } cases[] = {
      // A look that ends its element, goes on with another change, and begins its element again.
      {"<modifyTable><tableLook>" + look +
           "</tableLook></modifyTable><deleteObject/><modifyTable>"
           "<tableLook>" +
           look + "</tableLook></modifyTable>",
       "deleteObject is out of order"},
      {"<modifyTable/><tableCells selectColumns=\"both\"/><modifyTable/>",
       "modifyTable is out of order"},
      {"<modifyTable/><modifyTable/>", "modifyTable is out of order or doubled"},
      {"<modifyGraph/><modifyGraph/>", "modifyGraph is out of order or doubled"},
      {"<deleteObject/><deleteObject/>", "or doubled"},
      {"<indexObject type=\"roman\" indexStart=\"1\"/><indexObject/>", "or doubled"},
      {"<objectProperties/><objectProperties/>", "or doubled"},
      {"<modifyText/><modifyText/>", "or doubled"},
      {"<modifyText/><tableCells/>", "tableCells is out of order"},
      {"<subtype subtype=\"\"/><command/>", "command is out of order"},
      {"<modifyTable><tableLook>" + look + look + "</tableLook></modifyTable>",
       "in the table look, there is not just one element"},
      {"<modifyTable><tableLook>" + look + "x</tableLook></modifyTable>", "not just one element"},
      {"<modifyTable><tableLook></tableLook></modifyTable>", "not just one element"},
      {"<modifyTable><tableLook a=\"1\">" + look + "</tableLook></modifyTable>", "unknown"},
      {"<modifyTable><tableLook>" + look + "</tableLook><layer/></modifyTable>",
       "an element layer"},
      {"<modifyTable><tableLook>" + look + "</tableLook><tableLook>" + look +
           "</tableLook></modifyTable>",
       "an element tableLook"},
      {"<modifyGraph><chartTemplate><template/><template/></chartTemplate></modifyGraph>",
       "in chart template 1, there is not just one element"},
      {"<subtype subtype=\"a\" subtype=\"b\"/>", "stands there twice"},
      {"<tableCells bold=\"true\" bold=\"true\"/>", "stands there twice"},
      {"<objectProperties visible=\"no\" visible=\"yes\"/>", "stands there twice"},
      {"<label expression=\"a\"/>", "just one way to match"},
      {"<label expression=\"a\" exact=\"true\" ends=\"true\"/>", "just one way to match"},
  };
  for (const auto& test : cases) {
    EXPECT_THAT(refusalOf(inRoot("<modifyEvent>" + test.event + "</modifyEvent>")),
                HasSubstr(test.reason))
        << test.event;
  }
  EXPECT_THAT(refusalOf(inRoot("<modifyEvent tables=\"true\" tables=\"true\"/>")),
              HasSubstr("stands there twice"));
  EXPECT_THAT(refusalOf("<modifyOutputObject documentName=\"a\" documentName=\"b\"/>"),
              HasSubstr("stands there twice"));
  // Around the element of a file there may be what says nothing.
  EXPECT_EQ(eventOf("<modifyTable><tableLook>\n<?xml version=\"1.0\"?><!-- a -->" + look +
                    "\n<!-- b --></tableLook></modifyTable>")
                .table->look,
            "<tableProperties/>");
}

TEST(ModifyRequestReader, WhatEveryCommandWritesMustBeThere) {
  const std::string layers = "<modifyTable><layer ";
  const struct {
    std::string event;
    const char* reason;
  } cases[] = {
      {"<command last=\"true\" instance=\"2\"/>", "command has both last and instance"},
      {"<subtype/>", "subtype has no subtype"},
      {"<label begins=\"true\"/>", "label has no expression"},
      {"<instance/>", "instance has neither instance nor last"},
      {"<instance instance=\"1\" last=\"true\"/>", "instance has both instance and last"},
      {"<indexObject indexStart=\"1\"/>", "indexObject has no type"},
      {"<indexObject type=\"roman\"/>", "indexObject has no indexStart"},
      {layers + "category=\"a\"/></modifyTable>", "layer has neither layer nor layerInt"},
      {layers + "layer=\"a\"/></modifyTable>", "layer has neither category nor categoryInt"},
      {layers + "layer=\"a\" layerInt=\"1\" category=\"a\"/></modifyTable>",
       "layer has both layer and layerInt"},
      {layers + "layer=\"a\" category=\"a\" categoryInt=\"1\"/></modifyTable>",
       "layer has both category and categoryInt"},
      {"<modifyTable ascending=\"true\"/>", "modifyTable has neither sortLabel nor sortPosition"},
      {"<modifyTable sortPosition=\"1\"/>", "modifyTable has no ascending"},
      {"<modifyTable sortLabel=\"a\" sortPosition=\"1\" ascending=\"true\"/>",
       "modifyTable has both sortLabel and sortPosition"},
      {"<tableCells/>", "tableCells has no selectColumns"},
      {"<tableCells selectColumns=\"both\" replace=\"a\" replaceValue=\"1\"/>",
       "tableCells has both replace and replaceValue"},
      {"<tableCells selectColumns=\"both\" textRed=\"1\"/>", "tableCells has no textGreen"},
      {"<tableCells selectColumns=\"both\" textGreen=\"1\" textBlue=\"1\"/>",
       "tableCells has no textRed"},
      {"<tableCells selectColumns=\"both\" backgroundRed=\"1\" backgroundGreen=\"1\"/>",
       "tableCells has no backgroundBlue"},
      {"<modifyText textBlue=\"1\"/>", "modifyText has no textRed"},
  };
  for (const auto& test : cases) {
    EXPECT_THAT(refusalOf(inRoot("<modifyEvent>" + test.event + "</modifyEvent>")),
                testing::EndsWith(std::string(": ") + test.reason))
        << test.event;
  }
  EXPECT_EQ(refusalOf("<modifyOutputObject/>"),
            "at byte 1: modifyOutputObject has no documentName");
}

TEST(ModifyRequestReader, SizesAreAboveZero) {
  const std::string cells = "<tableCells selectColumns=\"both\" ";
  for (const std::string& start :
       {std::string("<objectProperties sizeWidth"), std::string("<objectProperties sizeHeight"),
        std::string("<objectProperties sizeWidthPCT"),
        std::string("<objectProperties sizeHeightPCT"), cells + "fontSize",
        std::string("<modifyText fontSize")}) {
    for (const char* const value : {"0", "-5", "-0"}) {
      EXPECT_THAT(refusalOf(inRoot("<modifyEvent>" + start + "=\"" + value + "\"/></modifyEvent>")),
                  testing::EndsWith(std::string(" is \"") + value + "\", only above 0 is allowed"));
    }
    EXPECT_EQ(refusalOf(inRoot("<modifyEvent>" + start + "=\"0.5\"/></modifyEvent>")), "accepted");
  }
}

TEST(ModifyRequestReader, MistakeInAFileIsSaidOfTheFile) {
  const auto graph = [](const std::string& first, const std::string& second) {
    return inRoot("<modifyEvent><modifyGraph><chartTemplate>" + first +
                  "</chartTemplate><chartTemplate>" + second +
                  "</chartTemplate></modifyGraph></modifyEvent>");
  };
  const auto look = [](const std::string& content) {
    return inRoot("<modifyEvent><modifyTable><tableLook>" + content +
                  "</tableLook></modifyTable></modifyEvent>");
  };
  const std::string good = "<template/>";
  const struct {
    std::string xml;
    const char* reason;
  } cases[] = {
      {graph("<template><series></template>", good),
       "in chart template 1, not well-formed near \"ies></templa\""},
      {graph(good, "<template><series></template>"),
       "in chart template 2, not well-formed near \"ies></templa\""},
      {graph(good, "<template><series>"),
       "in chart template 2, not well-formed near \"series></cha\""},
      {graph(good, "hello"), "in chart template 2, there is not just one element"},
      {look("<tableProperties><title bold=true/></tableProperties>"),
       "in the table look, not well-formed near \" bold=true/>\""},
      // What follows the file is taken for a value of it.
      {look("<tableProperties><title font=\"a/></tableProperties>") + "\"",
       "in the table look, not well-formed near"},
      {look("<tableProperties><title font=\"a\"b\"/></tableProperties>"),
       "in the table look, not well-formed near \"nt=\"a\"b\"/></\": stray quote?"},
      // The templates of each group are counted.
      {inRoot("<modifyEvent><modifyGraph><chartTemplate>" + good +
              "</chartTemplate></modifyGraph></modifyEvent><modifyEvent><modifyGraph>"
              "<chartTemplate><a></chartTemplate></modifyGraph></modifyEvent>"),
       "in chart template 1, not well-formed near"},
      // Not in a file, behind one, without a quotation mark.
      {inRoot("<modifyEvent><modifyTable><tableLook><tableProperties/></tableLook></modifyTable>"
              "<modifyEvent></x>"),
       ": not well-formed near \"ent></x></mo\""},
      {inRoot("<modifyEvent><label expression=\"a\"b\" exact=\"true\"/></modifyEvent>"),
       ": not well-formed near \"on=\"a\"b\" exa\": stray quote?"},
  };
  for (const auto& test : cases) {
    const std::string reason = refusalOf(test.xml);
    EXPECT_THAT(reason, HasSubstr(test.reason)) << test.xml;
    EXPECT_LE(displayWidth(reason), 72) << reason;
  }
}

TEST(ModifyRequestReader, PlaceOfAnErrorComesFirstAndTheMessageIsSeenInWhole) {
  const std::string longText(300, 'x');
  const std::string far(1'000'000, ' ');
  const std::string broken = inRoot("<modifyEvent><subtype subtype=\"" + longText + "\"" +
                                    longText + "\"/></modifyEvent>");
  const auto inEvent = [](const std::string& event) {
    return inRoot("<modifyEvent>" + event + "</modifyEvent>");
  };
  const std::string cells = "<tableCells selectColumns=\"both\" ";
  const std::string cases[] = {
      broken,
      inRoot("<modifyEvent tables=\"" + longText + "\"/>"),
      inRoot("<modifyEvent outlineheaders=\"" + longText + "\"/>"),
      inRoot("<modifyEvent " + longText + "=\"true\"/>"),
      inRoot("<modifyEvent " + longText + "=\"true\" " + longText + "=\"true\"/>"),
      inEvent("<" + longText + "/>"),
      inEvent("<" + longText + "表/>"),
      inEvent("<objectProperties sizeHeightPCT=\"3000\"/>"),
      inEvent("<objectProperties sizeHeightPCT=\"" + longText + "\"/>"),
      inEvent("<objectProperties sizeHeightPCT=\"-30000000\"/>"),
      inEvent("<objectProperties visible=\"" + longText + "\"/>"),
      inEvent("<indexObject type=\"" + longText + "\" indexStart=\"1\"/>"),
      inEvent("<indexObject type=\"roman\" indexStart=\"99999999999\"/>"),
      inEvent("<indexObject type=\"roman\" indexStart=\"-99999999999\"/>"),
      inEvent("<command instance=\"99999999999\"/>"),
      inEvent("<modifyText fontSize=\"3000\"/>"),
      inEvent("<modifyText fontUnderline=\"" + longText + "\"/>"),
      inEvent("<modifyTable sortLabel=\"a\" sortPosition=\"1\" ascending=\"true\"/>"),
      inEvent("<modifyTable sortLabel=\"a\" sortLabel=\"b\"/>"),
      inEvent("<modifyTable><layer layer=\"a\" category=\"b\" categoryInt=\"1\"/></modifyTable>"),
      inEvent(cells + "backgroundGreen=\"3000\"/>"),
      inEvent(cells + "backgroundGreen=\"1\"/>"),
      inEvent(cells + "columnWidth=\"3000\"/>"),
      inEvent(cells + "fontSize=\"3000\"/>"),
      inEvent(cells + "selectPosition=\"" + longText + "\"/>"),
      inEvent(cells + "replaceValue=\"" + longText + "\"/>"),
      inEvent("<modifyText/><objectProperties/>"),
      inEvent("<label expression=\"a\"/>"),
      inEvent("<subtype subtype=\"\xF6" + longText + "\"/>"),
  };
  for (const std::string& xml : cases) {
    for (const std::string& before : {std::string(), far}) {
      const std::string reason = refusalOf(before + xml);
      EXPECT_TRUE(reason.starts_with("at byte ")) << reason;
      EXPECT_LE(displayWidth(reason), 72) << reason;
    }
  }
  EXPECT_EQ(refusalOf(inEvent("<modifyText fontSize=\"3000\"/>")),
            "at byte 51: fontSize of modifyText is \"3000\", at most 1000 is allowed");
  EXPECT_EQ(refusalOf(inEvent(cells + "columnWidth=\"3000\"/>")),
            "at byte 51: columnWidth of tableCells is \"3000\", at most 2000 is allowed");
  EXPECT_THAT(refusalOf(inRoot("<modifyEvent><subtype subtype=\"\"ä表表表\"/></modifyEvent>")),
              HasSubstr("near \"ype=\"\"ä表\""))
      << "no character is cut";
}

}  // namespace
}  // namespace vornwout
