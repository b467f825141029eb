// OUTPUT EXPORT: its frame, the rules between its subcommands, EMF and TIF, and what a host's
// answer or failure becomes.
#include <algorithm>
#include <functional>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/adapter/go_to_caller.h"
#include "platform/message/parser_message.h"
#include "platform/pivot/bp_procedure.h"
#include "tests/support/export_run.h"
#include "tests/support/schema_check.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kOpened = "open Output Export 2";
constexpr const char* kClosed = "close Output Export";
constexpr const char* kSeveralImages =
    "2: Exporting to more than one image type in a single OUTPUT EXPORT command is not allowed...";
constexpr const char* kSeveralDocuments =
    "3: Exporting to more than one document type in a single OUTPUT EXPORT command is not allowed.";
constexpr const char* kNoImages =
    "2: Image file formats cannot be specified for document types other than HTML and TEXT...";

enum class Kind { kDocument, kDocumentWithImages, kImage };

struct Subcommand {
  std::string name;
  Kind kind;
  std::string text;
  std::string element;
};

/// In the order in which their elements are written.
const Subcommand kSubcommands[] = {
    {"DOC", Kind::kDocument, "/DOC DOCUMENTFILE='f' ", "<doc documentFile=\"f\"/>"},
    {"HTML", Kind::kDocumentWithImages, "/HTML DOCUMENTFILE='f' ", "<html documentFile=\"f\"/>"},
    {"REPORT", Kind::kDocumentWithImages, "/REPORT DOCUMENTFILE='f' ",
     "<report documentFile=\"f\"/>"},
    {"PDF", Kind::kDocument, "/PDF DOCUMENTFILE='f' ", "<pdf documentFile=\"f\"/>"},
    {"PPT", Kind::kDocument, "/PPT DOCUMENTFILE='f' ", "<ppt documentFile=\"f\"/>"},
    {"TEXT", Kind::kDocumentWithImages, "/TEXT DOCUMENTFILE='f' ", "<text documentFile=\"f\"/>"},
    {"XLS", Kind::kDocument, "/XLS DOCUMENTFILE='f' ", "<xls documentFile=\"f.xls\"/>"},
    {"XLSX", Kind::kDocument, "/XLSX DOCUMENTFILE='f' ", "<xlsx documentFile=\"f.xlsx\"/>"},
    {"XLSM", Kind::kDocument, "/XLSM DOCUMENTFILE='f' ", "<xlsm documentFile=\"f\"/>"},
    {"BMP", Kind::kImage, "/BMP IMAGEROOT='i' ", "<bmp imageRoot=\"i\"/>"},
    {"EMF", Kind::kImage, "/EMF IMAGEROOT='i' ", "<emf imageRoot=\"i\"/>"},
    {"EPS", Kind::kImage, "/EPS IMAGEROOT='i' ", "<eps imageRoot=\"i\"/>"},
    {"JPG", Kind::kImage, "/JPG IMAGEROOT='i' ", "<jpg imageRoot=\"i\"/>"},
    {"PNG", Kind::kImage, "/PNG IMAGEROOT='i' ", "<png imageRoot=\"i\"/>"},
    {"TIF", Kind::kImage, "/TIF IMAGEROOT='i' ", "<tif imageRoot=\"i\"/>"},
};

void expectNothingLeft() {
  EXPECT_EQ(BpProcedure::current(), nullptr);
  EXPECT_EQ(ParserMessage::current(), nullptr);
  EXPECT_EQ(CurrentCommand::current(), nullptr);
  EXPECT_EQ(GetAdapter(), nullptr);
  EXPECT_THAT(outputSinks(), IsEmpty());
}

TEST(OutputExport, DeclaresItsSubcommandsInTheirOrder) {
  const CommandDescriptor grammar = grammarOf(outexport_);
  EXPECT_EQ(grammar.name(), "OUTPUT EXPORT");
  EXPECT_EQ(grammar.title(), "Output Export");
  std::vector<std::string> names;
  for (const SubComDescriptor& subcommand : grammar.subcommands()) {
    names.push_back(subcommand.name());
    EXPECT_EQ(subcommand.spec(), UPSpecTypes::kKeywords) << subcommand.name();
    EXPECT_FALSE(subcommand.required() || subcommand.repeatable()) << subcommand.name();
  }
  EXPECT_THAT(names, ElementsAre("", "CONTENTS", "DOC", "HTML", "REPORT", "PDF", "PPT", "TEXT",
                                 "XLS", "XLSX", "XLSM", "BMP", "EMF", "EPS", "JPG", "PNG", "TIF"));
  EXPECT_THAT(grammar.groups(), IsEmpty());
}

