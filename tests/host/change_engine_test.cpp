// A modify document carried out on documents.
#include "host/changes/change_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/changes/modify_request_reader.h"
#include "host/store/store_error.h"
#include "platform/text/display_width.h"
#include "tests/support/generated_documents.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kSvg =
    "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"100\" height=\"50\">"
    "<rect x=\"1\" y=\"1\" width=\"10\" height=\"20\" fill=\"#ff0000\"/></svg>";

CellText plain(std::string text) {
  CellText cell;
  cell.text = std::move(text);
  return cell;
}

TableContent makeTable() {
  auto table = std::make_shared<PivotTable>();
  table->title = plain("Sales");
  for (int d = 0; d < 2; ++d) {
    PivotDimension dimension;
    dimension.label = plain(d == 0 ? "Region" : "Year");
    dimension.position = PivotPosition{d, 1, false, false};
    for (int leaf = 0; leaf < 3; ++leaf) {
      PivotCategory category;
      category.label = plain((d == 0 ? "r" : "y") + std::to_string(leaf));
      category.leaf = dimension.leafCount++;
      dimension.categories.push_back(category);
    }
    table->dimensions.push_back(dimension);
  }
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      PivotCell cell;
      cell.at = {row, column};
      cell.value.kind = CellText::Kind::kNumber;
      cell.value.number = row * 10 + column;
      table->cells.push_back(cell);
    }
  }
  return table;
}

TextContent textOf(const char* text) {
  return {{{TextParagraph::Kind::kPlain, 0, 0, {{text, {}, ""}}}}};
}

DocumentObject make(ObjectType type, const char* label, ObjectContent content) {
  DocumentObject object;
  object.type = type;
  object.label = label;
  object.command = "MEANS";
  object.run = 1;
  object.content = std::move(content);
  return object;
}

Document makeDocument(int number = 1) {
  Document document(number, "", false);
  DocumentObject heading = make(ObjectType::kHeading, "Means", {});
  heading.children.push_back(make(ObjectType::kTable, "Table 1", makeTable()));
  heading.children.push_back(make(ObjectType::kTable, "Table 2", makeTable()));
  heading.children.push_back(
      make(ObjectType::kChart, "Chart",
           MediaContent{"image/svg+xml", std::make_shared<const std::string>(kSvg)}));
  document.append(make(ObjectType::kText, "Text", textOf("words")));
  document.append(std::move(heading));
  document.append(make(ObjectType::kLog, "Log", LogContent{"MEANS."}));
  return document;
}

ModifyRequest requestOf(const std::string& events) {
  return readModifyRequest("<modifyOutputObject documentName=\"*\">" + events +
                           "</modifyOutputObject>");
}

/// Carries the events out on the document for good; "3 2 1" and the notes.
std::string change(Document& document, const std::string& events) {
  const ModifyRequest request = requestOf(events);
  ChangeEngine engine(request, [](const std::string& font) { return font != "Nowhere"; });
  engine.apply(document);
  const ChangeCounts counts = engine.counts();
  std::string told = std::to_string(counts.selected) + " " + std::to_string(counts.modified) + " " +
                     std::to_string(counts.deleted);
  for (const std::string& note : engine.notes()) told += " " + note;
  engine.commit();
  return told;
}

std::string event(const std::string& types, const std::string& content) {
  return "<modifyEvent " + types + ">" + content + "</modifyEvent>";
}

const DocumentObject& below(const Document& document, std::size_t index) {
  return document.root().children[1].children[index];
}

const PivotTable& tableAt(const Document& document, std::size_t index) {
  return **below(document, index).content.as<TableContent>();
}

TEST(ChangeEngine, NothingIsAskedForNothingChanges) {
  Document document = makeDocument();
  EXPECT_EQ(change(document, ""), "0 0 0");
  EXPECT_EQ(change(document, event("all=\"true\"", "")), "6 0 0");
  EXPECT_EQ(change(document, event("models=\"true\"", "<deleteObject/>")), "0 0 0");
  EXPECT_TRUE(sameObject(document.root(), makeDocument().root()));
}

