// OUTPUT EXPORT /REPORT: its grammar, its title, what it leaves out, its links in all their forms.
#include "libvornwout/export/output_export_report_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/export_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;

constexpr const char* kStart = "/REPORT DOCUMENTFILE='f' ";
constexpr const char* kInvalidUrl = "error: URL must specify a valid URL ()";
constexpr const char* kNotSeparated = "error: URLs must be separated ()";

std::vector<SentCase> whole(std::vector<SentCase> cases) {
  for (SentCase& test : cases) {
    test.arguments = kStart + test.arguments;
    test.elements = "<report documentFile=\"f\"" + test.elements;
  }
  return cases;
}

std::vector<RefusedCase> whole(std::vector<RefusedCase> cases) {
  for (RefusedCase& test : cases) test.arguments = kStart + test.arguments;
  return cases;
}

std::string linkOf(const std::string& first, const std::string& second) {
  return "<link first=\"" + first + "\" second=\"" + second + "\"/>";
}

TEST(OutputExportReportData, DeclaresItsGrammar) {
  EXPECT_THAT(exportGrammarOf("REPORT"),
              ElementsAre("REPORT 1 ff", "DOCUMENTFILE 2 ft 0", "TITLE 2 ft 0",
                          "FORMAT 3 ft 0 {HTML MHT}", "EXCLUDE 5 ft 0 {TEXTS LOGS NOTES WARNINGS}",
                          "URL 2 ft 0", "RESTYLE 3 ft 0 {YES NO}"));
}

TEST(OutputExportReportData, SetsWhatIsGiven) {
  expectSent(whole(std::vector<SentCase>{
      {"", "/>"},
      {"FORMAT=HTML", " mht=\"false\"/>"},
      {"FORMAT=mht", " mht=\"true\"/>"},
      {"RESTYLE=NO", " restyle=\"false\"/>"},
      // What a report does anyway is not set.
      {"RESTYLE=YES", "/>"},
      {"EXCLUDE=TEXTS", "><exclude type=\"TEXTS\"/></report>"},
      {"EXCLUDE=LOGS", "><exclude type=\"LOGS\"/></report>"},
      {"EXCLUDE=NOTES", "><exclude type=\"NOTES\"/></report>"},
      {"EXCLUDE=WARNINGS", "><exclude type=\"WARNINGS\"/></report>"},
      {"EXCLUDE=warnings, TEXTS",
       "><exclude type=\"WARNINGS\"/><exclude type=\"TEXTS\"/></report>"},
      {"RESTYLE=NO URL=('a' 'b') EXCLUDE=LOGS FORMAT=MHT TITLE='t'",
       " title=\"t\" mht=\"true\" restyle=\"false\"><exclude type=\"LOGS\"/>" + linkOf("a", "b") +
           "</report>"},
  }));
}

TEST(OutputExportReportData, TakesATitleInQuotesOrTheNameOfTheFile) {
  expectSent(whole(std::vector<SentCase>{
      {"TITLE='My report'", " title=\"My report\"/>"},
      {"TITLE=''", " title=\"\"/>"},
      // Escaped for HTML, and then as an attribute.
      {"TITLE='a & b'", " title=\"a &amp;amp; b\"/>"},
      {"TITLE=FILENAME", " title=\"f\"/>"},
      {"TITLE=filename", " title=\"f\"/>"},
      {"TITLE='FILENAME'", " title=\"FILENAME\"/>"},
  }));
}

TEST(OutputExportReportData, EscapesItsPath) {
  expectSent({{"/REPORT DOCUMENTFILE='a&b' TITLE=FILENAME",
               "<report documentFile=\"a&amp;amp;b\" title=\"a&amp;amp;b\"/>"}});
}

TEST(OutputExportReportData, TakesItsWholePathAsTitle) {
  const ExportFolder folder;
  const ExportRun run(folder, "/REPORT DOCUMENTFILE='r' TITLE=FILENAME");
  ASSERT_EQ(run.host.exportDocuments.size(), 1U);
  EXPECT_THAT(run.host.exportDocuments.front(),
              testing::HasSubstr("title=\"" + folder.files().file("r") + "\""));
}