TEST(OutputExport, DeclaresItsPlainImagesAlike) {
  for (const std::string name : {"EMF", "TIF"}) {
    EXPECT_THAT(exportGrammarOf(name),
                ElementsAre(name + " 1 ff", "IMAGEROOT 4 ft 0", "PERCENTSIZE 7 ff 0 >=0 <=200"));
  }
}

TEST(OutputExport, SendsItsDocumentOnceBehindTheFlushAndReportsTheAnswer) {
  const ExportFolder folder;
  const ExportRun run(folder, "/PDF DOCUMENTFILE='f'");
  EXPECT_THAT(run.events,
              ElementsAre(kOpened, "flush", "export", "note Image File Count",
                          "note Image File Root Name", "table Export Summary", kClosed));
  EXPECT_THAT(run.sent(), ElementsAre("<pdf documentFile=\"f\"/>"));
  EXPECT_THAT(run.host.requests, IsEmpty());
  expectNothingLeft();
}

/// Looks when the messages of the command are there.
struct WatchingRun : CommandRun {
  void procedureOpened(const ProcedureRecord& record) override {
    CommandRun::procedureOpened(record);
    atOpening = ParserMessage::current() != nullptr;
  }
  void procedureClosed(const ProcedureRecord& record) override {
    CommandRun::procedureClosed(record);
    atClosing = ParserMessage::current() != nullptr;
  }
  void logFlushed() override {
    const ParserMessage* messages = ParserMessage::current();
    ASSERT_NE(messages, nullptr);
    names = {messages->commandName(), messages->procedureTitle()};
  }
  bool atOpening = true;
  bool atClosing = true;
  std::vector<std::string> names;
};

TEST(OutputExport, GivesItsMessagesItsCommandAsNameAndTitle) {
  FakeHost host;
  WatchingRun run;
  run.run(outexport_, "OUTPUT EXPORT.", &host);
  EXPECT_THAT(run.names, ElementsAre("OUTPUT EXPORT", "OUTPUT EXPORT"));
  EXPECT_FALSE(run.atOpening);
  EXPECT_FALSE(run.atClosing);
}

TEST(OutputExport, EndsAtWhatTheParserRefuses) {
  const ExportFolder folder;
  const ExportRun run(folder, "PRINT=MAYBE /PDF DOCUMENTFILE='f' /DOC PAGESIZE=MM(1)");
  EXPECT_THAT(run.events, ElementsAre(kOpened, "parser InvalidParamValue", "flush", kClosed));
  expectNothingLeft();
}

TEST(OutputExport, NeedsOneOfItsFifteenSubcommands) {
  expectRefused(
      {{"", {}, "OUTPUT"}, {"NAME=a PRINT=NEVER", {}, "OUTPUT"}, {"/CONTENTS EXPORT=ALL", {}}});
}

TEST(OutputExport, ExportsEachSubcommandAlone) {
  for (const Subcommand& only : kSubcommands) expectSent({{only.text, only.element}});
}

/// What two subcommands say and send together.
struct Together {
  std::vector<std::string> said;
  std::vector<std::string> sent;
};

Together together(const Subcommand& first, const Subcommand& second) {
  if (first.name == second.name) return {{"SubComRepeated(" + first.name + ")"}, {}};
  const int images = (first.kind == Kind::kImage) + (second.kind == Kind::kImage);
  const std::string both =
      &first < &second ? first.element + second.element : second.element + first.element;
  if (images == 2) return {{kSeveralImages}, {both}};
  if (images == 0) return {{kSeveralDocuments}, {}};
  const Subcommand& document = first.kind == Kind::kImage ? second : first;
  if (document.kind == Kind::kDocumentWithImages) return {{}, {both}};
  return {{kNoImages}, {document.element}};
}

TEST(OutputExport, JudgesEveryPairOfItsSubcommands) {
  const ExportFolder folder;
  for (const Subcommand& first : kSubcommands) {
    for (const Subcommand& second : kSubcommands) {
      const ExportRun run(folder, first.text + second.text);
      const Together expected = together(first, second);
      EXPECT_EQ(run.said(), expected.said) << first.name << " " << second.name;
      EXPECT_EQ(run.sent(), expected.sent) << first.name << " " << second.name;
    }
  }
}