TEST(ChangeEngine, PropertiesOfObjectsChange) {
  Document document = makeDocument();
  EXPECT_EQ(change(document, event("charts=\"true\"",
                                   "<objectProperties visible=\"no\" sizeWidth=\"200\" "
                                   "label=\"Bars &lt; lines\"/>")),
            "1 1 0");
  EXPECT_FALSE(below(document, 2).visible);
  EXPECT_EQ(below(document, 2).size, (ObjectSize{200, 0, false}));
  EXPECT_EQ(below(document, 2).label, "Bars < lines");
  EXPECT_EQ(change(document, event("charts=\"true\"",
                                   "<objectProperties visible=\"asis\" sizeWidthPCT=\"50\" "
                                   "sizeHeightPCT=\"25\"/>")),
            "1 1 0");
  EXPECT_FALSE(below(document, 2).visible);
  EXPECT_EQ(below(document, 2).size, (ObjectSize{50, 25, true}));
  // What is so already is no change.
  EXPECT_EQ(change(document, event("charts=\"true\"", "<objectProperties visible=\"no\"/>")),
            "1 0 0");
}

TEST(ChangeEngine, IndexesCountTheSelectedObjects) {
  Document document = makeDocument();
  EXPECT_EQ(change(document, event("tables=\"true\" charts=\"true\"",
                                   "<indexObject type=\"romanCap\" indexStart=\"3\"/>")),
            "3 3 0");
  EXPECT_EQ(below(document, 0).index, "III");
  EXPECT_EQ(below(document, 1).index, "IV");
  EXPECT_EQ(below(document, 2).index, "V");
  EXPECT_EQ(document.root().children[0].index, "");
}

TEST(ChangeEngine, TablesTextsAndChartsChange) {
  Document document = makeDocument();
  EXPECT_EQ(change(document, event("all=\"true\"",
                                   "<modifyTable title=\"New\"/>"
                                   "<tableCells body=\"true\" selectColumns=\"both\" "
                                   "selectCondition=\"x>=20\" bold=\"true\"/>"
                                   "<modifyText expression=\"other\"/>")),
            "6 3 0");
  for (const std::size_t i : {0, 1}) {
    EXPECT_EQ(tableAt(document, i).title.text, "New");
    EXPECT_EQ(tableAt(document, i).cells[6].look->bold, true);
    EXPECT_FALSE(tableAt(document, i).cells[5].look->bold.has_value());
  }
  EXPECT_EQ(document.root().children[0].content.as<TextContent>()->paragraphs[0].runs[0].text,
            "other");
  EXPECT_EQ(document.root().children[2].content.as<LogContent>()->text, "MEANS.");
  EXPECT_EQ(
      change(document, event("charts=\"true\"",
                             "<modifyGraph><chartTemplate><template version=\"1\"><background "
                             "color=\"#112233\"/></template></chartTemplate></modifyGraph>")),
      "1 1 0");
  EXPECT_THAT(*below(document, 2).content.as<MediaContent>()->bytes, testing::HasSubstr("#112233"));
}

TEST(ChangeEngine, GroupsActOnWhatThoseBeforeThemHaveLeft) {
  Document document = makeDocument();
  const std::string first =
      event("tables=\"true\"", "<instance instance=\"1\"/><objectProperties label=\"renamed\"/>");
  const std::string second =
      event("tables=\"true\"", "<label expression=\"renamed\" exact=\"true\"/><deleteObject/>");
  const std::string third = event("tables=\"true\"", "<objectProperties visible=\"no\"/>");
  EXPECT_EQ(change(document, first + second + third), "2 1 1");
  ASSERT_EQ(document.root().children[1].children.size(), 2U);
  EXPECT_EQ(below(document, 0).label, "Table 2");
  EXPECT_FALSE(below(document, 0).visible);
}

