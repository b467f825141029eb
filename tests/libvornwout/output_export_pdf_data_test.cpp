// OUTPUT EXPORT /PDF: its grammar, what its keywords set, and what it refuses.
#include "libvornwout/export/output_export_pdf_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/export_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;

constexpr const char* kStart = "/PDF DOCUMENTFILE='f' ";

std::vector<SentCase> whole(std::vector<SentCase> cases) {
  for (SentCase& test : cases) {
    test.arguments = kStart + test.arguments;
    const std::string blank = test.elements.empty() ? "" : " ";
    test.elements = "<pdf documentFile=\"f\"" + blank + test.elements + "/>";
  }
  return cases;
}

std::vector<RefusedCase> whole(std::vector<RefusedCase> cases) {
  for (RefusedCase& test : cases) test.arguments = kStart + test.arguments;
  return cases;
}

TEST(OutputExportPDFData, DeclaresItsGrammar) {
  EXPECT_THAT(exportGrammarOf("PDF"),
              ElementsAre("PDF 1 ff", "DOCUMENTFILE 2 ft 0", "EMBEDBOOKMARKS 3 ft 0 {YES NO}",
                          "EMBEDFONTS 3 ft 0 {YES NO}"));
}

TEST(OutputExportPDFData, SetsWhatIsGiven) {
  expectSent(whole(std::vector<SentCase>{
      {"", ""},
      {"EMBEDBOOKMARKS=YES", "embedBookmarks=\"true\""},
      {"EMBEDBOOKMARKS=no", "embedBookmarks=\"false\""},
      {"EMBEDFONTS=YES", "embedFonts=\"true\""},
      {"EMBEDFONTS=no", "embedFonts=\"false\""},
  }));
}

TEST(OutputExportPDFData, LeavesOtherMistakesToTheParser) {
  expectNotParsed(whole(std::vector<RefusedCase>{
      {"EMBEDFONTS=MAYBE", {"InvalidParamValue(MAYBE, EMBEDFONTS, PDF)"}},
      {"EMBEDBOOKMARKS=ALL", {"InvalidParamValue(ALL, EMBEDBOOKMARKS, PDF)"}},
  }));
}

}  // namespace
}  // namespace vornwout
