#include "runner/document_json.h"

#include <limits>
#include <memory>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "host/store/store_error.h"
#include "tests/support/pivot_tables.h"

namespace vornwout {
namespace {

using nlohmann::json;

DocumentObject object(ObjectType type, std::string label, ObjectContent content = {}) {
  DocumentObject result;
  result.type = type;
  result.label = std::move(label);
  result.content = std::move(content);
  return result;
}

struct Written {
  json value;
  bool isWhole;
  std::string text;
};

Written write(const DocumentObject& root, DocumentJsonOptions options = {"a.qxv", true, false}) {
  std::ostringstream out;
  const bool isWhole = writeDocumentJson(out, outlineOf(root), options);
  return {json::parse(out.str()), isWhole, out.str()};
}

DocumentObject rootOf(std::vector<DocumentObject> children) {
  DocumentObject root = object(ObjectType::kHeading, "");
  root.children = std::move(children);
  return root;
}

json contentOf(ObjectContent content) {
  return write(rootOf({object(ObjectType::kOther, "x", std::move(content))}))
      .value["objects"][0]["content"];
}

TEST(DocumentJson, TreeAndAttributesAreThoseOfTheDocument) {
  DocumentObject inner = rootOf({object(ObjectType::kLog, "c"), object(ObjectType::kLog, "d")});
  inner.label = "b";
  DocumentObject outer = rootOf({inner});
  outer.label = "a";
  outer.command = "FREQUENCIES";
  outer.run = 2;
  outer.subtype = "S";
  outer.index = "1";
  outer.visible = false;
  outer.size = ObjectSize{50, 0, true};
  const Written written = write(rootOf({outer, object(ObjectType::kPageTitle, "e")}));
  EXPECT_EQ(written.value, json::parse(R"({"file":"a.qxv","objects":[
    {"number":1,"type":"heading","label":"a","index":"1","command":"FREQUENCIES","run":2,
     "subtype":"S","visible":false,"size":{"width":50.0,"height":0.0,"unit":"percent"},"objects":[
      {"number":2,"type":"heading","label":"b","visible":true,"objects":[
        {"number":3,"type":"log","label":"c","visible":true},
        {"number":4,"type":"log","label":"d","visible":true}]}]},
    {"number":5,"type":"page-title","label":"e","visible":true}]})"));
  EXPECT_TRUE(written.isWhole);
  EXPECT_EQ(write(rootOf({})).value, json::parse(R"({"file":"a.qxv","objects":[]})"));
}

TEST(DocumentJson, PartOfAnOutlineIsWhole) {
  DocumentObject inner = rootOf({object(ObjectType::kLog, "c")});
  const DocumentObject root = rootOf({rootOf({inner}), object(ObjectType::kLog, "d")});
  std::vector<OutlineEntry> entries = outlineOf(root);
  entries = {entries.begin() + 1, entries.begin() + 3};
  std::ostringstream out;
  writeDocumentJson(out, entries, {"a", true, false});
  const json value = json::parse(out.str());
  EXPECT_EQ(value["objects"].size(), 1U);
  EXPECT_EQ(value["objects"][0]["objects"][0]["number"], 3);
}

TEST(DocumentJson, TableHasDimensionsAndCellsWithValueAndText) {
  auto table = std::make_shared<PivotTable>();
  table->title = textCell("T");
  table->caption = textCell("C");
  table->footnotes = {textCell("F")};
  PivotDimension rows = makeDimension("R", PivotPlace::kRows, 1, {});
  const int group = addGroup(rows, "g");
  addLeaf(rows, "a", group);
  rows.categories.back().statistic = StatisticKind::kMean;
  table->dimensions = {rows};
  PivotCell& cell = addCell(*table, {0}, numberCell(1.25));
  cell.value.format.display = DisplayFormat{DisplayFormat::Kind::kF, 8, 1};
  cell.notes = {textCell("n")};
  cell.look.edit([&](TextLook& look) { look.bold = true; });
  cell.look.edit([&](TextLook& look) { look.textColor = "red"; });
  addCell(*table, {0}, textCell("word"));
  addCell(*table, {0}, numberCell(std::numeric_limits<double>::quiet_NaN()));
  const json value = contentOf(table);
  EXPECT_EQ(value["kind"], "table");
  EXPECT_EQ(value["title"], "T");
  EXPECT_EQ(value["caption"], "C");
  EXPECT_EQ(value["footnotes"], json::parse(R"(["F"])"));
  EXPECT_EQ(value["dimensions"],
            json::parse(R"([{"label":"R","place":"rows","index":1,"categories":[
      {"label":"g","group":true},{"label":"a","parent":0,"leaf":0,"statistic":"mean"}]}])"));
  const json& cells = value["cells"];
  EXPECT_EQ(cells[0]["value"], 1.25);
  EXPECT_EQ(cells[0]["text"], renderNumber(1.25, DisplayFormat{DisplayFormat::Kind::kF, 8, 1}));
  EXPECT_EQ(cells[0]["format"], "F8.1");
  EXPECT_EQ(cells[0]["notes"], json::parse(R"(["n"])"));
  EXPECT_EQ(cells[0]["bold"], true);
  EXPECT_EQ(cells[0]["textColor"], "red");
  EXPECT_EQ(cells[1]["value"], "word");
  EXPECT_EQ(cells[1]["text"], "word");
  EXPECT_TRUE(cells[2]["value"].is_null());
}