TEST(OutputExport, JudgesMoreThanTwoSubcommands) {
  const struct {
    const char* arguments;
    std::vector<std::string> said;
    std::vector<std::string> sent;
  } cases[] = {
      {"/HTML DOCUMENTFILE='f' /PNG /TIF",
       {kSeveralImages},
       {"<html documentFile=\"f\"/><png/><tif/>"}},
      {"/PDF DOCUMENTFILE='f' /PNG IMAGEROOT='i' /TIF IMAGEROOT='j'",
       {kSeveralImages, kNoImages},
       {"<pdf documentFile=\"f\"/>"}},
      {"/PDF DOCUMENTFILE='f' /HTML DOCUMENTFILE='g' /EPS", {kNoImages, kSeveralDocuments}, {}},
      {"/BMP IMAGEROOT='i' /EMF IMAGEROOT='i' /EPS IMAGEROOT='i' /JPG IMAGEROOT='i' "
       "/PNG IMAGEROOT='i' /TIF IMAGEROOT='i' /DOC DOCUMENTFILE='f'",
       {kSeveralImages, kNoImages},
       {"<doc documentFile=\"f\"/>"}},
      {"/HTML DOCUMENTFILE='f' /TEXT DOCUMENTFILE='g' /REPORT DOCUMENTFILE='h'",
       {kSeveralDocuments},
       {}},
      // A refused subcommand does not count.
      {"/PDF DOCUMENTFILE='f' /DOC DOCUMENTFILE='g' TOPMARGIN=MM(0)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (0, 0, MM)"},
       {"<pdf documentFile=\"f\"/>"}},
      {"/PNG IMAGEROOT='i' /TIF IMAGEROOT='j' PERCENTSIZE=0",
       {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... "
        "(0, 0, 200PERCENTSIZE)"},
       {"<png imageRoot=\"i\"/>"}},
  };
  const ExportFolder folder;
  for (const auto& test : cases) {
    const ExportRun run(folder, test.arguments);
    EXPECT_EQ(run.said(), test.said) << test.arguments;
    EXPECT_EQ(run.sent(), test.sent) << test.arguments;
  }
}

constexpr const char* kRootRequired =
    "error: When an image type subcommand is used, the IMAGEROOT keyword is required. ()";
constexpr const char* kFileRequired =
    "error: When a document type subcommand is used, the DOCUMENTFILE keyword is required. ()";

TEST(OutputExport, TakesTheOptionsOfImagesBesideADocument) {
  const ExportFolder folder;
  const struct {
    const char* image;
    const char* element;
  } cases[] = {
      {"/EMF PERCENTSIZE=50", "<emf percentSize=\"50\"/>"},
      {"/TIF PERCENTSIZE=50", "<tif percentSize=\"50\"/>"},
      {"/BMP PERCENTSIZE=50 COMPRESS=NO", "<bmp compress=\"false\" percentSize=\"50\"/>"},
      {"/JPG PERCENTSIZE=50 GRAYSCALE=YES", "<jpg percentSize=\"50\" grayscale=\"true\"/>"},
      {"/PNG PERCENTSIZE=50 DEPTH=COLORS16", "<png percentSize=\"50\" depth=\"COLORS16\"/>"},
      {"/EPS WIDTH=PERCENT(50)", "<eps width=\"50\" widthUnit=\"PERCENT\"/>"},
  };
  for (const auto& test : cases) {
    const ExportRun run(folder, std::string("/HTML DOCUMENTFILE='f' ") + test.image);
    EXPECT_THAT(run.sent(), ElementsAre(std::string("<html documentFile=\"f\"/>") + test.element));
  }
}

