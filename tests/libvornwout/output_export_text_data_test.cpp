// OUTPUT EXPORT /TEXT: its grammar, what its keywords set, and what it refuses.
#include "libvornwout/export/output_export_text_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/encoding.h"
#include "tests/support/export_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;

constexpr const char* kStart = "/TEXT DOCUMENTFILE='f' ";

std::vector<SentCase> whole(std::vector<SentCase> cases) {
  for (SentCase& test : cases) {
    test.arguments = kStart + test.arguments;
    const std::string blank = test.elements.empty() ? "" : " ";
    test.elements = "<text documentFile=\"f\"" + blank + test.elements + "/>";
  }
  return cases;
}

std::vector<RefusedCase> whole(std::vector<RefusedCase> cases) {
  for (RefusedCase& test : cases) test.arguments = kStart + test.arguments;
  return cases;
}

TEST(OutputExportTEXTData, DeclaresItsGrammar) {
  EXPECT_THAT(exportGrammarOf("TEXT"),
              ElementsAre("TEXT 1 ff", "DOCUMENTFILE 2 ft 0", "ENCODING 3 ft 0 {LOCALE UTF8 UTF16}",
                          "NOTESCAPTIONS 3 ft 0 {YES NO}", "COLUMNWIDTH 9 ff 0 >=0 {AUTOFIT}",
                          "SEPARATOR 3 ft 0 {SPACE TAB}", "ROWBORDER 4 ft 0", "COLUMNBORDER 4 ft 0",
                          "IMAGEFORMAT 3 ft 0 {JPG BMP PNG}"));
}

TEST(OutputExportTEXTData, SetsWhatIsGiven) {
  expectSent(whole(std::vector<SentCase>{
      {"", ""},
      {"ENCODING=LOCALE", "encoding=\"LOCALE\""},
      {"ENCODING=UTF8", "encoding=\"UTF8\""},
      {"ENCODING=UTF16", "encoding=\"UTF16\""},
      {"NOTESCAPTIONS=YES", "notesAndCaptions=\"true\""},
      {"NOTESCAPTIONS=no", "notesAndCaptions=\"false\""},
      {"COLUMNWIDTH=AUTOFIT", "columnWidth=\"0\" columnWidthAutofit=\"true\""},
      {"COLUMNWIDTH=autofit", "columnWidth=\"0\" columnWidthAutofit=\"true\""},
      {"COLUMNWIDTH=1", "columnWidth=\"1\" columnWidthAutofit=\"false\""},
      {"COLUMNWIDTH=+020", "columnWidth=\"+020\" columnWidthAutofit=\"false\""},
      {"SEPARATOR=SPACE", "separator=\"SPACE\""},
      {"SEPARATOR=TAB", "separator=\"TAB\""},
      {"ROWBORDER='=-'", "rowBorder=\"=\""},
      {"ROWBORDER=''", ""},
      {"ROWBORDER=x", "rowBorder=\"x\""},
      {"ROWBORDER='\xE2\x94\x80\xE2\x94\x80'", "rowBorder=\"\xE2\x94\x80\""},
      {"COLUMNBORDER='|'", "columnBorder=\"|\""},
      {"COLUMNBORDER='\xC3\xA4z'", "columnBorder=\"\xC3\xA4\""},
      {"COLUMNBORDER=''", ""},
      {"COLUMNBORDER='<'", "columnBorder=\"&lt;\""},
      {"IMAGEFORMAT=JPG", "imageFormat=\"JPG\""},
      {"IMAGEFORMAT=PNG", "imageFormat=\"PNG\""},
      {"IMAGEFORMAT=BMP", "imageFormat=\"BMP\""},
  }));
}

TEST(OutputExportTEXTData, RefusesWithItsOwnMessage) {
  expectRefused(whole(std::vector<RefusedCase>{
      {"COLUMNWIDTH=0",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (0, 0, COLUMNWIDTH)"},
       "0"},
      {"COLUMNWIDTH=-1",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (-1, 0, COLUMNWIDTH)"}},
      {"COLUMNWIDTH=2.5",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (2.5, 0, COLUMNWIDTH)"}},
      {"COLUMNWIDTH=WIDE",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (WIDE, 0, COLUMNWIDTH)"}},
      {"COLUMNWIDTH='20'",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (20, 0, COLUMNWIDTH)"}},
      {"COLUMNWIDTH=99999999999",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (99999999999, 0, "
        "COLUMNWIDTH)"}},
  }));
}

TEST(OutputExportTEXTData, LeavesOtherMistakesToTheParser) {
  expectNotParsed(whole(std::vector<RefusedCase>{
      {"ENCODING=UTF32", {"InvalidParamValue(UTF32, ENCODING, TEXT)"}},
      {"SEPARATOR=COMMA", {"InvalidParamValue(COMMA, SEPARATOR, TEXT)"}},
      {"ROWBORDER='a' 'b'", {"UnexpectedToken(b, ROWBORDER)"}},
      {"COLUMNWIDTH=1 2", {"UnexpectedToken(2, COLUMNWIDTH)"}},
  }));
}

TEST(OutputExportTEXTData, TakesTheFirstCharacterOfABorderInTheJobsEncoding) {
  const ScopedEncoding encoding(Encoding::find("Shift-JIS"));
  // The second byte of the first character is a backslash; a character of one byte stands behind.
  expectSent(whole(std::vector<SentCase>{
      {"ROWBORDER='\x83\x5C\x83\x5C'", "rowBorder=\"\xE3\x82\xBD\""},
      {"COLUMNBORDER='\xB1\x83\x5C'", "columnBorder=\"\xEF\xBD\xB1\""},
  }));
}

}  // namespace
}  // namespace vornwout
