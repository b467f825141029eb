#include <fstream>
#include <string>

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validator.hpp>

#include "host/build/manifest.h"
#include "tests/support/memory_files.h"

namespace vornwout {
namespace {

const std::string kSvg = "<svg xmlns=\"http://www.w3.org/2000/svg\"/>";

MemoryFiles someFiles() {
  return MemoryFiles({{"a.csv", "region,year,amount\nNorth,2023,1\nSouth,2024,2\n"},
                      {"blank.csv", "k, v\na,1\n"},
                      {"single.csv", "k  v\na  1\n"},
                      {"a.svg", kSvg},
                      {"bad.svg", "<svg>\n<g></svg>"},
                      {"a.md", "# Title\n\ntext"},
                      {"bad.md", "a\n\xC3\xA4\xFF"},
                      {"m.xml", "<model/>"}});
}

std::string errorOf(const std::string& json) {
  MemoryFiles files = someFiles();
  Document document(1, "", false);
  try {
    buildFromManifest(json, "m.json", files, document);
  } catch (const BuildError& error) {
    return fmt::format("{}:{}:{}: {}{}{}", error.file(), error.place().line, error.place().column,
                       error.text(), error.help().empty() ? "" : " ", error.help());
  }
  return "none";
}

Document built(const std::string& json) {
  MemoryFiles files = someFiles();
  Document document(1, "", false);
  buildFromManifest(json, "m.json", files, document);
  return document;
}

TEST(Manifest, EveryKindOfObjectIsBuilt) {
  const Document document = built(R"({"$schema": "x", "title": "Report", "objects": [
    {"type": "table", "csv": "a.csv", "rows": ["region"], "columns": ["year"], "value": "amount",
     "title": "Amounts", "subtype": "Sums", "size": {"width": 50, "unit": "percent"}},
    {"type": "chart", "file": "a.svg", "visible": false},
    {"type": "text", "markdown": "a.md", "label": "Introduction"},
    {"type": "text", "text": "one\ntwo"},
    {"type": "model", "file": "m.xml", "mediaType": "application/xml"},
    {"type": "heading", "label": "Below", "objects": []}]})");
  const auto& objects = document.root().children;
  ASSERT_EQ(objects.size(), 7U);
  EXPECT_EQ(objects[0].type, ObjectType::kPageTitle);
  EXPECT_EQ(objects[0].label, "Report");
  EXPECT_EQ(objects[1].type, ObjectType::kTable);
  EXPECT_EQ(objects[1].label, "Amounts");
  EXPECT_EQ(objects[1].subtype, "Sums");
  EXPECT_EQ(objects[1].size, (ObjectSize{50, 0, true}));
  const auto* table = objects[1].content.as<TableContent>();
  ASSERT_NE(table, nullptr);
  EXPECT_EQ((*table)->cells.size(), 2U);
  EXPECT_EQ((*table)->subtype.text, "Sums");
  EXPECT_EQ(objects[2].type, ObjectType::kChart);
  EXPECT_EQ(objects[2].label, "a");
  EXPECT_FALSE(objects[2].visible);
  EXPECT_EQ(*objects[2].content.as<MediaContent>()->bytes, kSvg);
  EXPECT_EQ(objects[2].content.as<MediaContent>()->mediaType, "image/svg+xml");
  EXPECT_EQ(objects[3].label, "Introduction");
  EXPECT_EQ(objects[3].content.as<TextContent>()->paragraphs.size(), 2U);
  EXPECT_EQ(objects[4].content.as<TextContent>()->paragraphs.size(), 2U);
  EXPECT_EQ(objects[5].content.as<MediaContent>()->mediaType, "application/xml");
  EXPECT_EQ(objects[6].label, "Below");
  EXPECT_EQ(objects[6].type, ObjectType::kHeading);
}