TEST(OutputExport, ReadsOnBehindAMissingFile) {
  const ExportFolder folder;
  const struct {
    const char* arguments;
    std::vector<std::string> said;
  } cases[] = {
      {"/EMF PERCENTSIZE=0",
       {kRootRequired,
        "error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... "
        "(0, 0, 200PERCENTSIZE)"}},
      {"/DOC PAGESIZE=MM(1) TOPMARGIN=MM(0)",
       {kFileRequired, "error: Parameter ^2 requrires two dimensions, width and height. (PAGESIZE)",
        "error: Value ^1 should be greater than ^2 for parameter ^3... (0, 0, MM)"}},
      {"/PPT SLIDESIZE=MM(1)",
       {kFileRequired,
        "error: Parameter ^2 requrires two dimensions, width and height. (SLIDESIZE)"}},
      {"/TEXT COLUMNWIDTH=-1", {kFileRequired}},
      {"/REPORT URL='a'", {kFileRequired}},
      // Of two numbers that are refused, the first is told.
      {"/DOC DOCUMENTFILE='d' PAGESIZE=MM(0 -1)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (0, 0, MM)"}},
      // Images are judged before the documents behind them are read.
      {"/PNG IMAGEROOT='i' /TIF IMAGEROOT='j' /DOC DOCUMENTFILE='d' TOPMARGIN=MM(0)",
       {kSeveralImages,
        "error: Value ^1 should be greater than ^2 for parameter ^3... (0, 0, MM)"}},
      // What the command itself has to say is not the host's answer.
      {"PRINT=NEVER /HTML DOCUMENTFILE='h' /PDF DOCUMENTFILE='d'", {kSeveralDocuments}},
  };
  for (const auto& test : cases) {
    const ExportRun run(folder, test.arguments);
    std::vector<std::string> said = run.said();
    ASSERT_GE(said.size(), test.said.size()) << test.arguments;
    said.resize(test.said.size());
    EXPECT_EQ(said, test.said) << test.arguments;
  }
}

TEST(OutputExport, ReadsItsSubcommandsInItsOwnOrder) {
  // Each has a value that is refused, and the messages follow the order of reading.
  std::string arguments;
  for (const char* name : {"XLSM", "XLSX", "XLS", "PPT", "PDF", "DOC"}) {
    arguments += std::string(" /") + name + " DOCUMENTFILE='" + name + "/f'";
  }
  for (const char* name : {"TIF", "PNG", "JPG", "EMF", "BMP"}) {
    arguments += std::string(" /") + name + " IMAGEROOT='i' PERCENTSIZE=" + name;
  }
  arguments += " /EPS IMAGEROOT='i' WIDTH=PERCENT(EPS)";
  for (const char* name : {"TEXT", "REPORT", "HTML"}) {
    arguments += std::string(" /") + name + " DOCUMENTFILE='" + name + "/f'";
  }
  const ExportFolder folder;
  const ExportRun run(folder, arguments);
  std::vector<std::string> order;
  for (const ParserMessageRecord& record : run.parserMessages) {
    std::string first = folder.without(record.arguments.front());
    order.push_back(first.substr(0, first.find('/')));
  }
  EXPECT_THAT(order, ElementsAre("HTML", "REPORT", "TEXT", "BMP", "EMF", "EPS", "JPG", "PNG", "TIF",
                                 "DOC", "PDF", "PPT", "XLS", "XLSX", "XLSM", "DOC"))
      << "the last is the list of subcommands of which one is required";
}

TEST(OutputExport, TakesAPercentSizeForItsPlainImages) {
  for (const std::string name : {"EMF", "TIF"}) {
    const std::string start = "/" + name + " IMAGEROOT='i' PERCENTSIZE=";
    const std::string element = name == "EMF" ? "<emf" : "<tif";
    expectSent({{start + "200", element + " imageRoot=\"i\" percentSize=\"200\"/>"},
                {start + "0.50", element + " imageRoot=\"i\" percentSize=\"0.50\"/>"}});
    for (const std::string value : {"0", "200.5", "-1", "BIG", "1e999", "'50'"}) {
      std::string token = value;
      token.erase(std::remove(token.begin(), token.end(), '\''), token.end());
      expectRefused({{start + value,
                      {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for "
                       "parameter ^4... (" +
                       token + ", 0, 200PERCENTSIZE)"},
                      value}});
    }
  }
}

TEST(OutputExport, ShowsTheBoundaryMessageWithItsArgumentsRunTogether) {
  const ExportFolder folder;
  const ExportRun run(folder, "/TIF IMAGEROOT='i' PERCENTSIZE=0");
  ASSERT_FALSE(run.parserMessages.empty());
  EXPECT_EQ(run.parserMessages.front().text,
            "Value 0 breaks lower boundary 0 or upper boundary 200PERCENTSIZE for parameter ...");
}

TEST(OutputExport, ShowsTheDimensionsMessageWithoutTheKeyword) {
  const ExportFolder folder;
  const ExportRun run(folder, "/DOC DOCUMENTFILE='a.doc' PAGESIZE=INCHES(8.5)");
  ASSERT_FALSE(run.parserMessages.empty());
  EXPECT_EQ(run.parserMessages.front().text,
            "Parameter  requrires two dimensions, width and height.");
  EXPECT_THAT(run.parserMessages.front().arguments, ElementsAre("PAGESIZE"));
}

