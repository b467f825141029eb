#include "host/looks/table_look_xml.h"

#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/looks/svg_color.h"
#include "platform/pivot/cell_color.h"
#include "tests/support/file_content.h"
#include "tests/support/schema_check.h"

namespace vornwout {
namespace {

const std::string kLooks = VORN_SOURCE_DIR "/Looks";

std::string look(const std::string& inside) {
  return "<tableProperties>" + inside + "</tableProperties>";
}

/// Why a look is refused; empty when it is not.
std::string refusal(const std::string& xml) {
  try {
    parseTableLook(xml);
    return {};
  } catch (const LookError& error) {
    return error.what();
  }
}

std::vector<std::filesystem::path> finishedLooks() {
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(kLooks)) {
    if (entry.path().extension() == ".qtt") paths.push_back(entry.path());
  }
  return paths;
}

TEST(TableLookXml, EveryPartIsRead) {
  const TableLook read = parseTableLook(
      "<?xml version='1.0'?><!-- a look --><tableProperties version='1' name='A &amp; B' "
      "background='#FFFFFF'><title font='Noto Sans' size='10.5' bold='true' italic='0' "
      "underlined=' 1 ' textColor='#0A0b0c' fill='#112233' horizontal='center' "
      "vertical='middle'><borders><top style='double' width='1.5' color='#ABCDEF'/>"
      "<rows style='dotted'/></borders><margins top='1' left='0.125'/></title>"
      "<data horizontal='right'/><footnotes vertical='bottom'/>"
      "<banding fill='#eeeeee' rowLabels='true'/><dataColumns min='10' max='20'/>"
      "<rowLabelColumns max='2000'/></tableProperties>");
  TableLook expected;
  expected.name = "A & B";
  expected.background = "#ffffff";
  AreaLook& title = expected.area(LookArea::kTitle);
  title.text = {"#0a0b0c", "#112233", true, false, true, "Noto Sans", 10.5};
  title.horizontal = LookHorizontal::kCenter;
  title.vertical = LookVertical::kMiddle;
  title.margins = {1, 5, 2, 0.125};
  title.borders.top = {LookLineStyle::kDouble, 1.5, "#abcdef"};
  title.borders.rows = {LookLineStyle::kDotted, 0.75, ""};
  expected.area(LookArea::kData).horizontal = LookHorizontal::kRight;
  expected.area(LookArea::kFootnotes).vertical = LookVertical::kBottom;
  expected.banding = {"#eeeeee", true};
  expected.dataColumns = {10, 20};
  expected.rowLabelColumns = {0, 2000};
  EXPECT_EQ(read, expected);
  EXPECT_EQ(parseTableLook(look("")), TableLook());
  EXPECT_EQ(parseTableLook("\xEF\xBB\xBF<tableProperties/>\n"), TableLook());
}

TEST(TableLookXml, EachAreaHasAnElementOfItsOwn) {
  const std::pair<LookArea, const char*> areas[] = {
      {LookArea::kTitle, "title"},         {LookArea::kLayers, "layers"},
      {LookArea::kCorner, "corner"},       {LookArea::kColumnLabels, "columnLabels"},
      {LookArea::kRowLabels, "rowLabels"}, {LookArea::kData, "data"},
      {LookArea::kCaption, "caption"},     {LookArea::kFootnotes, "footnotes"}};
  for (const auto& [area, name] : areas) {
    TableLook expected;
    expected.area(area).text.size = 7;
    EXPECT_EQ(parseTableLook(look(std::string("<") + name + " size='7'/>")), expected) << name;
  }
}

TEST(TableLookXml, WhatIsRefusedIsRefusedByTheSchemaToo) {
  struct Case {
    std::string xml;
    std::string refusal;  ///< empty for a look that is fine
  };
  const std::string wideName(100, 'a');
  const Case cases[] = {
      {look("<data size='0.001'/>"), ""},
      {look("<data size='1000'/>"), ""},
      {look("<data size=' 8 '/>"), ""},
      {look("<data size='0'/>"), "data: size \"0\" is below 0.001"},
      {look("<data size='1000.1'/>"), "data: size \"1000.1\" is above 1000"},
      {look("<data size='1.2345'/>"), "data: size \"1.2345\" is not allowed"},
      {look("<data size='1.'/>"), "data: size \"1.\" is not allowed"},
      {look("<data size='.5'/>"), "data: size \".5\" is not allowed"},
      {look("<data size='-1'/>"), "data: size \"-1\" is not allowed"},
      {look("<data size='1e1'/>"), "data: size \"1e1\" is not allowed"},
      {look("<data size=''/>"), "data: size \"\" is not allowed"},
      {look("<data bold='yes'/>"), "data: bold \"yes\" is no flag"},
      {look("<data textColor='red'/>"), "data: textColor \"red\" is no #rrggbb"},
      {look("<data textColor='#12345'/>"), "data: textColor \"#12345\" is no #rrggbb"},
      {look("<data fill='#12345g'/>"), "data: fill \"#12345g\" is no #rrggbb"},
      {look("<data fill=''/>"), "data: fill \"\" is no #rrggbb"},
      {look("<data horizontal='middle'/>"), "data: horizontal \"middle\" is not known"},
      {look("<data vertical='center'/>"), "data: vertical \"center\" is not known"},
      {look("<data font='" + wideName + "'/>"), ""},
      {look("<data font='\xC3\xA4 \xE6\x98\x8E\xE6\x9C\x9D-9'/>"), ""},
      {look("<data font='" + wideName + "a'/>"),
       "data: font \"" + wideName.substr(0, 18) + "…\" is no font"},
      {look("<data font='a&quot;b'/>"), "data: font \"a\"b\" is no font"},
      {look("<data font='a;b'/>"), "data: font \"a;b\" is no font"},
      {look("<data font='a\xC2\xA0'/>"), "data: font \"a\xC2\xA0\" is no font"},
      {look("<data font=' a'/>"), "data: font \" a\" is no font"},
      {look("<data font=''/>"), "data: font \"\" is no font"},
      {look("<data weight='1'/>"), "data: unknown attribute weight"},
      {look("<data>text</data>"), "data: it must not hold a text"},
      {look("<data/><data/>"), "tableProperties: it holds data twice"},
      {look("<cells/>"), "tableProperties: unknown element cells"},
      {look("<data><margins top='100' left='0'/></data>"), ""},
      {look("<data><margins top='100.001'/></data>"), "margins: top \"100.001\" is above 100"},
      {look("<data><margins all='1'/></data>"), "margins: unknown attribute all"},
      {look("<data><margins><top/></margins></data>"), "margins: unknown element top"},
      {look("<data><borders><inner/></borders></data>"), "borders: unknown element inner"},
      {look("<data><borders width='1'/></data>"), "borders: unknown attribute width"},
      {look("<data><borders><top style='wavy'/></borders></data>"),
       "top: style \"wavy\" is not known"},
      {look("<data><borders><top width='20'/></borders></data>"), ""},
      {look("<data><borders><top width='21'/></borders></data>"), "top: width \"21\" is above 20"},
      {look("<data><borders><top><a/></top></borders></data>"), "top: unknown element a"},
      {look("<banding fill='#000000'/>"), ""},
      {look("<banding/>"), "banding: it has no fill"},
      {look("<banding fill='#000000' every='3'/>"), "banding: unknown attribute every"},
      {look("<dataColumns min='2001'/>"), "dataColumns: min \"2001\" is above 2000"},
      {look("<dataColumns max='1.5'/>"), "dataColumns: max \"1.5\" is not allowed"},
      {look("<dataColumns max='-1'/>"), "dataColumns: max \"-1\" is not allowed"},
      {look("<dataColumns width='1'/>"), "dataColumns: unknown attribute width"},
      {"<tableProperties version='2'/>", "tableProperties: its version is not known"},
      {"<tableProperties page='a4'/>", "tableProperties: unknown attribute page"},
      {"<tableLook/>", "tableLook: tableProperties is expected"},
      {"<tableProperties>", "near line 1: start-end tags mismatch"},
      {"", "near line 1: no document element found"},
  };
  const SchemaCheck schema("table-look.xsd");
  for (const Case& c : cases) {
    EXPECT_EQ(refusal(c.xml), c.refusal) << c.xml;
    EXPECT_EQ(schema.refusal(c.xml).empty(), c.refusal.empty()) << c.xml;
  }
}

TEST(TableLookXml, WhatASchemaCannotSayIsRefused) {
  EXPECT_EQ(refusal(look("<dataColumns min='3' max='2'/>")),
            "dataColumns: its min is above its max");
  EXPECT_EQ(refusal(look("<dataColumns min='3' max='0'/>")), "");
  EXPECT_EQ(refusal(std::string(kMaxLookBytes + 1, ' ')),
            "tableProperties: it is larger than 1 MiB");
  EXPECT_EQ(refusal("<!DOCTYPE tableProperties><tableProperties/>"),
            "it has a document type declaration");
  EXPECT_EQ(refusal("<tableProperties name='\xFF'/>"), "line 1 is not valid UTF-8");
  std::string many;
  for (int i = 0; i < 30'000; ++i) many += "<a/>";
  EXPECT_EQ(refusal(look(many)), "it has too many elements");
}

/// A look in which anything may be set.
class LookGenerator {
 public:
  explicit LookGenerator(unsigned int seed) : random_(seed) {}

  TableLook look() {
    TableLook result;
    if (coin()) result.name = "a \"b\" & <c>\n\xC3\xA4";
    result.background = color();
    for (AreaLook& area : result.areas) {
      area.text = {color(), color(), flag(), flag(), flag(), coin() ? "Noto Sans" : "", 0};
      if (coin()) area.text.size = (number(999'999) + 1) / 1000.0;
      area.horizontal = static_cast<LookHorizontal>(number(4));
      area.vertical = static_cast<LookVertical>(number(3));
      for (double LookMargins::*margin :
           {&LookMargins::top, &LookMargins::right, &LookMargins::bottom, &LookMargins::left}) {
        if (coin()) area.margins.*margin = number(100'001) / 1000.0;
      }
      for (LookLine LookBorders::*line :
           {&LookBorders::top, &LookBorders::right, &LookBorders::bottom, &LookBorders::left,
            &LookBorders::rows, &LookBorders::columns}) {
        if (coin()) {
          area.borders.*
              line = {static_cast<LookLineStyle>(number(5)), number(20'001) / 1000.0, color()};
        }
      }
    }
    if (coin()) result.banding = {"#123456", coin()};
    if (coin()) result.dataColumns = {number(100), 100 + number(1901)};
    if (coin()) result.rowLabelColumns = {number(2001), 0};
    return result;
  }

 private:
  int number(int end) { return std::uniform_int_distribution<int>(0, end - 1)(random_); }
  bool coin() { return number(2) == 0; }
  std::optional<bool> flag() {
    const int which = number(3);
    return which == 0 ? std::nullopt : std::optional(which == 1);
  }
  std::string color() { return coin() ? "" : "#00" + std::to_string(1000 + number(9000)); }

  std::mt19937 random_;
};

TEST(TableLookXml, AnyLookThatIsWrittenIsReadAgainAndValid) {
  const SchemaCheck schema("table-look.xsd");
  std::vector<std::string> written;
  for (unsigned int seed = 0; seed < 200; ++seed) {
    const TableLook made = LookGenerator(seed).look();
    const std::string xml = writeTableLook(made);
    EXPECT_EQ(parseTableLook(xml), made) << xml;
    EXPECT_EQ(writeTableLook(parseTableLook(xml)), xml);
    written.push_back(xml);
  }
  EXPECT_EQ(schema.refusal(written), "");
}

TEST(TableLookXml, ASmallestNumberIsWrittenAsTheSchemaHasIt) {
  TableLook made;
  made.area(LookArea::kData).margins.top = 0.001;
  EXPECT_NE(writeTableLook(made).find("top=\"0.001\""), std::string::npos);
}

TEST(FinishedTableLooks, AreEightAndValidByTheSchema) {
  const std::vector<std::filesystem::path> paths = finishedLooks();
  EXPECT_EQ(paths.size(), 8u);
  const SchemaCheck schema("table-look.xsd");
  for (const std::filesystem::path& path : paths) {
    const std::string xml = fileContent(path);
    EXPECT_EQ(refusal(xml), "") << path;
    EXPECT_EQ(schema.refusal(xml), "") << path;
    EXPECT_EQ(parseTableLook(xml).name, path.stem().string());
    // Commands take what stands from here on.
    const std::size_t root = xml.find("<tableProperties");
    EXPECT_EQ(parseTableLook(xml.substr(root)), parseTableLook(xml)) << path;
  }
}

TEST(FinishedTableLooks, TheDefaultOneNeedsNoFile) {
  const std::string file = kLooks + "/" + std::string(kDefaultLookName) + ".qtt";
  EXPECT_EQ(parseTableLook(fileContent(file)), defaultTableLook());
}

TEST(FinishedTableLooks, TextStandsOutFromItsFill) {
  for (const std::filesystem::path& path : finishedLooks()) {
    const TableLook look = parseTableLook(fileContent(path));
    const auto check = [&](const AreaLook& area, const std::string& fill, const char* where) {
      // A page looks after its own text on its own ground, but not after one of the two.
      if (area.text.textColor.empty()) {
        EXPECT_EQ(fill, "") << path << where;
        return;
      }
      const std::optional<Rgb> ink = parseCellColor(area.text.textColor);
      const std::optional<Rgb> ground = parseCellColor(fill.empty() ? "#ffffff" : fill);
      ASSERT_TRUE(ink && ground) << path << where;
      EXPECT_GE(contrastRatio(*ink, *ground), 4.5) << path << where;
    };
    for (std::size_t i = 0; i < kLookAreaCount; ++i) {
      const std::string& fill = look.areas[i].text.backgroundColor;
      check(look.areas[i], fill.empty() ? look.background : fill,
            (" area " + std::to_string(i)).c_str());
    }
    if (look.banding.fill.empty()) continue;
    check(look.area(LookArea::kData), look.banding.fill, " bands");
    if (look.banding.rowLabels) check(look.area(LookArea::kRowLabels), look.banding.fill, " bands");
  }
}

TEST(FinishedTableLooks, NumbersStandRightBelowTheirLabels) {
  for (const std::filesystem::path& path : finishedLooks()) {
    const TableLook look = parseTableLook(fileContent(path));
    EXPECT_EQ(look.area(LookArea::kData).horizontal, LookHorizontal::kByValue) << path;
    EXPECT_NE(look.area(LookArea::kColumnLabels).horizontal, LookHorizontal::kLeft) << path;
    EXPECT_EQ(look.area(LookArea::kData).margins, look.area(LookArea::kColumnLabels).margins)
        << path;
  }
}

TEST(FinishedTableLooks, OneIsForDarkPages) {
  const TableLook look = parseTableLook(fileContent(kLooks + "/Night.qtt"));
  const std::optional<Rgb> ground = parseCellColor(look.background);
  ASSERT_TRUE(ground);
  EXPECT_GT(contrastRatio(*ground, Rgb{255, 255, 255}), 15);
}

}  // namespace
}  // namespace vornwout
