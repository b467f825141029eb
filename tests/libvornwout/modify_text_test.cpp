// OUTPUT MODIFY /TEXTS: its grammar, what it writes, and the one thing that it refuses.
#include "libvornwout/modify/modify_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "libvornwout/modify/xml/xml_utilities.h"
#include "platform/text/encoding.h"
#include "tests/support/modify_grammar.h"
#include "tests/support/modify_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;

struct TextCase {
  std::string text;  // behind "/TEXTS "
  std::string attributes;
};

void expectAttributes(const std::vector<TextCase>& cases) {
  for (const TextCase& test : cases) {
    EXPECT_EQ(elementOf("/TEXTS " + test.text), "<modifyText" + test.attributes + "/>")
        << test.text;
  }
}

TEST(ModifyText, DeclaresItsGrammar) {
  EXPECT_THAT(
      modifyGrammarOf("TEXTS"),
      ElementsAre("TEXTS 1 ff", "TEXT 4 ft 0", "FONT 4 ft 0", "FONTSIZE 7 ft 0",
                  "STYLE 5 ft 0 {REGULAR BOLD ITALIC UNDERLINE}",
                  "TEXTCOLOR 2 ft 0 {BLACK BLUE CYAN DARKGRAY DARKGREY GRAY GREY GREEN LIGHTGRAY "
                  "LIGHTGREY MAGENTA ORANGE PINK RED WHITE YELLOW RGB}"));
}

TEST(ModifyText, WritesEachAttributeUnderItsCondition) {
  expectAttributes({
      {"", ""},
      {"TEXT='new text'", " expression=\"new text\""},
      {"TEXT=new", " expression=\"new\""},
      {"TEXT=''", ""},
      {"TEXT='a<b & ''c'' \"d\">'", " expression=\"a&lt;b &amp; &apos;c&apos; &quot;d&quot;&gt;\""},
      {"FONT='Noto Sans'", " fontFamily=\"Noto Sans\""},
      {"FONT=Arial", " fontFamily=\"Arial\""},
      {"FONT=''", ""},
      // A font goes as it was given, deliberately: neither in upper case nor escaped.
      {"FONT='a<\"b\"&'", " fontFamily=\"a<\"b\"&\""},
  });
}

TEST(ModifyText, WritesAttributesInOneOrder) {
  expectAttributes({
      {"TEXTCOLOR=RGB(1 2 3) STYLE=UNDERLINE BOLD ITALIC FONTSIZE=9 FONT=f TEXT=t",
       " expression=\"t\" fontFamily=\"f\" textRed=\"1\" textGreen=\"2\" textBlue=\"3\" "
       "fontSize=\"9\" fontBold=\"true\" fontItalic=\"true\" fontUnderline=\"true\""},
  });
}

TEST(ModifyText, WritesTheFontSizeWithSixDigitsAtMost) {
  expectAttributes({
      {"FONTSIZE=10", " fontSize=\"10\""},
      {"FONTSIZE=10.5", " fontSize=\"10.5\""},
      {"FONTSIZE=0.1", " fontSize=\"0.1\""},
      {"FONTSIZE=0.00001", " fontSize=\"1e-05\""},
      {"FONTSIZE=1e5", " fontSize=\"100000\""},
      {"FONTSIZE=1e6", " fontSize=\"1e+06\""},
      {"FONTSIZE=1234567", " fontSize=\"1.23457e+06\""},
      {"FONTSIZE=123456.4", " fontSize=\"123456\""},
      {"FONTSIZE=12.34567", " fontSize=\"12.3457\""},
  });
}

TEST(ModifyText, IgnoresASizeThatIsNoneDeliberately) {
  for (const char* size : {"0", "-1", "-0.5", "x", "'10'", "*", "1e999"}) {
    EXPECT_EQ(elementOf(std::string("/TEXTS FONTSIZE=") + size), "<modifyText/>") << size;
  }
}

TEST(ModifyText, WritesTheStyle) {
  expectAttributes({
      // REGULAR shows only through what it puts out.
      {"STYLE=REGULAR", " fontBold=\"false\" fontItalic=\"false\" fontUnderline=\"false\""},
      {"STYLE=BOLD", " fontBold=\"true\""},
      {"STYLE=italic", " fontItalic=\"true\""},
      {"STYLE=\"Underline\"", " fontUnderline=\"true\""},
      {"STYLE=REGULAR ITALIC", " fontBold=\"false\" fontItalic=\"true\" fontUnderline=\"false\""},
      {"STYLE=BOLD ITALIC REGULAR",
       " fontBold=\"false\" fontItalic=\"false\" fontUnderline=\"false\""},
  });
  EXPECT_THAT(refusalsOf("/TEXTS STYLE=LIGHT"),
              ElementsAre("InvalidParamValue(LIGHT, STYLE, TEXTS)"));
}