TEST(Manifest, ObjectsBelongToTheRunOfTheHeadingAroundThem) {
  const Document document = built(R"({"objects": [
    {"type": "heading", "command": "Means", "objects": [
      {"type": "text", "text": "a"},
      {"type": "text", "text": "b", "command": "Log"},
      {"type": "heading", "objects": [{"type": "text", "text": "c"}]}]},
    {"type": "heading", "command": "MEANS", "objects": [{"type": "text", "text": "d"}]},
    {"type": "text", "text": "e"}]})");
  const auto& objects = document.root().children;
  const auto runOf = [](const DocumentObject& object) {
    return fmt::format("{} {}", object.command, object.run);
  };
  EXPECT_EQ(runOf(objects[0]), "MEANS 1");
  EXPECT_EQ(runOf(objects[0].children[0]), "MEANS 1");
  EXPECT_EQ(runOf(objects[0].children[1]), "LOG 1");
  EXPECT_EQ(runOf(objects[0].children[2].children[0]), "MEANS 1");
  EXPECT_EQ(runOf(objects[1].children[0]), "MEANS 2");
  EXPECT_EQ(runOf(objects[2]), " 0");
}

struct BadManifest {
  const char* json;
  const char* error;
};

const BadManifest kBadManifests[] = {
    {"[]", "m.json:1:1: The manifest is a list, an object is expected."},
    {"{}", "m.json:1:1: \"objects\" is missing here."},
    {"{\"objects\": {}}", "m.json:1:13: \"objects\" is an object, a list is expected."},
    {"{\"objects\": [1]}",
     "m.json:1:14: Element 1 of \"objects\" is a number, an object is expected."},
    {"{\"objects\": [{\"type\": \"table\", \"csv\": \"a.csv\", \"value\": \"amount\", \"rows\": "
     "[\"region\", [\"year\", null]]}]}",
     "m.json:1:95: Element 2 of element 2 of \"rows\" is null, a text is expected."},
    {"{\"objects\": [{\"type\": \"table\", \"csv\": \"a.csv\", \"value\": \"amount\", \"rows\": "
     "[{\"columns\": \"region\", \"formats\": {\"0\": 1}}]}]}",
     "m.json:1:115: \"0\" is a number, a text is expected."},
    {"{\"objects\": [{}]}",
     "m.json:1:14: \"type\" is missing here. It is \"heading\", \"table\", \"chart\", \"text\" or "
     "\"model\"."},
    {"{\"objects\": [\n {\"type\": \"tabel\"}]}",
     "m.json:2:11: \"tabel\" is not known here. Did you mean table? There are \"heading\", "
     "\"table\", \"chart\", \"text\", \"model\"."},
    {"{\"objects\": [{\"type\": \"text\", \"text\": \"a\", \"lable\": \"\"}]}",
     "m.json:1:44: \"lable\" is not known here. Did you mean label? There are \"type\", "
     "\"command\", \"subtype\", \"label\", \"visible\", \"size\", \"markdown\", \"text\"."},
    {"{\"objects\": [{\"type\": \"text\"}]}",
     "m.json:1:14: A text has either \"markdown\" or \"text\". \"markdown\" names a file, "
     "\"text\" is the text itself."},
    {"{\"objects\": [{\"type\": \"chart\"}]}", "m.json:1:14: \"file\" is missing here."},
    {"{\"objects\": [{\"type\": \"chart\", \"file\": \"\"}]}",
     "m.json:1:40: An empty text names nothing."},
    {"{\"objects\": [{\"type\": \"text\", \"text\": \"\", \"visible\": \"no\"}]}",
     "m.json:1:54: \"visible\" is a text, true or false is expected."},
    {"{\"objects\": [{\"type\": \"text\", \"text\": \"\", \"size\": {\"width\": -1}}]}",
     "m.json:1:61: The number is not between 0 and 100000."},
    {"{\"objects\": [{\"type\": \"model\", \"file\": \"m.xml\", \"mediaType\": \"a b/c\"}]}",
     "m.json:1:62: This is no media type. It is written as \"application/xml\"."},
    {"{\"objects\": [{\"type\": \"table\", \"csv\": \"a.csv\", \"rows\": [\"region\"]}]}",
     "m.json:1:14: The table has no values. \"value\" names the column that holds them."},
    {"{\"objects\": [{\"type\": \"table\", \"csv\": \"a.csv\", \"value\": \"amount\"}]}",
     "m.json:1:14: The table has no dimensions. \"rows\", \"columns\" and \"layers\" list the "
     "columns of its labels."},
    {"{\"objects\": [{\"type\": \"table\", \"csv\": \"a.csv\", \"rows\": [[]], \"value\": "
     "\"amount\"}]}",
     "m.json:1:57: A dimension needs a column."},
    {"{\"objects\": [{\"type\": \"table\", \"csv\": \"a.csv\", \"rows\": [\"region\"], \"value\": "
     "\"amount\", \"format\": \"X1\"}]}",
     "m.json:1:97: \"X1\" is no display format. A format is a name, a width and decimals: F8.2, "
     "COMMA10, PCT5.1, DATE11."},
    {"{\"objects\": [{\"type\": \"table\", \"csv\": \"a.csv\", \"rows\": [\"region\"], \"value\": "
     "\"amount\", \"values\": [\"year\"]}]}",
     "m.json:1:97: \"value\" and \"values\" exclude each other."},
    {"{\"objects\": [{\"type\": \"table\", \"csv\": \"a.csv\", \"rows\": [\"region\"], \"value\": "
     "\"amount\", \"separator\": \"x\"}]}",
     "m.json:1:100: Fields are separated by \",\", \";\", \"\\t\" or \"|\"."},
};