TEST(ChangeEngine, AHeadingGoesWithWhatIsBelowIt) {
  Document document = makeDocument();
  const ModifyRequest request = requestOf(event("headings=\"true\"", "<deleteObject/>"));
  ChangeEngine engine(request, {});
  engine.apply(document);
  EXPECT_EQ(engine.counts().deleted, 4U);
  const std::vector<ChangeEngine::Removed> removed = engine.commit();
  ASSERT_EQ(removed.size(), 1U);
  EXPECT_EQ(removed[0].documentNumber, 1);
  EXPECT_THAT(removed[0].positions, ElementsAre(1));
  EXPECT_EQ(document.root().children.size(), 2U);
}

TEST(ChangeEngine, NotesNameWhatCouldNotBeUsed) {
  Document document = makeDocument();
  EXPECT_EQ(change(document, event("all=\"true\"",
                                   "<modifyTable title=\"t\" format=\"Q9\"/>"
                                   "<tableCells body=\"true\" selectColumns=\"both\" "
                                   "font=\"Nowhere\" bold=\"true\"/>"
                                   "<modifyText fontFamily=\"Nowhere\"/>")),
            "6 2 0 Invalid format (Q9) Invalid font (Nowhere)");
  EXPECT_EQ(tableAt(document, 0).cells[0].look->bold, true) << "the rest is in force";
}

TEST(ChangeEngine, MistakesAreSaidAlsoWhenNothingIsSelectedThatTheyConcern) {
  Document document = makeDocument();
  EXPECT_EQ(change(document,
                   event("logs=\"true\"",
                         "<modifyTable format=\"Q1\"/>"
                         "<tableCells selectColumns=\"both\" format=\"Q2\" font=\"Nowhere\"/>")),
            "1 0 0 Invalid format (Q1) Invalid format (Q2) Invalid font (Nowhere)");
  EXPECT_EQ(change(document, event("", "<modifyText fontFamily=\"Nowhere\"/>")),
            "0 0 0 Invalid font (Nowhere)");
  for (const char* const mistake :
       {"<modifyTable><tableLook><tableProperties><a/></tableProperties></tableLook></modifyTable>",
        "<tableCells selectColumns=\"both\" selectCondition=\"x>\"/>",
        "<tableCells selectColumns=\"both\" applyTo=\"TABLE\"/>"}) {
    EXPECT_THROW(change(document, event("logs=\"true\"", mistake)), ChangeError) << mistake;
  }
}

TEST(ChangeEngine, ARefusedRequestChangesNoDocument) {
  const auto documentWithoutOrder = [] {
    Document document = makeDocument(2);
    PivotTable table = **below(document, 1).content.as<TableContent>();
    table.cells[0].at[0] = 99;
    document.at(1).children[1].content =
        LazyContent(TableContent(std::make_shared<const PivotTable>(table)));
    return document;
  };
  Document first = makeDocument(1);
  Document second = documentWithoutOrder();
  const ModifyRequest request = requestOf(
      event("all=\"true\"",
            "<indexObject type=\"number\" indexStart=\"1\"/><objectProperties label=\"x\" "
            "visible=\"no\"/><modifyTable title=\"t\" transpose=\"true\"/>") +
      event("texts=\"true\"", "<deleteObject/>") +
      event("tables=\"true\"", "<tableCells body=\"true\" selectColumns=\"both\" bold=\"true\"/>"));
  {
    ChangeEngine engine(request, {});
    engine.apply(first);
    EXPECT_EQ(below(first, 0).label, "x");
    EXPECT_THROW(engine.apply(second), ChangeError);
  }
  EXPECT_TRUE(sameObject(first.root(), makeDocument().root()));
  EXPECT_TRUE(sameObject(second.root(), documentWithoutOrder().root()));
}

/// Gives a content that cannot be read.
class BrokenSource : public ContentSource {
 public:
  ObjectContent load(std::uint64_t) override {
    throw StoreError(StoreError::Kind::kDamaged,
                     "Its part objects/1.xml cannot be read: near line 3: start-end tags mismatch.",
                     "near line 3: start-end tags mismatch");
  }
};

std::string refusalOf(Document& document, const std::string& events) {
  try {
    change(document, events);
  } catch (const ChangeError& error) {
    return error.what();
  }
  return "nothing was refused";
}