TEST(DocumentJson, TableHasItsLooksWidthsAndShownLeaf) {
  auto table = std::make_shared<PivotTable>();
  table->title = textCell("T");
  table->dimensions = {makeDimension("L", PivotPlace::kLayers, 1, {"a"})};
  json plain = contentOf(table);
  EXPECT_EQ(plain, json::parse(R"({"kind":"table","title":"T","dimensions":[{"label":"L",
    "place":"layers","index":1,"categories":[{"label":"a","leaf":0}]}],"cells":[]})"));
  const auto only = [](const auto& set) {
    TextLook look;
    set(look);
    return SharedLook(look);
  };
  table->summary = "S";
  table->titleLook = only([](TextLook& look) { look.bold = false; });
  table->captionLook = only([](TextLook& look) { look.size = 9.5; });
  table->footnoteLook = only([](TextLook& look) { look.font = "Arial"; });
  table->dimensions[0].shownLeaf = 0;
  table->dimensions[0].categories[0].width = 72;
  table->dimensions[0].categories[0].look = only([](TextLook& look) { look.italic = true; });
  addCell(*table, {0}, textCell("x")).look =
      TextLook{"red", "blue", false, false, true, "Arial", 12};
  EXPECT_EQ(contentOf(table), json::parse(R"({"kind":"table","title":"T","summary":"S",
    "titleLook":{"bold":false},"captionLook":{"size":9.5},"footnoteLook":{"font":"Arial"},
    "dimensions":[{"label":"L","place":"layers","index":1,"shownLeaf":0,
      "categories":[{"label":"a","leaf":0,"italic":true,"width":72}]}],
    "cells":[{"at":[0],"value":"x","text":"x","textColor":"red","backgroundColor":"blue",
      "bold":false,"italic":false,"underlined":true,"font":"Arial","size":12.0}]})"));
}

TEST(DocumentJson, OtherContentsHaveTheirMembers) {
  EXPECT_EQ(contentOf(LogContent{"l"}), json::parse(R"({"kind":"log","text":"l"})"));
  EXPECT_EQ(contentOf(NotesContent{{{textCell("a"), numberCell(2)}}}),
            json::parse(R"({"kind":"notes","entries":[{"label":"a","value":"2"}]})"));
  EXPECT_EQ(
      contentOf(MessageContent{MessageSeverity::kWarning, "m", {3, 4}}),
      json::parse(R"({"kind":"message","severity":"warning","text":"m","line":3,"column":4})"));
  TextParagraph paragraph;
  paragraph.kind = TextParagraph::Kind::kNumbered;
  paragraph.level = 1;
  paragraph.number = 3;
  TextRun run{"r", {}, "https://a"};
  run.style.bold = true;
  paragraph.runs = {run};
  EXPECT_EQ(contentOf(TextContent{{paragraph}}),
            json::parse(R"({"kind":"text","paragraphs":[{"kind":"numbered","level":1,"number":3,
              "runs":[{"text":"r","bold":true,"link":"https://a"}]}]})"));
  EXPECT_EQ(contentOf(MediaContent{"image/svg+xml", std::make_shared<const std::string>(
                                                        "<svg width='72pt' height='36pt'/>")}),
            json::parse(R"({"kind":"media","mediaType":"image/svg+xml","byteCount":33,"width":72.0,
              "height":36.0,"base64":"PHN2ZyB3aWR0aD0nNzJwdCcgaGVpZ2h0PSczNnB0Jy8+"})"));
}

class Source : public ContentSource {
 public:
  ObjectContent load(std::uint64_t id) override {
    ++loads;
    if (id == 1) throw StoreError(StoreError::Kind::kDamaged, "The part 1 is damaged.");
    return LogContent{"fine"};
  }
  int loads = 0;
};

TEST(DocumentJson, PartThatCannotBeReadIsAnErrorInItsPlace) {
  const auto source = std::make_shared<Source>();
  DocumentObject damaged = object(ObjectType::kLog, "a");
  damaged.content = LazyContent(LazyContent::Place{source, 1});
  DocumentObject fine = object(ObjectType::kLog, "b");
  fine.content = LazyContent(LazyContent::Place{source, 2});
  const Written written = write(rootOf({damaged, fine}));
  EXPECT_FALSE(written.isWhole);
  EXPECT_EQ(written.value["objects"][0]["error"], "The part 1 is damaged.");
  EXPECT_EQ(written.value["objects"][1]["content"]["text"], "fine");
  const int before = source->loads;
  EXPECT_TRUE(write(rootOf({damaged, fine}), {"a", false, false}).isWhole);
  EXPECT_EQ(source->loads, before) << "the outline alone reads nothing";
}

TEST(DocumentJson, TextsAreValidWhateverTheyWere) {
  const Written written =
      write(rootOf({object(ObjectType::kLog, "a\xFF\"\x1b", LogContent{"\xC3("})}));
  EXPECT_EQ(written.value["objects"][0]["label"], "a\uFFFD\"\x1b");
  EXPECT_THAT(written.text, testing::Not(testing::HasSubstr("\x1b")));
  const Written ascii = write(rootOf({object(ObjectType::kLog, "é\xC2\x9B")}), {"ü", true, true});
  EXPECT_TRUE(std::all_of(ascii.text.begin(), ascii.text.end(), [](char c) { return c >= 0; }));
  EXPECT_EQ(ascii.value["file"], "ü");
}

}  // namespace
}  // namespace vornwout
