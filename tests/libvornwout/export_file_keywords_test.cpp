// OUTPUT EXPORT: IMAGEROOT and DOCUMENTFILE, read in every subcommand in the same way.
#include "libvornwout/export/export_file_keywords.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/encoding.h"
#include "tests/support/export_run.h"
#include "tests/support/parsed_command.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kDocuments[] = {"DOC",  "HTML", "REPORT", "PDF", "PPT",
                                      "TEXT", "XLS",  "XLSX",   "XLSM"};
constexpr const char* kImages[] = {"BMP", "EMF", "EPS", "JPG", "PNG", "TIF"};

constexpr const char* kNeedsFile =
    "error: When a document type subcommand is used, the DOCUMENTFILE keyword is required. ()";
constexpr const char* kNeedsRoot =
    "error: When an image type subcommand is used, the IMAGEROOT keyword is required. ()";

std::string noAccess(const std::string& file) {
  return "error: File ^1 has no access... (" + file + ")";
}

/// A command with the subcommand PNG, whose IMAGEROOT takes whatever is written.
CommandDescriptor looseGrammar() {
  CommandDescriptor command("GO");
  SubComDescriptor png("PNG", UPSpecTypes::kKeywords, false, false);
  png.addParamDesc(kImageRoot, UPSpecTypes::kRawTokens, false, true);
  png.addParamDesc(kDocumentFile, UPSpecTypes::kRawTokens, false, true);
  command.addSubComDesc(png);
  return command;
}

TEST(ReadImageRoot, ReadsWhatIsThereAndRequiresItOnlyWhenAsked) {
  const ScopedPathContext context({"/home/me", {{"pics", "/srv/pics"}}});
  const struct {
    const char* arguments;
    bool required;
    bool isRead;
    const char* root;
    std::vector<std::string> operations;
  } cases[] = {
      {"/PNG IMAGEROOT='a'.", true, true, "/home/me/a", {}},
      {"/PNG IMAGEROOT='a'.", false, true, "/home/me/a", {}},
      {"/PNG IMAGEROOT=a.", false, true, "/home/me/a", {}},
      {"/PNG IMAGEROOT='../b/c'.", false, true, "/home/b/c", {}},
      {"/PNG IMAGEROOT='/x/../y'.", false, true, "/x/../y", {}},
      {"/PNG IMAGEROOT='pics/p'.", false, true, "/srv/pics/p", {}},
      {"/PNG IMAGEROOT=''.", false, true, "", {}},
      {"/PNG.", false, false, "before", {}},
      {"/PNG.", true, false, "before", {"GenericError"}},
      {"/PNG IMAGEROOT.", false, false, "before", {"WrongValueType"}},
      {"/PNG IMAGEROOT='a' 'b'.", false, false, "before", {"WrongValueType"}},
      {".", true, false, "before", {}},
  };
  for (const auto& test : cases) {
    const ParsedCommand parsed(looseGrammar(), test.arguments);
    std::string root = "before";
    EXPECT_EQ(
        readImageRoot(root, parsed.spec().getSubComObj("PNG"), parsed.messages(), test.required),
        test.isRead)
        << test.arguments;
    EXPECT_EQ(root, test.root) << test.arguments;
    std::vector<std::string> operations;
    for (const auto& record : parsed.records) operations.emplace_back(record.operation);
    EXPECT_EQ(operations, test.operations) << test.arguments;
    for (const auto& record : parsed.records) {
      if (record.operation == "WrongValueType") {
        EXPECT_THAT(record.arguments, ElementsAre("IMAGEROOT", "PNG"));
      }
    }
  }
}

TEST(ReadDocumentFile, ClearsItsFlagForWhatIsNotRead) {
  for (const char* arguments : {".", "/PNG.", "/PNG DOCUMENTFILE.", "/PNG DOCUMENTFILE=''."}) {
    const ParsedCommand parsed(looseGrammar(), arguments);
    std::string file = "before";
    bool exists = true;
    EXPECT_FALSE(
        readDocumentFile(file, parsed.spec().getSubComObj("PNG"), parsed.messages(), &exists));
    EXPECT_FALSE(exists) << arguments;
    EXPECT_EQ(file, "before") << arguments;
  }
}