TEST(ChangeEngine, RefusalSaysWhichObjectItIsAbout) {
  const std::string cells = "<tableCells body=\"true\" selectColumns=\"both\" bold=\"true\"/>";
  const std::string graph =
      "<modifyGraph><chartTemplate><template><background color=\"#112233\"/></template>"
      "</chartTemplate></modifyGraph>";
  auto table = std::make_shared<PivotTable>(*makeTable());
  table->cells[0].at[0] = 99;
  auto large = std::make_shared<PivotTable>();
  large->dimensions.assign(70, makeTable()->dimensions[0]);
  large->cells.emplace_back().at.resize(70);
  auto uncounted = std::make_shared<PivotTable>(*makeTable());
  uncounted->dimensions[1].leafCount = 2000;
  const MediaContent noChart{"image/svg+xml", std::make_shared<const std::string>("<svg")};
  const LazyContent broken(LazyContent::Place{std::make_shared<BrokenSource>(), 1});
  const std::string longLabel(100, 'x');
  const struct {
    ObjectType type;
    const char* label;
    LazyContent content;
    std::string change;
    std::string reason;
  } cases[] = {
      {ObjectType::kTable, "Sales", ObjectContent(TableContent(table)), cells,
       "in \"Sales\", a cell of a table belongs to no category"},
      {ObjectType::kTable, longLabel.c_str(), ObjectContent(TableContent(table)), cells,
       "in \"" + std::string(23, 'x') + "…\", a cell of a table belongs to no category"},
      {ObjectType::kTable, longLabel.c_str(), ObjectContent(TableContent(large)),
       "<modifyTable sortPosition=\"1\" ascending=\"true\"/>",
       "in \"" + std::string(22, 'x') + "…\", it has too many combinations of categories"},
      {ObjectType::kTable, longLabel.c_str(), ObjectContent(TableContent(uncounted)), cells,
       "in \"xxxxxxxx…\", a dimension of a table counts categories that it has not"},
      {ObjectType::kTable, "", ObjectContent(TableContent(table)), cells,
       "in an object without a label, a cell of a table belongs to no category"},
      {ObjectType::kChart, "Bars", ObjectContent(noChart), graph,
       "in \"Bars\", no well-formed XML: Error parsing start element tag"},
      {ObjectType::kTable, "Sales", broken, cells,
       "in \"Sales\", near line 3: start-end tags mismatch"},
  };
  for (const auto& test : cases) {
    Document document(1, "", false);
    document.append(make(test.type, test.label, {}));
    document.at(0).content = test.content;
    const std::string reason = refusalOf(document, event("all=\"true\"", test.change));
    EXPECT_EQ(reason, test.reason);
    EXPECT_LE(displayWidth(reason), 72);
  }
}

TEST(ChangeEngine, ContentDecidesWhatIsChangedAndNotTheType) {
  const std::string events =
      event("all=\"true\"",
            "<modifyGraph><chartTemplate><template><background color=\"#112233\"/></template>"
            "</chartTemplate></modifyGraph><modifyTable title=\"New\"/>"
            "<modifyText expression=\"other\"/>");
  const MediaContent chart{"image/svg+xml", std::make_shared<const std::string>(kSvg)};
  for (const ObjectType type : {ObjectType::kTree, ObjectType::kOther, ObjectType::kUnknown,
                                ObjectType::kNotes, ObjectType::kWarning}) {
    Document document(1, "", false);
    document.append(make(type, "a", makeTable()));
    document.append(make(type, "b", textOf("words")));
    document.append(make(type, "c", chart));
    document.append(make(type, "d", LogContent{"log"}));
    EXPECT_EQ(change(document, events), "4 3 0") << objectTypeName(type);
    const auto& objects = document.root().children;
    EXPECT_EQ((*objects[0].content.as<TableContent>())->title.text, "New");
    EXPECT_EQ(objects[1].content.as<TextContent>()->paragraphs[0].runs[0].text, "other");
    EXPECT_THAT(*objects[2].content.as<MediaContent>()->bytes, testing::HasSubstr("#112233"));
  }
}

