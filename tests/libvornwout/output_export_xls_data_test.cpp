// OUTPUT EXPORT /XLS, /XLSX and /XLSM: their grammar, what their keywords set, what becomes of a
// workbook that is not there, and what they refuse.
#include "libvornwout/export/output_export_xls_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/export_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;

struct Workbook {
  std::string name;
  std::string element;
  std::string file;  ///< what DOCUMENTFILE='f' becomes
};

const Workbook kWorkbooks[] = {
    {"XLS", "xls", "f.xls"},
    {"XLSX", "xlsx", "f.xlsx"},
    {"XLSM", "xlsm", "f"},
};

std::string missing(const std::string& operation, const std::string& file) {
  return "warning: ^1 was specified, but file \"^2\" does not exist... (" + operation + ", " +
         file + ")";
}

TEST(OutputExportXLSData, DeclaresOneGrammarForAllThree) {
  for (const Workbook& workbook : kWorkbooks) {
    EXPECT_THAT(exportGrammarOf(workbook.name),
                ElementsAre(workbook.name + " 1 ff", "DOCUMENTFILE 2 ft 0",
                            "OPERATION 3 ft 0 {CREATEFILE CREATESHEET MODIFYSHEET}", "SHEET 4 ft 0",
                            "LOCATION 27 ft 0 {LASTCOLUMN LASTROW} (STARTCELL 4 ft 0)",
                            "NOTESCAPTIONS 3 ft 0 {YES NO}"));
  }
}

TEST(OutputExportXLSData, SetsWhatIsGiven) {
  const struct {
    const char* text;
    const char* attributes;
  } cases[] = {
      {"", ""},
      {"OPERATION=CREATEFILE", " operation=\"CREATEFILE\""},
      {"SHEET='S 1'", " sheet=\"S 1\""},
      {"SHEET=''", " sheet=\"\""},
      {"LOCATION=LASTCOLUMN", " location=\"LASTCOLUMN\""},
      {"LOCATION='lastrow'", " location=\"LASTROW\""},
      {"LOCATION=STARTCELL('B4')", " location=\"STARTCELL\" startCell=\"B4\""},
      {"LOCATION=startcell(B4)", " location=\"STARTCELL\" startCell=\"B4\""},
      {"NOTESCAPTIONS=YES", " notesAndCaptions=\"true\""},
      {"NOTESCAPTIONS=NO", " notesAndCaptions=\"false\""},
      {"NOTESCAPTIONS=NO LOCATION=STARTCELL('a<b') SHEET='s' OPERATION=CREATEFILE",
       " operation=\"CREATEFILE\" sheet=\"s\" location=\"STARTCELL\" startCell=\"a&lt;b\" "
       "notesAndCaptions=\"false\""},
  };
  std::vector<SentCase> all;
  for (const Workbook& workbook : kWorkbooks) {
    for (const auto& test : cases) {
      all.push_back({"/" + workbook.name + " DOCUMENTFILE='f' " + test.text,
                     "<" + workbook.element + " documentFile=\"" + workbook.file + "\"" +
                         test.attributes + "/>"});
    }
  }
  expectSent(all);
}

TEST(OutputExportXLSData, ChangesAWorkbookThatIsThere) {
  for (const Workbook& workbook : kWorkbooks) {
    for (const std::string operation : {"CREATESHEET", "MODIFYSHEET"}) {
      const ExportFolder folder;
      folder.files().write(workbook.file, "a workbook");
      const ExportRun run(
          folder, "/" + workbook.name + " DOCUMENTFILE='f' SHEET='s' OPERATION=" + operation);
      EXPECT_EQ(run.said(), std::vector<std::string>()) << workbook.name;
      EXPECT_THAT(run.sent(),
                  ElementsAre("<" + workbook.element + " documentFile=\"" + workbook.file +
                              "\" operation=\"" + operation + "\" sheet=\"s\"/>"));
    }
  }
}

TEST(OutputExportXLSData, MakesAWorkbookThatIsNotThereAndWarns) {
  for (const Workbook& workbook : kWorkbooks) {
    for (const std::string operation : {"CREATESHEET", "MODIFYSHEET"}) {
      const ExportFolder folder;
      const ExportRun run(
          folder, "/" + workbook.name + " DOCUMENTFILE='f' SHEET='s' OPERATION=" + operation);
      EXPECT_THAT(run.said(), ElementsAre(missing(operation, workbook.file)));
      EXPECT_THAT(run.sent(),
                  ElementsAre("<" + workbook.element + " documentFile=\"" + workbook.file +
                              "\" operation=\"CREATEFILE\" sheet=\"s\"/>"));
    }
  }
}

TEST(OutputExportXLSData, AddsASheetWithoutAName) {
  const ExportFolder folder;
  folder.files().write("f.xls", "a workbook");
  const ExportRun run(folder, "/XLS DOCUMENTFILE='f' OPERATION=CREATESHEET");
  EXPECT_EQ(run.said(), std::vector<std::string>());
  EXPECT_THAT(run.sent(), ElementsAre("<xls documentFile=\"f.xls\" operation=\"CREATESHEET\"/>"));
}

TEST(OutputExportXLSData, RefusesWithItsOwnMessage) {
  const std::string needsSheet = "ParamNeedParam(SHEET, OPERATION, MODIFYSHEET)";
  for (const Workbook& workbook : kWorkbooks) {
    const std::string start = "/" + workbook.name + " DOCUMENTFILE='f' ";
    expectRefused({
        // The operation as it was written counts, though it is none any more.
        {start + "OPERATION=MODIFYSHEET", {missing("MODIFYSHEET", workbook.file), needsSheet}},
        {start + "SHEET=S1", {"WrongValueType(SHEET, " + workbook.name + ")"}, "S1"},
        // Nothing is told of a file that was not named.
        {"/" + workbook.name + " OPERATION=MODIFYSHEET",
         {"error: When a document type subcommand is used, the DOCUMENTFILE keyword is required. "
          "()",
          needsSheet}},
    });
    const ExportFolder folder;
    folder.files().write(workbook.file, "a workbook");
    const ExportRun run(folder, start + "OPERATION=modifysheet");
    EXPECT_THAT(run.said(), ElementsAre(needsSheet, kNothingToExport));
    EXPECT_THAT(run.sent(), testing::IsEmpty());
  }
}

TEST(OutputExportXLSData, LeavesOtherMistakesToTheParser) {
  expectNotParsed({
      {"/XLS OPERATION=DELETEFILE", {"InvalidParamValue(DELETEFILE, OPERATION, XLS)"}},
      {"/XLSX LOCATION=FIRSTROW", {"InvalidParamValue(FIRSTROW, LOCATION, XLSX)"}},
      {"/XLSX LOCATION='STARTCELL'", {"InvalidParamValue(STARTCELL, LOCATION, XLSX)"}},
      {"/XLSM LOCATION=STARTCELL", {"ParenRequired(STARTCELL)"}},
      {"/XLSM LOCATION=STARTCELL('a' 'b')", {"UnexpectedToken(b, STARTCELL)"}},
      {"/XLSM SHEET='a' 'b'", {"UnexpectedToken(b, SHEET)"}},
  });
}

}  // namespace
}  // namespace vornwout