TEST(OutputExportReportData, RefusesOtherTitles) {
  const std::vector<std::string> said = {"WrongValueType(TITLE, REPORT)"};
  expectRefused(whole(std::vector<RefusedCase>{
      {"TITLE=Report", said, "Report"},
      {"TITLE=5", said},
      {"TITLE=ALL", said},
      {"TITLE", said, "TITLE"},
      {"TITLE='a' 'b'", said},
      // What stands behind it is not read.
      {"TITLE=Report URL='a'", said},
  }));
}

TEST(OutputExportReportData, SaysWhatIsWrongBesideAnImageThatIsExported) {
  const ExportFolder folder;
  const ExportRun run(folder, std::string(kStart) + "TITLE=Report /PNG IMAGEROOT='i'");
  EXPECT_THAT(run.said(), ElementsAre("WrongValueType(TITLE, REPORT)"));
  EXPECT_THAT(run.sent(), ElementsAre("<png imageRoot=\"i\"/>"));
}

TEST(OutputExportReportData, TakesLinksInPairs) {
  expectSent(whole(std::vector<SentCase>{
      {"URL=('a' 'b')", ">" + linkOf("a", "b") + "</report>"},
      {"URL=('a' 'b', 'c' 'd')", ">" + linkOf("a", "b") + linkOf("c", "d") + "</report>"},
      {"URL=('a' 'b', 'c' 'd', 'a' 'b')",
       ">" + linkOf("a", "b") + linkOf("c", "d") + linkOf("a", "b") + "</report>"},
      {"URL=('x & y' 'http://a/?b=c&d')",
       ">" + linkOf("x &amp; y", "http://a/?b=c&amp;d") + "</report>"},
      {"URL=(a 5)", ">" + linkOf("a", "5") + "</report>"},
      {"URL=('' '')", ">" + linkOf("", "") + "</report>"},
  }));
}

TEST(OutputExportReportData, RefusesOtherLinks) {
  const std::vector<std::string> paren = {"ParenRequired(URL)"};
  expectRefused(whole(std::vector<RefusedCase>{
      {"URL", paren, "URL"},
      {"URL='a'", paren, "'a'"},
      {"URL='a' 'b'", paren},
      {"URL=['a' 'b']", paren},
      {"URL=('a' 'b') 'c'", paren},
      {"URL='a' ('b' 'c')", paren},
      {"URL=()", {kInvalidUrl}},
      {"URL=('a')", {kInvalidUrl}},
      {"URL=(,)", {kInvalidUrl}},
      {"URL=('a', 'b')", {kInvalidUrl}, ","},
      {"URL=('a',)", {kInvalidUrl}},
      {"URL=(, 'a' 'b')", {kInvalidUrl}, ","},
      {"URL=('a' 'b',)", {kInvalidUrl}, ")"},
      {"URL=('a' 'b', 'c')", {kInvalidUrl}},
      {"URL=('a' 'b', 'c', 'd' 'e')", {kInvalidUrl}},
      {"URL=('a' 'b',, 'c' 'd')", {kInvalidUrl}},
      {"URL=(('a' 'b'))", {kInvalidUrl}},
      {"URL=('a' 'b' 'c' 'd')", {kNotSeparated}, "'c'"},
      {"URL=('a' 'b' 'c')", {kNotSeparated}, "'c'"},
      {"URL=('a' 'b', 'c' 'd' 'e' 'f')", {kNotSeparated}, "'e'"},
      {"URL=('a' 'b' = 'c' 'd')", {kNotSeparated}},
  }));
}

TEST(OutputExportReportData, LeavesOtherMistakesToTheParser) {
  expectNotParsed(whole(std::vector<RefusedCase>{
      {"FORMAT=PDF", {"InvalidParamValue(PDF, FORMAT, REPORT)"}},
      {"EXCLUDE=TABLES", {"InvalidParamValue(TABLES, EXCLUDE, REPORT)"}},
      {"EXCLUDE=TEXTS TABLES", {"InvalidParamValue(TABLES, EXCLUDE, REPORT)"}},
      {"RESTYLE=MAYBE", {"InvalidParamValue(MAYBE, RESTYLE, REPORT)"}},
      {"URL=('a' 'b'", {"UnbalancedBracket(()"}},
  }));
}

}  // namespace
}  // namespace vornwout