TEST(ReadDocumentFile, TellsWhetherTheFileIsThere) {
  const ExportFolder folder;
  folder.files().write("there", "");
  const struct {
    const char* arguments;
    bool exists;
  } cases[] = {{"/PNG DOCUMENTFILE='there'.", true}, {"/PNG DOCUMENTFILE='new'.", false}};
  for (const auto& test : cases) {
    const ParsedCommand parsed(looseGrammar(), test.arguments);
    std::string file;
    bool exists = !test.exists;
    EXPECT_TRUE(
        readDocumentFile(file, parsed.spec().getSubComObj("PNG"), parsed.messages(), &exists));
    EXPECT_EQ(exists, test.exists) << test.arguments;
  }
}

TEST(ReadDocumentFile, IsRequiredInEveryDocumentSubcommand) {
  std::vector<RefusedCase> cases;
  for (const std::string name : kDocuments) cases.push_back({"/" + name, {kNeedsFile}, name});
  expectRefused(cases);
}

TEST(ReadDocumentFile, RefusesWhatIsNoSingleTextInEveryDocumentSubcommand) {
  std::vector<RefusedCase> cases;
  for (const std::string name : kDocuments) {
    const std::string said = "WrongValueType(DOCUMENTFILE, " + name + ")";
    cases.push_back({"/" + name + " DOCUMENTFILE='a' 'b'", {said}, "'a'"});
    cases.push_back({"/" + name + " DOCUMENTFILE", {said}, "DOCUMENTFILE"});
  }
  expectRefused(cases);
}

TEST(ReadDocumentFile, RefusesAFileThatCannotBeWrittenInEveryDocumentSubcommand) {
  std::vector<RefusedCase> cases;
  for (const std::string name : kDocuments) {
    const std::string extension = name == "XLS" ? ".xls" : name == "XLSX" ? ".xlsx" : "";
    cases.push_back({"/" + name + " DOCUMENTFILE='no/such/f'",
                     {noAccess("no/such/f" + extension)},
                     "'no/such/f'"});
  }
  cases.push_back({"/PDF DOCUMENTFILE=''", {noAccess("")}});
  cases.push_back({"/PDF DOCUMENTFILE='/'", {noAccess("/")}});
  cases.push_back({"/PDF DOCUMENTFILE='/no/such'", {noAccess("/no/such")}});
  expectRefused(cases);
}

TEST(ReadDocumentFile, TakesFileHandlesAndWordsAndAbsolutePaths) {
  const ScratchDirectory folder;
  const ScopedPathContext context({"/nowhere", {{"out", folder.path()}}});
  const std::string absolute = "/PDF DOCUMENTFILE='" + folder.file("a.pdf") + "'.";
  for (const std::string& arguments : {std::string("/PDF DOCUMENTFILE='out/a.pdf'."), absolute}) {
    FakeHost host;
    const CommandRun run(outexport_, "OUTPUT EXPORT " + arguments, &host);
    EXPECT_THAT(host.exportDocuments, ElementsAre("<outputExport><pdf documentFile=\"" +
                                                  folder.file("a.pdf") + "\"/></outputExport>"));
  }
  expectSent({{"/PDF DOCUMENTFILE=f.pdf", "<pdf documentFile=\"f.pdf\"/>"}});
}

TEST(ReadDocumentFile, CompletesTheNamesOfWorkbooksByTheirExtension) {
  const struct {
    const char* name;
    const char* written;
    const char* file;
  } cases[] = {
      {"XLS", "book", "book.xls"},
      {"XLS", "book.xls", "book.xls"},
      {"XLS", "book.XLS", "book.XLS"},
      {"XLS", "out.csv", "out.csv.xls"},
      {"XLS", "book.xlsx", "book.xlsx.xls"},
      {"XLS", "book.", "book..xls"},
      {"XLSX", "Book.XLSX", "Book.XLSX"},
      {"XLSX", "out.csv", "out.csv.xlsx"},
      {"XLSX", "xlsx", "xlsx.xlsx"},
      {"XLSX", ".xlsx", ".xlsx"},
      {"XLSM", "book", "book"},
      {"XLSM", "book.xls", "book.xls"},
      {"PDF", "book", "book"},
      {"HTML", "xls", "xls"},
  };
  for (const auto& test : cases) {
    const std::string element = test.name;
    std::string tag;
    for (const char c : element) tag += static_cast<char>(c | 0x20);
    expectSent({{"/" + element + " DOCUMENTFILE='" + test.written + "'",
                 "<" + tag + " documentFile=\"" + test.file + "\"/>"}});
  }
}