TEST(OutputExport, SendsImagesAloneWithoutADocumentsName) {
  const ExportFolder folder;
  ExportResponse refusal;
  refusal.success = false;
  refusal.errorCode = 6;
  const ExportRun images(folder, "/PNG IMAGEROOT='x'", exportResponseXml(refusal));
  EXPECT_THAT(images.sent(), ElementsAre("<png imageRoot=\"x\"/>"));
  EXPECT_THAT(images.said(), ElementsAre("3:  not a valid file name..."));
  const ExportRun document(folder, "/XLS DOCUMENTFILE='x'", exportResponseXml(refusal));
  EXPECT_THAT(document.said(), ElementsAre("3: x.xls not a valid file name..."));
}

TEST(OutputExport, NamesNoImageRoot) {
  const ExportFolder folder;
  ExportResponse refusal;
  refusal.success = false;
  refusal.errorCode = 7;
  const ExportRun run(folder, "/PNG IMAGEROOT='x'", exportResponseXml(refusal));
  EXPECT_THAT(run.said(), ElementsAre("3:  is not a valid root name."));
}

TEST(OutputExport, PassesItsPrintOptionOn) {
  ExportResponse refusal;
  refusal.success = false;
  refusal.errorCode = 2;
  refusal.name = "doc1";
  const std::string missing = "3: The specified Viewer document doc1 does not exist.";
  const struct {
    const char* print;
    std::vector<std::string> said;
    std::size_t tables;
  } cases[] = {
      {"", {missing}, 1},
      {"PRINT=ALWAYS", {missing}, 1},
      {"PRINT=ERRORS", {missing}, 0},
      {"PRINT=NEVER", {}, 0},
  };
  const ExportFolder folder;
  for (const auto& test : cases) {
    const std::string arguments = std::string("NAME=doc1 ") + test.print + " /PDF DOCUMENTFILE='f'";
    EXPECT_EQ(ExportRun(folder, arguments, exportResponseXml(refusal)).said(), test.said);
    const ExportRun success(folder, arguments);
    EXPECT_EQ(success.tables.size(), test.tables) << test.print;
    EXPECT_THAT(success.said(), IsEmpty()) << test.print;
  }
}

TEST(OutputExport, WithoutAdapterIsLikeAnEmptyAnswerUnlessTheParserRefusesIt) {
  const ExportFolder folder;
  const std::string missing = "output Failed to export output Response not received from Client...";
  const CommandRun none(outexport_, "OUTPUT EXPORT /PDF DOCUMENTFILE='f'.", nullptr);
  EXPECT_THAT(none.events, ElementsAre(kOpened, "flush", missing, kClosed));
  const ExportRun empty(folder, "/PDF DOCUMENTFILE='f'", "");
  EXPECT_THAT(empty.events, ElementsAre(kOpened, "flush", "export", missing, kClosed));
  const CommandRun refused(outexport_, "OUTPUT EXPORT /FOO.", nullptr);
  EXPECT_THAT(refused.events, ElementsAre(kOpened, "parser UnknownSubCom", "flush", kClosed));
  // It is no summary that is left out, so PRINT does not ask for silence here.
  const CommandRun never(outexport_, "OUTPUT EXPORT PRINT=NEVER /PDF DOCUMENTFILE='f'.", nullptr);
  EXPECT_THAT(never.events, ElementsAre(kOpened, "flush", missing, kClosed));
}

/// A run with a host that throws.
struct ThrowingRun : CommandRun {
  explicit ThrowingRun(std::function<void()> thrower) {
    host.whenExported = std::move(thrower);
    run(outexport_, "OUTPUT EXPORT /PDF DOCUMENTFILE='f'.", &host);
  }
  FakeHost host;
};

TEST(OutputExport, ReportsWhatTheHostThrows) {
  const ExportFolder folder;
  const struct {
    std::function<void()> thrower;
    const char* said;
  } cases[] = {
      {[] { throw std::runtime_error("disk full"); }, "Failed to export output disk full... (3)"},
      {[] { throw std::runtime_error(""); }, "Failed to export output ... (3)"},
      {[] { throw std::runtime_error("no ^1"); }, "Failed to export output no ^1... (3)"},
      {[] { throw "text"; }, "Failed to export output... (3)"},
      {[] { throw std::string("text"); }, "Failed to export output... (3)"},
      {[] { throw 1; }, "Failed to export output... (3)"},
  };
  for (const auto& test : cases) {
    const ThrowingRun run(test.thrower);
    EXPECT_THAT(run.outputTexts(), ElementsAre(test.said));
    EXPECT_THAT(run.tables, IsEmpty());
    EXPECT_EQ(run.events.back(), kClosed);
    expectNothingLeft();
  }
}