TEST(ModifyText, WritesColours) {
  const auto rgb = [](int red, int green, int blue) {
    return " textRed=\"" + std::to_string(red) + "\" textGreen=\"" + std::to_string(green) +
           "\" textBlue=\"" + std::to_string(blue) + "\"";
  };
  expectAttributes({
      {"TEXTCOLOR=BLACK", rgb(0, 0, 0)},
      {"TEXTCOLOR=BLUE", rgb(0, 0, 255)},
      {"TEXTCOLOR=CYAN", rgb(0, 255, 255)},
      {"TEXTCOLOR=DARKGRAY", rgb(64, 64, 64)},
      {"TEXTCOLOR=GRAY", rgb(128, 128, 128)},
      {"TEXTCOLOR=GREEN", rgb(0, 255, 0)},
      {"TEXTCOLOR=LIGHTGRAY", rgb(192, 192, 192)},
      {"TEXTCOLOR=MAGENTA", rgb(255, 0, 255)},
      {"TEXTCOLOR=ORANGE", rgb(255, 200, 0)},
      {"TEXTCOLOR=PINK", rgb(255, 175, 175)},
      {"TEXTCOLOR=RED", rgb(255, 0, 0)},
      {"TEXTCOLOR=WHITE", rgb(255, 255, 255)},
      {"TEXTCOLOR=YELLOW", rgb(255, 255, 0)},
      {"TEXTCOLOR=yellow", rgb(255, 255, 0)},
      {"TEXTCOLOR='Red'", rgb(255, 0, 0)},
      {"TEXTCOLOR=RGB(0 0 0)", rgb(0, 0, 0)},
      {"TEXTCOLOR=RGB(255,255,255)", rgb(255, 255, 255)},
      {"TEXTCOLOR=rgb(12, 34, 56)", rgb(12, 34, 56)},
      // Blue is not tested for being an integer, deliberately.
      {"TEXTCOLOR=RGB(1 2 3.9)", rgb(1, 2, 3)},
      {"TEXTCOLOR=RGB(1 2 x)", rgb(1, 2, 0)},
  });
}

TEST(ModifyText, RefusesWhatIsNoColourInTheNameOfItsKeywordTextDeliberately) {
  for (const char* color :
       {// Declared, yet deliberately unknown to the reader.
        "=GREY", "=DARKGREY", "=LIGHTGREY", "=RGB",
        // Out of bounds.
        "=RGB(256 0 0)", "=RGB(0 256 0)", "=RGB(0 0 256)", "=RGB(-1 0 0)", "=RGB(0 -1 0)",
        "=RGB(0 0 -1)",
        // Of another shape.
        "=RGB(1 2)", "=RGB(1 2 3 4)", "=RGB(1 2 3) 4", "=RGB[1 2 3]", "=RGB(x 2 3)",
        "=RGB(1 2.0 3)", "=BROWN", "=RED BLUE", "=5", "=*", "=''", "=(RED)", ""}) {
    EXPECT_THAT(refusalTextsOf(std::string("/TEXTS TEXTCOLOR") + color),
                ElementsAre("Subcommand TEXT: Not a recognized RGB color"))
        << color;
  }
}

TEST(ModifyText, FillsInEveryDateAndTimeField) {
  const auto expanded = [] {
    return XMLUtilities::insertDateTime(")DATE )ADATE )EDATE )SDATE )TIME )ETIME )date");
  };
  // The clock may move on between the two readings, but not twice in a row.
  for (int attempt = 0;; ++attempt) {
    const std::string before = expanded();
    const std::string element =
        elementOf("/TEXTS TEXT=')DATE )ADATE )EDATE )SDATE )TIME )ETIME )date' FONT=')DATE'");
    const std::string after = expanded();
    if (before != after && attempt < 10) continue;
    EXPECT_EQ(element, "<modifyText expression=\"" + before + "\" fontFamily=\")DATE\"/>");
    break;
  }
}

TEST(ModifyText, WritesItsTextsInUtf8) {
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  expectAttributes({{"TEXT='\xE4 & \x80' FONT='\xF6'",
                     " expression=\"\xC3\xA4 &amp; \xE2\x82\xAC\" fontFamily=\"\xC3\xB6\""}});
}

TEST(ModifyText, LeavesValuesOfWrongShapeToTheParser) {
  const struct {
    const char* text;
    const char* message;
  } cases[] = {{"TEXT='a' 'b'", "UnexpectedToken(b, TEXT)"},
               {"TEXT", "ParamValueRequired(TEXT, TEXTS)"},
               {"FONTSIZE=1 2", "UnexpectedToken(2, FONTSIZE)"},
               {"/TEXTS", "SubComRepeated(TEXTS)"}};
  for (const auto& test : cases) {
    EXPECT_THAT(refusalsOf(std::string("/TEXTS ") + test.text), ElementsAre(test.message))
        << test.text;
  }
}

}  // namespace
}  // namespace vornwout