TEST(Manifest, MistakeIsNamedAtItsPlaceWithARemedy) {
  for (const BadManifest& bad : kBadManifests) EXPECT_EQ(errorOf(bad.json), bad.error);
}

TEST(Manifest, WhatAFileDoesNotHaveIsSaidWhereTheManifestAsksForIt) {
  const std::string head = "{\"objects\": [{\"type\": \"table\", \"csv\": \"a.csv\",\n";
  EXPECT_EQ(errorOf(head + "\"rows\": [\"regoin\"], \"value\": \"amount\"}]}"),
            "m.json:2:10: a.csv has no column \"regoin\". Did you mean region?");
  EXPECT_EQ(
      errorOf("{\"objects\": [{\"type\": \"table\", \"csv\": \"blank.csv\",\n\"rows\": [\"k\"], "
              "\"value\": \"v\"}]}"),
      "m.json:2:25: blank.csv has no column \"v\". Did you mean \" v\"? Blanks belong to the "
      "name.");
  EXPECT_EQ(
      errorOf("{\"objects\": [{\"type\": \"table\", \"csv\": \"single.csv\",\n\"rows\": [\"k\"], "
              "\"value\": \"v\"}]}"),
      "m.json:2:10: single.csv has no column \"k\". Its only column is \"k  v\"; maybe the "
      "separator is another than was taken for it.");
  EXPECT_EQ(
      errorOf(head + "\"rows\": [{\"columns\": [\"year\", \"x\"]}], \"value\": \"amount\"}]}"),
      "m.json:2:31: a.csv has no column \"x\".");
  EXPECT_EQ(
      errorOf(head + "\"rows\": [\"region\"], \"columns\": [\"year\"], \"value\": \"amount\", "
                     "\"footnotes\": [{\"text\": \"n\", \"at\": {\"region\": \"Nort\"}}]}]}"),
      "m.json:2:106: \"region\" has no category \"Nort\". Did you mean North?");
  EXPECT_EQ(
      errorOf(head + "\"rows\": [{\"columns\": \"region\", \"formats\": {\"Noth\": \"F8\"}}], "
                     "\"value\": \"amount\"}]}"),
      "m.json:2:52: No category is called \"Noth\". Did you mean North?");
}

TEST(Manifest, MistakeInAFileIsSaidAtItsPlaceThere) {
  const auto object = [](const std::string& inside) { return "{\"objects\": [{" + inside + "}]}"; };
  EXPECT_EQ(errorOf(object("\"type\": \"chart\", \"file\": \"bad.svg\"")).substr(0, 12),
            "bad.svg:2:6:");
  EXPECT_EQ(errorOf(object("\"type\": \"text\", \"markdown\": \"bad.md\"")),
            "bad.md:2:2: This byte is no character in UTF-8. Save the text as UTF-8.");
  EXPECT_EQ(errorOf(object("\"type\": \"chart\", \"file\": \"none.svg\"")),
            "none.svg:0:0: There is no such file.");
  EXPECT_EQ(
      errorOf(object("\"type\": \"table\", \"csv\": \"a.csv\", \"columns\": [\"year\"], "
                     "\"value\": \"region\"")),
      "a.csv:2:1: \"North\" is no number. For a column of texts a manifest has \"text\": true, "
      "the command line --format A8; decimal mark and thousands separator can be given as "
      "well.");
}