TEST(OutputExport, LetsTheHostsUnwindingPassAndClosesEverything) {
  const ExportFolder folder;
  FakeHost host;
  host.whenExported = [] { throw VornGoToCaller(); };
  CommandRun run;
  EXPECT_THROW(run.run(outexport_, "OUTPUT EXPORT /PDF DOCUMENTFILE='f'.", &host), VornGoToCaller);
  EXPECT_THAT(run.events, ElementsAre(kOpened, "flush", kClosed));
  expectNothingLeft();
  host.whenExported = nullptr;
  host.exportAnswer = exportResponseXml(ExportResponse());
  const CommandRun next(outexport_, "OUTPUT EXPORT /PDF DOCUMENTFILE='f'.", &host);
  EXPECT_EQ(next.tables.size(), 1U);
}

TEST(OutputExport, KeepsNothingBetweenCalls) {
  const ExportFolder folder;
  const ExportRun first(folder,
                        "NAME=a PRINT=NEVER /CONTENTS LAYERS=ALL /HTML DOCUMENTFILE='f' /TIF");
  const ExportRun second(folder, "/PDF DOCUMENTFILE='g'");
  EXPECT_THAT(second.sent(), ElementsAre("<pdf documentFile=\"g\"/>"));
  EXPECT_EQ(second.tables.size(), 1U);
}

TEST(OutputExport, SendsDocumentsThatAreValid) {
  const ExportFolder folder;
  const char* const commands[] = {
      "NAME='a<b' PRINT=ERRORS /CONTENTS EXPORT=ALL LAYERS=VISIBLE MODELVIEWS=ALL "
      "/DOC DOCUMENTFILE='f' NOTESCAPTIONS=NO WIDETABLES=SHRINK PAGESIZE=INCHES(8.5 11) "
      "TOPMARGIN=MM(1) BOTTOMMARGIN=MM(2) LEFTMARGIN=MM(3) RIGHTMARGIN=MM(4) PAGEBREAKS=YES",
      "/HTML DOCUMENTFILE='f' NOTESCAPTIONS=NO IMAGEFORMAT=BMP STYLING=NO INTERACTLAYERS=YES /EMF "
      "PERCENTSIZE=50 /BMP PERCENTSIZE=1 COMPRESS=NO",
      "/REPORT DOCUMENTFILE='f' TITLE=FILENAME FORMAT=MHT EXCLUDE=LOGS NOTES URL=('a' 'b', 'c' "
      "'d') "
      "RESTYLE=NO /JPG PERCENTSIZE=200 GRAYSCALE=YES",
      "/PDF DOCUMENTFILE='f' EMBEDBOOKMARKS=NO EMBEDFONTS=NO",
      "/PPT DOCUMENTFILE='f' NOTESCAPTIONS=NO SLIDETITLES=NO WIDETABLES=ASIS SLIDESIZE=MM(1 2) "
      "TOPMARGIN=INCHES(.5)",
      "/TEXT DOCUMENTFILE='f' ENCODING=UTF16 NOTESCAPTIONS=NO COLUMNWIDTH=12 SEPARATOR=TAB "
      "ROWBORDER='=' COLUMNBORDER='\xC3\xA4' IMAGEFORMAT=JPG /PNG DEPTH=COLORS16 PERCENTSIZE=+3",
      "/TEXT DOCUMENTFILE='f' COLUMNWIDTH=AUTOFIT /TIF PERCENTSIZE=1e1",
      "/XLS DOCUMENTFILE='f' OPERATION=CREATESHEET SHEET='s' LOCATION=STARTCELL('B4') "
      "NOTESCAPTIONS=NO",
      "/XLSX DOCUMENTFILE='f' LOCATION=LASTROW",
      "/XLSM DOCUMENTFILE='f' LOCATION=LASTCOLUMN",
      "/EPS IMAGEROOT='i' WIDTH=PERCENT(50) PREVIEW=YES FONTHANDLING=CURVES",
  };
  std::vector<std::string> documents;
  for (const char* command : commands) {
    const ExportRun run(folder, command);
    ASSERT_EQ(run.host.exportDocuments.size(), 1U) << command;
    documents.push_back(run.host.exportDocuments.front());
  }
  EXPECT_EQ(SchemaCheck("export-document.xsd").refusal(documents), "");
}

}  // namespace
}  // namespace vornwout