/// Counts how often it is asked.
class CountingSource : public ContentSource {
 public:
  ObjectContent load(std::uint64_t) override {
    ++loads;
    return {};
  }
  int loads = 0;
};

TEST(ChangeEngine, WhatCannotHoldAnythingOfTheKindIsNotRead) {
  const std::string graph =
      "<modifyGraph><chartTemplate><template><background color=\"#112233\"/></template>"
      "</chartTemplate></modifyGraph>";
  const std::string table = "<modifyTable title=\"New\"/>";
  const std::string text = "<modifyText expression=\"other\"/>";
  const struct {
    ObjectType type;
    int forGraph;
    int forTable;
    int forText;
  } cases[] = {
      {ObjectType::kTable, 0, 1, 0},     {ObjectType::kText, 0, 0, 1},
      {ObjectType::kPageTitle, 0, 0, 1}, {ObjectType::kChart, 1, 0, 0},
      {ObjectType::kLog, 0, 0, 0},       {ObjectType::kModel, 0, 0, 0},
      {ObjectType::kHeading, 0, 0, 0},   {ObjectType::kWarning, 1, 1, 1},
      {ObjectType::kNotes, 1, 1, 1},     {ObjectType::kTree, 1, 1, 1},
      {ObjectType::kOther, 1, 1, 1},     {ObjectType::kUnknown, 1, 1, 1},
  };
  for (const auto& test : cases) {
    for (const auto& [content, loads] :
         {std::pair(graph, test.forGraph), {table, test.forTable}, {text, test.forText}}) {
      const auto source = std::make_shared<CountingSource>();
      Document document(1, "", false);
      document.append(make(test.type, "a", {}));
      document.at(0).content = LazyContent(LazyContent::Place{source, 1});
      EXPECT_EQ(change(document, event("all=\"true\"", content)), "1 0 0");
      EXPECT_EQ(source->loads, loads) << objectTypeName(test.type) << content;
    }
  }
}

TEST(ChangeEngine, LawsHoldForGeneratedDocuments) {
  const struct {
    const char* name;
    std::string events;
  } nothings[] = {
      {"transposing twice", event("all=\"true\"", "<modifyTable transpose=\"true\"/>") +
                                event("all=\"true\"", "<modifyTable transpose=\"true\"/>")},
      {"everything excepted",
       event("all=\"true\" charts=\"false\" headings=\"false\" logs=\"false\" models=\"false\" "
             "tables=\"false\" texts=\"false\" trees=\"false\" warnings=\"false\" "
             "outlineheaders=\"false\" notes=\"false\" unknown=\"false\" other=\"false\" "
             "pagetitles=\"false\"",
             "<deleteObject/><modifyTable title=\"t\"/>")},
  };
  for (unsigned int seed = 0; seed < 60; ++seed) {
    const auto document = DocumentGenerator(seed).document(12);
    const auto before = DocumentGenerator(seed).document(12);
    // A dimension that was never put anywhere stands in the rows; moved, it says so for good.
    change(*document, nothings[0].events);
    change(*before, nothings[0].events);
    for (const auto& nothing : nothings) {
      change(*document, nothing.events);
      EXPECT_TRUE(sameObject(document->root(), before->root())) << nothing.name << ", " << seed;
    }
    // Carrying out a change a second time changes nothing more.
    const std::string events =
        event("all=\"true\"",
              "<objectProperties visible=\"no\" label=\"l\"/><modifyTable title=\"t\" "
              "sortPosition=\"1\" ascending=\"false\" format=\"F8.2\"/>"
              "<tableCells body=\"true\" headers=\"true\" selectColumns=\"both\" italic=\"true\"/>"
              "<modifyText fontSize=\"12\"/>");
    change(*document, events);
    const std::string again = change(*document, events);
    EXPECT_THAT(again, testing::HasSubstr(" 0 0")) << seed;
    change(*document, event("all=\"true\"", "<deleteObject/>"));
    EXPECT_THAT(document->root().children, IsEmpty());
  }
}

}  // namespace
}  // namespace vornwout