TEST(Manifest, WhatIsNoSoundJsonIsRefused) {
  EXPECT_EQ(errorOf("{\"objects\": [], \"objects\": []}"),
            "m.json:1:17: The manifest is no JSON that is read: member \"objects\" stands twice.");
  EXPECT_EQ(errorOf("").substr(0, 11), "m.json:1:1:");
  EXPECT_EQ(errorOf("\xEF\xBB\xBF{\"objects\": []}"), "none");
  EXPECT_NE(errorOf(std::string(300, '[')).find("nested deeper than 256 levels"),
            std::string::npos);
  EXPECT_EQ(errorOf(std::string(kMaxManifestBytes + 1, ' ')),
            "m.json:0:0: The manifest is larger than 64 MiB.");
}

TEST(Manifest, HeadingsNestOnlySoDeep) {
  // The table has lists and objects of its own below the deepest heading.
  const auto nested = [](int headings) {
    std::string open = "{\"objects\": [";
    std::string close = "]}";
    for (int i = 0; i < headings; ++i) {
      open += "{\"type\": \"heading\", \"objects\": [{\"type\": \"heading\", \"objects\": []}, ";
      close += "]}";
    }
    return open +
           "{\"type\": \"table\", \"csv\": \"a.csv\", \"value\": \"amount\", \"rows\": "
           "[{\"columns\": [\"region\"], \"formats\": {\"North\": \"F8.1\"}}]}" +
           close;
  };
  EXPECT_EQ(errorOf(nested(29)), "none");
  const std::string error = "Headings are nested deeper than 30 levels.";
  EXPECT_NE(errorOf(nested(30)).find(error), std::string::npos);
  EXPECT_NE(errorOf(nested(60)).find(error), std::string::npos);
}

/// Whether the published schema takes a manifest.
bool fitsSchema(const std::string& manifest) {
  static const nlohmann::json source = [] {
    std::ifstream stream(VORN_SOURCE_DIR "/docs/manifest-schema.json");
    return nlohmann::json::parse(stream);
  }();
  valijson::Schema schema;
  valijson::SchemaParser parser(valijson::SchemaParser::kDraft7);
  parser.populateSchema(valijson::adapters::NlohmannJsonAdapter(source), schema);
  const nlohmann::json json = nlohmann::json::parse(manifest);
  valijson::Validator validator;
  return validator.validate(schema, valijson::adapters::NlohmannJsonAdapter(json), nullptr);
}

TEST(Manifest, PublishedSchemaRefusesWhatTheReaderRefuses) {
  for (const BadManifest& bad : kBadManifests) EXPECT_FALSE(fitsSchema(bad.json)) << bad.json;
}

TEST(Manifest, PublishedSchemaTakesWhatTheReaderTakes) {
  const char* manifests[] = {
      R"({"objects": []})",
      R"({"title": "t", "objects": [{"type": "heading", "objects": [{"type": "text", "text": ""}]}]})",
      R"({"objects": [{"type": "table", "csv": "a.csv", "rows": [{"columns": ["region", "year"],
          "label": "L", "sort": "label", "hideLabel": true, "hideCategories": false,
          "statistics": {"North": "mean"}, "formats": {"2023": "comma10.2"}}],
          "values": ["amount"], "valuesLabel": "V", "valuesIn": "layers", "separator": ",",
          "encoding": "windows-1252", "decimal": ",", "thousands": ".", "format": "F8",
          "statistic": "count", "title": "", "titleHidden": true, "caption": "c",
          "footnotes": ["n", {"text": "m", "at": {"year": 2023}}]}]})",
      R"({"objects": [{"type": "table", "csv": "a.csv", "columns": ["year"], "value": "region",
          "text": true}]})",
  };
  for (const char* manifest : manifests) {
    EXPECT_EQ(errorOf(manifest), "none") << manifest;
    EXPECT_TRUE(fitsSchema(manifest)) << manifest;
  }
}

}  // namespace
}  // namespace vornwout
