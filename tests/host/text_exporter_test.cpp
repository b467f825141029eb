// Documents as text files: every kind of object, every option, hostile contents, and that every
// value is there.
#include "host/export/text/text_exporter.h"

#include <csignal>
#include <filesystem>
#include <functional>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include "host/export/text/column_meter.h"
#include "host/store/store_error.h"
#include "platform/text/display_width.h"
#include "platform/text/shown_text.h"
#include "tests/support/generated_documents.h"
#include "tests/support/pivot_tables.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/scratch_directory.h"

namespace vornwout {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr auto kTab = ExportTextSpec::SEPARATOR_TYPE::TAB;

DocumentObject object(ObjectType type, std::string label, ObjectContent content = {}) {
  DocumentObject result;
  result.type = type;
  result.label = std::move(label);
  result.content = std::move(content);
  return result;
}

DocumentObject heading(std::string label, std::vector<DocumentObject> children) {
  DocumentObject result = object(ObjectType::kHeading, std::move(label));
  result.children = std::move(children);
  return result;
}

DocumentObject tableObject(PivotTable table, std::string label = "Table") {
  return object(ObjectType::kTable, std::move(label),
                TableContent(std::make_shared<const PivotTable>(std::move(table))));
}

MediaContent media(std::string type, std::string bytes) {
  return {std::move(type), std::make_shared<const std::string>(std::move(bytes))};
}

DocumentObject pngChart(std::string label) {
  return object(ObjectType::kChart, std::move(label), media("image/png", pngPicture()));
}

TextParagraph paragraph(TextParagraph::Kind kind, const std::string& text, int level = 1,
                        const std::string& link = "") {
  TextParagraph result;
  result.kind = kind;
  result.level = level;
  result.number = 7;
  result.runs.push_back({text, {}, link});
  return result;
}

/// Two rows, two columns with a group over them, and a layer of two.
PivotTable nestedTable() {
  PivotTable table;
  table.title = textCell("Sales");
  table.caption = textCell("In thousands.");
  table.footnotes = {textCell("Estimated.")};
  PivotDimension years = makeDimension("Year", PivotPlace::kColumns, 1, {});
  const int group = addGroup(years, "Both years");
  addLeaf(years, "2023", group);
  addLeaf(years, "2024", group);
  table.dimensions = {makeDimension("Region", PivotPlace::kRows, 1, {"North", "South"}), years,
                      makeDimension("Kind", PivotPlace::kLayers, 1, {"Cars", "Bikes"})};
  for (int layer = 0; layer < 2; ++layer) {
    for (int row = 0; row < 2; ++row) {
      for (int column = 0; column < 2; ++column) {
        addCell(table, {row, column, layer}, numberCell(100 * layer + 10 * row + column + 0.5));
      }
    }
  }
  table.cells[0].notes = {textCell("Without the islands.")};
  return table;
}

/// A table of one row and one column.
PivotTable oneCell(const std::string& text, const std::string& rowLabel = "r") {
  PivotTable table;
  table.title = textCell("One");
  table.dimensions = {makeDimension("R", PivotPlace::kRows, 1, {rowLabel}),
                      makeDimension("C", PivotPlace::kColumns, 1, {"c"})};
  addCell(table, {0, 0}, textCell(text));
  return table;
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

class TextExporterTest : public testing::Test {
 protected:
  TextExporterTest() : document_(1, "doc", false) {
    spec_.text.setOptionPresent(true);
    spec_.text.setDocumentFile(scratch_.file("doc.txt"));
  }

  void add(DocumentObject object) { document_.append(std::move(object)); }

  void runOn(const Document& document) {
    const ExportScope scope = scopeOf(document, spec_.contents);
    ExportFiles files;
    response_ = {};
    TextExporter().run({document, scope, spec_}, files, response_);
    files.commit();
  }

  /// The text of what was added.
  std::string exported() {
    runOn(document_);
    return scratch_.read("doc.txt");
  }

  /// Why an export is refused; empty when it is not.
  std::string refusal() {
    try {
      exported();
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return {};
  }

  ScratchDirectory scratch_;
  Document document_;
  ExportSpec spec_;
  ExportResponse response_;
};

TEST_F(TextExporterTest, ObjectsStandInTheOrderOfTheOutline) {
  add(object(ObjectType::kPageTitle, "Report"));
  add(heading("Chapter",
              {heading("Section", {object(ObjectType::kLog, "Log", LogContent{"RUN.\n"})}),
               object(ObjectType::kWarning, "Warnings",
                      MessageContent{MessageSeverity::kWarning, "Careful\nplease", {}})}));
  NotesContent notes;
  notes.entries = {{textCell("Created"), textCell("today")},
                   {textCell("N"), numberCell(3)},
                   {textCell("Lines"), textCell("a\nb")}};
  add(object(ObjectType::kNotes, "Notes", notes));
  DocumentObject numbered = heading("Numbered", {});
  numbered.index = "3.1";
  add(numbered);
  EXPECT_EQ(exported(),
            "Report\n"
            "\n"
            "Chapter\n"
            "=======\n"
            "\n"
            "Section\n"
            "-------\n"
            "\n"
            "RUN.\n"
            "\n"
            "Warning: Careful\n"
            "         please\n"
            "\n"
            "Created  today\n"
            "N        3\n"
            "Lines    a\n"
            "         b\n"
            "\n"
            "3.1 Numbered\n"
            "============\n");
  EXPECT_EQ(response_.documentFile, scratch_.file("doc.txt"));
  EXPECT_TRUE(response_.imageRoot.empty());
  EXPECT_TRUE(response_.imageFormat.empty());
  EXPECT_FALSE(response_.imageCount);
}

TEST_F(TextExporterTest, ParagraphIsALineHoweverLong) {
  using Kind = TextParagraph::Kind;
  std::string words;
  for (int i = 0; i < 200; ++i) words += "word ";
  TextContent text;
  text.paragraphs = {paragraph(Kind::kHeading, "Title"),
                     paragraph(Kind::kPlain, words),
                     paragraph(Kind::kBullet, "first"),
                     paragraph(Kind::kNumbered, "deeper", 2),
                     paragraph(Kind::kQuote, "said", 2),
                     paragraph(Kind::kCode, "a\n  b"),
                     paragraph(Kind::kPlain, "here", 0, "https://example.org/"),
                     paragraph(Kind::kPlain, "me@example.org", 0, "mailto:me@example.org")};
  add(object(ObjectType::kText, "Text", text));
  EXPECT_EQ(exported(), "Title\n\n" + words +
                            "\n\n  * first\n    7. deeper\n\n> > said\n\n    a\n      b\n\n"
                            "here <https://example.org/>\n\nme@example.org\n");
}

TEST_F(TextExporterTest, PageTitleShowsItsTextOrItsLabel) {
  TextContent text;
  text.paragraphs = {paragraph(TextParagraph::Kind::kPlain, "The text")};
  add(object(ObjectType::kPageTitle, "Label of the first", text));
  add(object(ObjectType::kPageTitle, "Label of the second", TextContent()));
  EXPECT_EQ(exported(), "The text\n\nLabel of the second\n");
}

TEST_F(TextExporterTest, ObjectsWithoutContentLeaveNoGap) {
  add(object(ObjectType::kLog, "Log", LogContent{""}));
  add(object(ObjectType::kText, "Text", TextContent{}));
  add(object(ObjectType::kNotes, "Notes", NotesContent{}));
  add(object(ObjectType::kOther, ""));
  add(object(ObjectType::kLog, "Log", LogContent{"a"}));
  add(object(ObjectType::kNotes, "Notes", NotesContent{}));
  EXPECT_EQ(exported(), "a\n");
}

TEST_F(TextExporterTest, TableHasLayersSpansMarksAndNotes) {
  add(tableObject(nestedTable()));
  EXPECT_EQ(exported(),
            "Sales [a]\n"
            "Kind: Cars\n"
            "---------------------------\n"
            "|        | Year           |\n"
            "|        | Both years     |\n"
            "| Region |    2023 | 2024 |\n"
            "---------------------------\n"
            "| North  | 0.5 [b] |  1.5 |\n"
            "| South  |    10.5 | 11.5 |\n"
            "---------------------------\n"
            "In thousands.\n"
            "[a] Estimated.\n"
            "[b] Without the islands.\n"
            "\n"
            "Sales [a]\n"
            "Kind: Bikes\n"
            "--------------------------\n"
            "|        | Year          |\n"
            "|        | Both years    |\n"
            "| Region |  2023 |  2024 |\n"
            "--------------------------\n"
            "| North  | 100.5 | 101.5 |\n"
            "| South  | 110.5 | 111.5 |\n"
            "--------------------------\n"
            "In thousands.\n"
            "[a] Estimated.\n");
}

TEST_F(TextExporterTest, TabsSeparateCellsWithoutBordersOrBlanks) {
  spec_.text.setSeparator(kTab);
  spec_.text.setNotesAndCaptions(false);
  add(tableObject(nestedTable()));
  EXPECT_THAT(exported(), StartsWith("Sales\n"
                                     "Kind: Cars\n"
                                     "\tYear\t\n"
                                     "\tBoth years\t\n"
                                     "Region\t2023\t2024\n"
                                     "North\t0.5\t1.5\n"
                                     "South\t10.5\t11.5\n"
                                     "\n"));
}

TEST_F(TextExporterTest, NestedRowLabelsStandOnce) {
  PivotTable table;
  table.dimensions = {makeDimension("Sex", PivotPlace::kRows, 1, {"Men", "Women"}),
                      makeDimension("Age", PivotPlace::kRows, 2, {"young", "old"}),
                      makeDimension("C", PivotPlace::kColumns, 1, {"N"})};
  for (const int sex : {0, 1}) {
    for (const int age : {0, 1}) addCell(table, {sex, age, 0}, numberCell(sex * 2 + age));
  }
  add(tableObject(table));
  EXPECT_EQ(exported(),
            "---------------------\n"
            "|       |       | C |\n"
            "| Sex   | Age   | N |\n"
            "---------------------\n"
            "| Men   | young | 0 |\n"
            "|       | old   | 1 |\n"
            "| Women | young | 2 |\n"
            "|       | old   | 3 |\n"
            "---------------------\n");
  spec_.text.setSeparator(kTab);
  EXPECT_EQ(exported(), "\t\tC\nSex\tAge\tN\nMen\tyoung\t0\n\told\t1\nWomen\tyoung\t2\n\told\t3\n");
}

TEST_F(TextExporterTest, LayersAreThoseThatAreAskedFor) {
  PivotTable table = nestedTable();
  table.dimensions[2].shownLeaf = 1;
  add(tableObject(table));
  EXPECT_THAT(exported(), AllOf(HasSubstr("Kind: Bikes"), Not(HasSubstr("Kind: Cars"))));
  spec_.contents.setLayers(ExportContentsSpec::LAYERS_TYPE::ALL);
  EXPECT_THAT(exported(), AllOf(HasSubstr("Kind: Bikes"), HasSubstr("Kind: Cars")));
}

TEST_F(TextExporterTest, WithoutNotesNothingIsMarked) {
  spec_.text.setNotesAndCaptions(false);
  add(tableObject(nestedTable()));
  const std::string text = exported();
  EXPECT_THAT(text, Not(HasSubstr("[")));
  EXPECT_THAT(text, Not(HasSubstr("In thousands.")));
  EXPECT_THAT(text, HasSubstr("| North  |  0.5 |  1.5 |\n"));
}

TEST_F(TextExporterTest, BordersAreTheGivenCharacters) {
  spec_.text.setRowBorder("═");
  spec_.text.setColumnBorder("║");
  add(tableObject(oneCell("x")));
  EXPECT_EQ(exported(),
            "One\n"
            "═════════\n"
            "║   ║ C ║\n"
            "║ R ║ c ║\n"
            "═════════\n"
            "║ r ║ x ║\n"
            "═════════\n");
}

TEST_F(TextExporterTest, ColumnsOfAGivenWidthWrapWhatIsLonger) {
  spec_.text.setColumnWidth(6, "6", false);
  add(tableObject(oneCell("one two three")));
  EXPECT_EQ(exported(),
            "One\n"
            "-------------------\n"
            "|        | C      |\n"
            "| R      | c      |\n"
            "-------------------\n"
            "| r      | one    |\n"
            "|        | two    |\n"
            "|        | three  |\n"
            "-------------------\n");
  spec_.text.setColumnWidth(0, "0", true);
  EXPECT_THAT(exported(), HasSubstr("| r | one two three |\n"));
}

TEST_F(TextExporterTest, WidthsThatNoTextHasAreRefused) {
  add(tableObject(oneCell("x")));
  for (const int width : {0, -1, 10'001, 2'000'000'000}) {
    spec_.text.setColumnWidth(width, std::to_string(width), false);
    EXPECT_EQ(refusal(), "because a column can be 1 to 10000 characters wide");
  }
  spec_.text.setColumnWidth(10'000, "10000", false);
  EXPECT_EQ(refusal(), "");
}

TEST_F(TextExporterTest, EncodingIsTheOneAskedFor) {
  add(object(ObjectType::kLog, "", LogContent{"ß日"}));
  using Encodings = ExportTextSpec::ENCODING_TYPE;
  EXPECT_EQ(exported(), "ß日\n");
  spec_.text.setEncoding(Encodings::UTF16);
  EXPECT_EQ(exported(), std::string("\xFF\xFE\xDF\0\xE5\x65\n\0", 8));
  const ScopedEnvironment locale("LC_ALL", "xx_XX.ISO-8859-1");
  spec_.text.setEncoding(Encodings::LOCALE);
  EXPECT_THROW(exported(), std::runtime_error) << "it cannot hold all of it";
}

TEST_F(TextExporterTest, BordersThatTheEncodingCannotHoldAreRefused) {
  const ScopedEnvironment locale("LC_ALL", "xx_XX.ISO-8859-1");
  spec_.text.setEncoding(ExportTextSpec::ENCODING_TYPE::LOCALE);
  add(tableObject(oneCell("\xC3\x9F")));
  EXPECT_THAT(exported(), HasSubstr("\xDF"));
  spec_.text.setColumnBorder("║");
  EXPECT_THROW(exported(), std::runtime_error);
}

TEST_F(TextExporterTest, HostileTextsKeepTheirPlace) {
  const std::string hostile =
      "a\tb\x1b[2J\u202E\u2066\u200B\u2028\r\nnext|\x01\xFF" + std::string(1, '\0') + "end";
  add(tableObject(oneCell(hostile, hostile)));
  add(heading(hostile, {object(ObjectType::kLog, hostile, LogContent{hostile})}));
  const std::string text = exported();
  for (const char* unsafe : {"\t", "\x1b", "\u202E", "\u2066", "\u2028", "\r", "\x01", "\xFF"}) {
    EXPECT_THAT(text, Not(HasSubstr(unsafe)));
  }
  EXPECT_EQ(text.find('\0'), std::string::npos);
  std::vector<int> widths;
  for (const std::string& line : linesOf(text)) {
    if (line.starts_with("|") || line.starts_with("-")) widths.push_back(displayWidth(line));
  }
  EXPECT_EQ(widths.size(), 7U);
  EXPECT_THAT(widths, testing::Each(widths.front()));

  spec_.text.setSeparator(kTab);
  EXPECT_THAT(exported(),
              HasSubstr("\na b\uFFFD[2J\uFFFD\uFFFD\u200B\uFFFD next|\uFFFD\uFFFD\uFFFDend\ta b"));
}

TEST_F(TextExporterTest, FieldThatBeginsWithAQuotationMarkIsQuoted) {
  spec_.text.setSeparator(kTab);
  add(tableObject(oneCell("\"a\" b", "5\" wide")));
  EXPECT_THAT(exported(), EndsWith("\n5\" wide\t\"\"\"a\"\" b\"\n"));
}

TEST_F(TextExporterTest, LongRowLabelIsWrappedAndWarnedAbout) {
  const std::string label(kWidestTextColumn, 'x');
  add(tableObject(oneCell("v", label), "Fits"));
  add(tableObject(oneCell("v", label + "y"), "Does not"));
  add(tableObject(oneCell(label + "y"), "Is no label"));
  const std::string text = exported();
  EXPECT_THAT(text, HasSubstr("| " + label + " | v |\n"));
  EXPECT_THAT(text, HasSubstr("| " + label + " | v |\n| y" + std::string(254, ' ') + " |   |\n"));
  EXPECT_THAT(response_.warnings[0], ElementsAre("Does not"));
  EXPECT_THAT(response_.warnings[1], IsEmpty());
  EXPECT_THAT(response_.warnings[2], IsEmpty());

  spec_.text.setSeparator(kTab);
  EXPECT_THAT(exported(), HasSubstr("\n" + label + "y\tv\n"));
  EXPECT_THAT(response_.warnings[0], IsEmpty());
}

TEST_F(TextExporterTest, TableThatCannotBeShownIsSaidToBeTooLarge) {
  PivotTable table;
  for (const auto place : {PivotPlace::kRows, PivotPlace::kColumns}) {
    table.dimensions.push_back(
        makeDimension("D", place, 1, std::vector<std::string>(10'000, "category")));
  }
  addCell(table, {0, 0}, numberCell(1));
  add(tableObject(table, "Large"));
  add(object(ObjectType::kLog, "", LogContent{"next"}));
  EXPECT_THAT(exported(),
              AllOf(StartsWith("[This table cannot be shown: it is too large and nearly "
                               "empty, with 10000 rows and 10000 columns;"),
                    EndsWith(".]\n\nnext\n")));
  EXPECT_THAT(response_.warnings[1], ElementsAre("Large"));
}

TEST_F(TextExporterTest, DamagedTableIsSaidToBeOne) {
  PivotTable table = oneCell("x");
  table.cells[0].at = {5, 5};
  add(tableObject(table));
  EXPECT_THAT(exported(), StartsWith("[This table cannot be shown: "));
  EXPECT_THAT(response_.warnings[1], IsEmpty());
}

TEST_F(TextExporterTest, TableWithoutCellsOrCategoriesIsDrawn) {
  PivotTable table;
  table.title = textCell("Nothing");
  add(tableObject(table));
  EXPECT_THAT(exported(), StartsWith("Nothing\n"));
}

TEST_F(TextExporterTest, ManyColumnsAreOneLine) {
  constexpr int kColumns = 16'384;
  PivotTable table;
  std::vector<std::string> names;
  for (int i = 0; i < kColumns; ++i) names.push_back("c" + std::to_string(i));
  table.dimensions = {makeDimension("", PivotPlace::kRows, 1, {"r"}),
                      makeDimension("Columns", PivotPlace::kColumns, 1, names)};
  for (int i = 0; i < kColumns; ++i) addCell(table, {0, i}, numberCell(i));
  add(tableObject(table));
  const std::vector<std::string> lines = linesOf(exported());
  ASSERT_EQ(lines.size(), 6U);
  for (const std::string& line : lines) EXPECT_EQ(line.size(), lines[0].size());
  EXPECT_THAT(lines[4], EndsWith("|  16382 |  16383 |"));
  spec_.text.setSeparator(kTab);
  EXPECT_THAT(exported(), EndsWith("\t16382\t16383\n"));
}

TEST_F(TextExporterTest, CellOfAMegabyteIsThereWhole) {
  const std::string text(1 << 20, 'x');
  add(tableObject(oneCell(text)));
  const std::string bordered = exported();
  EXPECT_EQ(std::count(bordered.begin(), bordered.end(), 'x'), 1 << 20);
  EXPECT_LT(bordered.size(), text.size() + text.size() / 10);
  spec_.text.setSeparator(kTab);
  EXPECT_THAT(exported(), HasSubstr("\nr\t" + text + "\n"));
}

TEST_F(TextExporterTest, CellThatWouldFillTheDiskIsRefused) {
  add(tableObject(oneCell(std::string(60'000, '\n'))));
  spec_.text.setColumnWidth(10'000, "10000", false);
  EXPECT_EQ(refusal(),
            "because a table's wrapped cells would take more than a gigabyte; SEPARATOR=TAB wraps "
            "none");
  EXPECT_EQ(scratch_.entryCount(), 0U);
  spec_.text.setColumnWidth(10, "10", false);
  EXPECT_EQ(refusal(), "");
}

TEST_F(TextExporterTest, ChartsAreFilesBesideTheText) {
  add(pngChart("Sales by region"));
  add(pngChart("Second\nline"));
  EXPECT_EQ(exported(), "[Sales by region: doc001.png]\n\n[Second line: doc002.png]\n");
  EXPECT_EQ(scratch_.read("doc001.png"), pngPicture());
  EXPECT_EQ(scratch_.read("doc002.png"), pngPicture());
  EXPECT_EQ(response_.imageRoot, scratch_.file("doc"));
  EXPECT_EQ(response_.imageFormat, "PNG");
  EXPECT_EQ(response_.imageCount, 2);
}

TEST_F(TextExporterTest, ImageRootIsThatOfTheImageSubcommand) {
  std::string root = scratch_.file("picture");
  spec_.png.setOptionPresent(true);
  spec_.png.setImageRoot(root);
  spec_.text.setImageFormat(ChartImageFormat::BMP);  // of no account beside a subcommand
  add(pngChart("Chart"));
  EXPECT_EQ(exported(), "[Chart: picture001.png]\n");
  EXPECT_EQ(response_.imageRoot, root);
  std::filesystem::create_directory(scratch_.file("below"));
  root = scratch_.file("below/p");
  spec_.png.setImageRoot(root);
  EXPECT_EQ(exported(), "[Chart: below/p001.png]\n") << "wherever the folder itself stands";
}

TEST_F(TextExporterTest, ImagesAreInTheFormatAskedFor) {
  if (VORN_HAS_DRAWING == 0) GTEST_SKIP() << "this build draws no charts";
  add(object(ObjectType::kChart, "Chart",
             media("image/svg+xml",
                   "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"20\" height=\"10\">"
                   "<rect width=\"20\" height=\"10\" fill=\"red\"/></svg>")));
  spec_.text.setImageFormat(ChartImageFormat::BMP);
  EXPECT_EQ(exported(), "[Chart: doc001.bmp]\n");
  const std::string bmp = scratch_.read("doc001.bmp");
  EXPECT_THAT(bmp, StartsWith("BM"));
  EXPECT_EQ(bmp.at(18), 20);  // its width
  spec_.bmp.setOptionPresent(true);
  spec_.bmp.setPercentSize(200, "200");
  EXPECT_EQ(exported(), "[Chart: doc001.bmp]\n");
  EXPECT_EQ(scratch_.read("doc001.bmp").at(18), 40);
  EXPECT_EQ(response_.imageFormat, "BMP");
  spec_.bmp.setOptionPresent(false);
  spec_.jpg.setOptionPresent(true);
  spec_.jpg.setGrayscale(true);
  EXPECT_EQ(exported(), "[Chart: doc001.jpg]\n");
  EXPECT_THAT(scratch_.read("doc001.jpg"), StartsWith("\xFF\xD8\xFF"));
  EXPECT_EQ(response_.imageFormat, "JPG");
}

TEST_F(TextExporterTest, ChartThatCannotBeDrawnHasALineThatSaysWhy) {
  add(object(ObjectType::kChart, "Damaged", media("image/png", "no picture")));
  add(object(ObjectType::kChart, "Empty", MediaContent{"image/png", nullptr}));
  add(object(ObjectType::kModel, "Tree", media("application/xml", "<m/>")));
  add(pngChart("Sound"));
  const std::vector<std::string> lines = linesOf(exported());
  ASSERT_EQ(lines.size(), 7U);
  EXPECT_THAT(lines[0], StartsWith("[Damaged: not drawn. "));
  EXPECT_EQ(lines[2], "[Empty: not drawn. The chart is empty.]");
  EXPECT_EQ(lines[4], "[Tree: application/xml, 4 bytes]");
  EXPECT_EQ(lines[6], "[Sound: doc001.png]");
  EXPECT_EQ(response_.imageCount, 1);
}

TEST_F(TextExporterTest, FormatsThatNoChartIsDrawnInAreRefused) {
  add(pngChart("Chart"));
  spec_.emf.setOptionPresent(true);
  EXPECT_EQ(refusal(), "because this version cannot draw charts as EMF");
  spec_.emf.setOptionPresent(false);
  spec_.eps.setOptionPresent(true);
  EXPECT_EQ(refusal(), "because this version cannot draw charts as EPS");
  spec_.eps.setOptionPresent(false);
  spec_.tif.setOptionPresent(true);
  EXPECT_EQ(refusal(), "because this version cannot draw charts as TIF");
  EXPECT_EQ(scratch_.entryCount(), 0U);
}

TEST_F(TextExporterTest, FailureLeavesNoFileAndNoChangedOne) {
  scratch_.write("doc.txt", "old");
  add(pngChart("Chart"));
  add(pngChart("Chart"));
  // The second image's file cannot be made.
  std::filesystem::create_directory(scratch_.file("doc002.png"));
  try {
    exported();
    ADD_FAILURE() << "nothing was refused";
  } catch (const ExportError& error) {
    EXPECT_EQ(error.code(), ExportErrorCode::kInvalidRootName);
  }
  EXPECT_EQ(scratch_.read("doc.txt"), "old");
  EXPECT_EQ(scratch_.entryCount(), 2U);
}

TEST_F(TextExporterTest, FolderThatNobodyCanWriteToIsRefused) {
  add(object(ObjectType::kLog, "", LogContent{"a"}));
  spec_.text.setDocumentFile("/proc/self/doc.txt");
  EXPECT_THROW(exported(), StoreError);
}

TEST_F(TextExporterTest, FileThatMayNotBeReplacedStays) {
  add(object(ObjectType::kLog, "", LogContent{"a"}));
  std::filesystem::create_directory(scratch_.file("doc.txt"));
  EXPECT_THROW(exported(), ExportError);
  EXPECT_EQ(scratch_.entryCount(), 1U);
}

TEST_F(TextExporterTest, PathsThatNoFileCanHaveAreRefused) {
  add(object(ObjectType::kLog, "", LogContent{"a"}));
  for (const std::string& path : {std::string(), scratch_.path(), scratch_.file("none/doc.txt")}) {
    spec_.text.setDocumentFile(path);
    EXPECT_THROW(exported(), ExportError) << path;
  }
  EXPECT_EQ(scratch_.entryCount(), 0U);
}

/// Files may not become larger than `bytes` while it lives, as on a disk that is full.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  void (*handler_)(int);
  rlimit before_{};
};

TEST_F(TextExporterTest, FullDiskLeavesNoFile) {
  add(object(ObjectType::kLog, "", LogContent{std::string(1'000'000, 'x')}));
  {
    const FileSizeLimit limit(400'000);
    EXPECT_THROW(exported(), StoreError);
  }
  EXPECT_EQ(scratch_.entryCount(), 0U);
  EXPECT_EQ(exported().size(), 1'000'001U);
}

/// The fields of a line between tabs, as readers of such files take them.
std::vector<std::string> fieldsOf(const std::string& line) {
  std::vector<std::string> fields;
  std::size_t at = 0;
  while (true) {
    std::string& field = fields.emplace_back();
    if (at < line.size() && line[at] == '"') {
      for (++at; at < line.size(); ++at) {
        if (line[at] == '"' && line[++at] != '"') break;
        field += line[at];
      }
    }
    for (; at < line.size() && line[at] != '\t'; ++at) field += line[at];
    if (at++ >= line.size()) return fields;
  }
}

/// The lines of a grid as fields.
std::vector<std::vector<std::string>> fieldsOf(const TableGrid& grid) {
  std::vector<std::vector<std::string>> rows(
      static_cast<std::size_t>(grid.rowCount),
      std::vector<std::string>(static_cast<std::size_t>(grid.columnCount)));
  for (const GridCell& cell : grid.cells) {
    rows[static_cast<std::size_t>(cell.row)][static_cast<std::size_t>(cell.column)] =
        shownLine(cell.text);
  }
  return rows;
}

TEST_F(TextExporterTest, EveryValueOfAnyTableIsInItsField) {
  spec_.text.setSeparator(kTab);
  spec_.text.setNotesAndCaptions(false);
  std::vector<std::vector<TableGrid>> tables;
  for (unsigned seed = 0; seed < 1'000; ++seed) {
    PivotTable table = DocumentGenerator(seed).table();
    table.titleHidden = true;
    try {
      tables.push_back(layoutTable(table));
    } catch (const std::logic_error&) {
      continue;  // has a line that says so, as another test sees
    }
    add(tableObject(std::move(table)));
  }
  EXPECT_GT(tables.size(), 500U);
  const std::vector<std::string> lines = linesOf(exported());
  std::size_t line = 0;
  for (const std::vector<TableGrid>& grids : tables) {
    for (const TableGrid& grid : grids) {
      if (line > 0) {
        EXPECT_EQ(lines.at(line++), "");
      }
      for (const LayerCaption& layer : grid.layers) {
        line += linesOf(shownText(layer.dimension + layer.category) + "x").size();
      }
      if (grid.rowCount == 0 || grid.columnCount == 0) {
        EXPECT_EQ(lines.at(line++), "(empty)");
        continue;
      }
      for (const auto& fields : fieldsOf(grid)) {
        ASSERT_EQ(fieldsOf(lines.at(line)), fields) << "line " << line + 1;
        ++line;
      }
    }
  }
  EXPECT_EQ(line, lines.size());
}

struct LawCase {
  const char* condition;
  std::function<void(ExportTextSpec&)> choose;
};

class TextLaws : public TextExporterTest, public testing::WithParamInterface<LawCase> {};

TEST_P(TextLaws, LinesOfATableAreEquallyWide) {
  // Borders that stand in no generated text.
  spec_.text.setRowBorder("═");
  spec_.text.setColumnBorder("║");
  GetParam().choose(spec_.text);
  spec_.contents.setExport(ExportContentsSpec::EXPORT_TYPE::ALL);
  spec_.contents.setLayers(ExportContentsSpec::LAYERS_TYPE::ALL);
  int tableLines = 0;
  for (unsigned seed = 0; seed < 4; ++seed) {
    const auto document = DocumentGenerator(seed).document(200);
    ASSERT_NO_THROW(runOn(*document)) << "seed " << seed;
    int width = 0;
    for (const std::string& line : linesOf(scratch_.read("doc.txt"))) {
      if (!line.starts_with("═") && !line.starts_with("║")) {
        width = 0;
        continue;
      }
      ++tableLines;
      if (width == 0) width = displayWidth(line);
      EXPECT_EQ(displayWidth(line), width) << "seed " << seed << ": " << line;
      EXPECT_TRUE(line.ends_with("═") || line.ends_with("║")) << line;
    }
  }
  EXPECT_GT(tableLines, 1'000);
}

INSTANTIATE_TEST_SUITE_P(
    Widths, TextLaws,
    testing::Values(
        LawCase{"Fitting", [](ExportTextSpec&) {}},
        LawCase{"One", [](ExportTextSpec& spec) { spec.setColumnWidth(1, "1", false); }},
        LawCase{"Two", [](ExportTextSpec& spec) { spec.setColumnWidth(2, "2", false); }},
        LawCase{"Nine", [](ExportTextSpec& spec) { spec.setColumnWidth(9, "9", false); }},
        LawCase{"WithoutNotes", [](ExportTextSpec& spec) { spec.setNotesAndCaptions(false); }}),
    [](const testing::TestParamInfo<LawCase>& test) { return test.param.condition; });

}  // namespace
}  // namespace vornwout