TEST(ReadDocumentFile, LooksForTheExtensionInTheWholePath) {
  const ExportFolder folder;
  std::filesystem::create_directory(folder.files().file("v1.xls"));
  const ExportRun run(folder, "/XLS DOCUMENTFILE='v1.xls/book'");
  EXPECT_THAT(run.sent(), ElementsAre("<xls documentFile=\"v1.xls/book.xls\"/>"));
}

TEST(ReadDocumentFile, CompletesANameInTheJobsEncoding) {
  const ScopedEncoding encoding(Encoding::find("Shift-JIS"));
  // The second byte is a backslash.
  expectSent({{"/XLS DOCUMENTFILE='\x83\x5C'", "<xls documentFile=\"\xE3\x82\xBD.xls\"/>"}});
}

TEST(ReadDocumentFile, TakesEitherCodeOfACharacter) {
  const ScopedEncoding encoding(Encoding::find("Shift-JIS"));
  for (const std::string code : {"\xFA\x54", "\x81\xCA"}) {
    expectSent({{"/PDF DOCUMENTFILE='" + code + "'", "<pdf documentFile=\"\xEF\xBF\xA2\"/>"},
                {"/PNG IMAGEROOT='" + code + "'", "<png imageRoot=\"\xEF\xBF\xA2\"/>"}});
  }
}

TEST(ReadDocumentFile, RefusesAPathThatWouldNotReachTheHostAsItIs) {
  const ExportFolder folder;
  for (const std::string& path :
       {std::string("a\x01"), std::string("a\xFE"), std::string("a\xEF\xBF\xBF")}) {
    const ExportRun run(folder, "/TEXT DOCUMENTFILE='" + path + "'");
    EXPECT_THAT(run.sent(), testing::IsEmpty()) << path;
    EXPECT_FALSE(run.said().empty()) << path;
    const ExportRun image(folder, "/PNG IMAGEROOT='" + path + "'");
    EXPECT_THAT(image.sent(), ElementsAre("<png/>")) << path;
    EXPECT_FALSE(image.said().empty()) << path;
  }
}

TEST(ReadDocumentFile, MakesNoNameOfNone) {
  const ExportFolder folder;
  const ExportRun run(folder, "/XLSX DOCUMENTFILE=''");
  EXPECT_THAT(run.sent(), testing::IsEmpty());
  EXPECT_FALSE(run.said().empty());
}

TEST(ImageSubcommands, NeedARootUnlessADocumentWithImagesStandsBesideThem) {
  const ExportFolder folder;
  for (const std::string name : kImages) {
    std::string tag;
    for (const char c : name) tag += static_cast<char>(c | 0x20);
    // A subcommand without its root counts all the same.
    const ExportRun alone(folder, "/" + name);
    EXPECT_THAT(alone.said(), ElementsAre(kNeedsRoot)) << name;
    EXPECT_THAT(alone.sent(), ElementsAre("<" + tag + "/>")) << name;
    for (const std::string document : {"HTML", "REPORT", "TEXT"}) {
      const ExportRun beside(folder, "/" + name + " /" + document + " DOCUMENTFILE='f'");
      EXPECT_THAT(beside.said(), IsEmpty()) << document << name;
    }
    // A document that is refused is none.
    const ExportRun refused(folder, "/HTML /" + name);
    EXPECT_THAT(refused.said(), ElementsAre(kNeedsFile, kNeedsRoot)) << name;
    const ExportRun pdf(folder, "/PDF DOCUMENTFILE='f' /" + name);
    EXPECT_THAT(pdf.said(), ElementsAre(kNeedsRoot, testing::StartsWith("2: Image file formats")));
  }
}

TEST(ImageSubcommands, LeaveARootThatIsNoTextToTheParser) {
  std::vector<RefusedCase> cases;
  for (const std::string name : kImages) {
    cases.push_back({"/" + name + " IMAGEROOT='a' 'b'", {"UnexpectedToken(b, IMAGEROOT)"}});
    cases.push_back({"/" + name + " IMAGEROOT=", {"ParamValueRequired(IMAGEROOT, " + name + ")"}});
  }
  expectNotParsed(cases);
}

}  // namespace
}  // namespace vornwout
