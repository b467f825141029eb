// Colours, conversion, escaping, looks and date tokens.
#include "libvornwout/modify/xml/xml_utilities.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>

#include <gtest/gtest.h>

#include "platform/files/path_context.h"
#include "platform/parser/tokenizer.h"
#include "platform/strings/language.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

namespace fs = std::filesystem;

struct Color {
  bool found = false;
  int red = -1;
  int green = -1;
  int blue = -1;
  friend bool operator==(const Color&, const Color&) = default;
  friend std::ostream& operator<<(std::ostream& stream, const Color& color) {
    return stream << color.found << " " << color.red << " " << color.green << " " << color.blue;
  }
};

Color rgbOf(const std::string& value) {
  Tokenizer tokenizer(value);
  TokenizedCommand command;
  tokenizer.next(command);
  const ParamDescriptor descriptor("COLOR", UPSpecTypes::kRawTokens, false, true);
  const ParamObj param(&descriptor, &command, nullptr, command.tokens());
  Color color;
  color.found = XMLUtilities::getRGB(param, color.red, color.green, color.blue);
  return color;
}

TEST(GetRgb, KnowsThirteenKeywordsWithoutRegardToCase) {
  const struct {
    const char* upper;
    const char* mixed;
    Color color;
  } cases[] = {
      {"BLACK", "Black", {true, 0, 0, 0}},
      {"BLUE", "blue", {true, 0, 0, 255}},
      {"CYAN", "cYan", {true, 0, 255, 255}},
      {"DARKGRAY", "DarkGray", {true, 64, 64, 64}},
      {"GRAY", "gray", {true, 128, 128, 128}},
      {"GREEN", "Green", {true, 0, 255, 0}},
      {"LIGHTGRAY", "lightgray", {true, 192, 192, 192}},
      {"MAGENTA", "magentA", {true, 255, 0, 255}},
      {"ORANGE", "orange", {true, 255, 200, 0}},
      {"PINK", "pink", {true, 255, 175, 175}},
      {"RED", "red", {true, 255, 0, 0}},
      {"WHITE", "White", {true, 255, 255, 255}},
      {"YELLOW", "yelloW", {true, 255, 255, 0}},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(rgbOf(test.upper), test.color) << test.upper;
    EXPECT_EQ(rgbOf(test.mixed), test.color) << test.mixed;
    EXPECT_EQ(rgbOf("'" + std::string(test.upper) + "'"), test.color) << test.upper;
    EXPECT_FALSE(rgbOf(test.upper + std::string("X")).found) << test.upper;
    EXPECT_FALSE(rgbOf(std::string(test.upper).substr(1)).found) << test.upper;
  }
}

TEST(GetRgb, TakesNothingElseForAKeyword) {
  for (const char* value : {"", "DARK_GRAY", "GREY", "BROWN", "RED BLUE", "(RED)", "'RED '", "5",
                            "\"#FF0000\"", "RGB"}) {
    EXPECT_EQ(rgbOf(value), Color{}) << value;
  }
}

TEST(GetRgb, ReadsExactlySixTokensAndTouchesNothingOtherwise) {
  EXPECT_EQ(rgbOf("RGB(255 128 0)"), (Color{true, 255, 128, 0}));
  EXPECT_EQ(rgbOf("RGB(255,128,0)"), (Color{true, 255, 128, 0}));
  EXPECT_EQ(rgbOf("rgb(0 0 255)"), (Color{true, 0, 0, 255}));
  EXPECT_EQ(rgbOf("'RGB'(1 2 3)"), (Color{true, 1, 2, 3}));
  EXPECT_EQ(rgbOf("RGB'('1 2 3')'"), (Color{true, 1, 2, 3}));
  EXPECT_EQ(rgbOf("RGB '(x' 1 2 3 ')x'"), (Color{true, 1, 2, 3}));
  for (const char* value :
       {"RGB(1 2 3 4)", "RGB(1 2 3) 4", "RGB(1 2 3))",  "RGB(1 2)",     "RGB 1 2 3",
        "RGB(1 2 3",    "RGB[1 2 3]",   "RGB(1 2 3]",   "RGBA(1 2 3)",  "RG(1 2 3)",
        "1(1 2 3)",     "RGB)1 2 3(",   "RGB(a 2 3)",   "RGB(1 a 3)",   "RGB(1.5 2 3)",
        "RGB(1 2.0 3)", "RGB('1' 2 3)", "RGB(1 '2' 3)", "RGB(1e1 2 3)", "RGB(99999999999 2 3)",
        "= (1 2 3)"}) {
    EXPECT_EQ(rgbOf(value), Color{}) << value;
  }
}

TEST(GetRgb, KeepsTheValuesReadOfAColourOutOfBounds) {
  const int values[] = {-1, 0, 1, 254, 255, 256};
  for (const int red : values) {
    for (const int green : values) {
      for (const int blue : values) {
        const auto within = [](int value) { return value >= 0 && value <= 255; };
        const Color expected{within(red) && within(green) && within(blue), red, green, blue};
        const std::string text = "RGB(" + std::to_string(red) + " " + std::to_string(green) + " " +
                                 std::to_string(blue) + ")";
        EXPECT_EQ(rgbOf(text), expected) << text;
      }
    }
  }
}

TEST(GetRgb, KeepsBlueUntestedForBeingAnInteger) {
  EXPECT_EQ(rgbOf("RGB(1 2 12.7)"), (Color{true, 1, 2, 12}));
  EXPECT_EQ(rgbOf("RGB(1 2 x)"), (Color{true, 1, 2, 0}));
  EXPECT_EQ(rgbOf("RGB(1 2 '7')"), (Color{true, 1, 2, 0}));
  EXPECT_EQ(rgbOf("RGB(1 2 *)"), (Color{true, 1, 2, 0}));
  EXPECT_EQ(rgbOf("RGB(1 2 1e2)"), (Color{true, 1, 2, 100}));
  EXPECT_EQ(rgbOf("RGB(1 2 256.5)"), (Color{false, 1, 2, 256}));
  EXPECT_FALSE(rgbOf("RGB(1 2 99999999999)").found);
  EXPECT_FALSE(rgbOf("RGB(1 2 -1e10)").found);
  EXPECT_FALSE(rgbOf("RGB(1 2 1e999)").found);
  EXPECT_FALSE(rgbOf("RGB(1 2 -1e999)").found);
  EXPECT_EQ(rgbOf("RGB(1 2 1e-999)"), (Color{true, 1, 2, 0}));
}

TEST(GenericToUtf8, ConvertsFromTheCurrentEncoding) {
  const struct {
    const char* encoding;
    const char* text;
    const char* utf8;
  } cases[] = {
      {"UTF-8", "a\xC3\xA4\xF0\x9F\x98\x80", "a\xC3\xA4\xF0\x9F\x98\x80"},
      {"UTF-8", "a\xFF", "a\xEF\xBF\xBD"},
      {"windows-1252", "\x80\xE4", "\xE2\x82\xAC\xC3\xA4"},
      {"Shift-JIS", "\x83\x5C", "\xE3\x82\xBD"},
      {"Big5", "\xA5\x5C", "\xE5\x8A\x9F"},
      {"GB18030", "\x81\x30\x81\x30", "\xC2\x80"},
      {"EUC-KR", "\xB0\xA1", "\xEA\xB0\x80"},
  };
  for (const auto& test : cases) {
    const ScopedEncoding encoding(Encoding::find(test.encoding));
    EXPECT_EQ(XMLUtilities::genericToUTF8(test.text), test.utf8) << test.encoding;
    EXPECT_EQ(XMLUtilities::genericToUTF8(""), "") << test.encoding;
  }
}

TEST(EscapeHtml, ReplacesTheFiveSpecialCharactersAndNoOther) {
  EXPECT_EQ(XMLUtilities::escapeHTML("a<b & 'c'"), "a&lt;b &amp; &apos;c&apos;");
  EXPECT_EQ(XMLUtilities::escapeHTML("\"&'<>"), "&quot;&amp;&apos;&lt;&gt;");
  EXPECT_EQ(XMLUtilities::escapeHTML("&amp;"), "&amp;amp;");
  EXPECT_EQ(XMLUtilities::escapeHTML(""), "");
  EXPECT_EQ(XMLUtilities::escapeHTML("&&&"), "&amp;&amp;&amp;");
  EXPECT_EQ(XMLUtilities::escapeHTML(std::string("a\0<", 3)), std::string("a\0&lt;", 6));
  for (int byte = 1; byte < 0x80; ++byte) {
    const std::string text(1, static_cast<char>(byte));
    const bool special = text.find_first_of("\"&'<>") != std::string::npos;
    EXPECT_EQ(XMLUtilities::escapeHTML(text) != text, special) << byte;
  }
}

TEST(EscapeHtml, CopiesLongerCharactersUntouchedInEveryEncoding) {
  for (const char* name :
       {"UTF-8", "windows-1252", "Shift-JIS", "Big5", "GB18030", "GBK", "EUC-KR", "EUC-JP"}) {
    const auto encoding = Encoding::find(name);
    ASSERT_NE(encoding, nullptr) << name;
    const ScopedEncoding scope(encoding);
    for (int lead = 0x80; lead <= 0xFF; ++lead) {
      for (int trail = 1; trail <= 0xFF; ++trail) {
        const std::string pair = {static_cast<char>(lead), static_cast<char>(trail)};
        const std::string text = pair + "<";
        // Character by character, with the length that the encoding itself knows.
        std::string expected;
        for (std::size_t at = 0; at < text.size();) {
          const auto length = static_cast<std::size_t>(
              encoding->characterLength(std::string_view(text).substr(at)));
          const std::string character = text.substr(at, length);
          if (character == "<") {
            expected += "&lt;";
          } else if (character == ">") {
            expected += "&gt;";
          } else if (character == "&") {
            expected += "&amp;";
          } else if (character == "\"") {
            expected += "&quot;";
          } else if (character == "'") {
            expected += "&apos;";
          } else {
            expected += character;
          }
          at += length;
        }
        ASSERT_EQ(XMLUtilities::escapeHTML(text), expected) << name << " " << lead << " " << trail;
      }
    }
    EXPECT_EQ(XMLUtilities::escapeHTML("<\x83"), "&lt;\x83") << name;
  }
}

/// An encoding as hostile as one can be: after 0x81 any byte at all belongs to the character.
class AnyTrailByte : public Encoding {
 public:
  AnyTrailByte() : Encoding("any-trail-byte", false) {}
  int characterLength(std::string_view text) const override {
    return text[0] == '\x81' && text.size() > 1 ? 2 : 1;
  }
  std::string toUtf8(std::string_view text) const override { return std::string(text); }
  std::string fromUtf8(std::string_view text, bool*) const override { return std::string(text); }
  std::u16string toUtf16(std::string_view) const override { return {}; }
};

TEST(EscapeHtml, LeavesTrailBytesThatEqualASpecialCharacter) {
  const ScopedEncoding encoding(std::make_shared<AnyTrailByte>());
  for (const char special : {'"', '&', '\'', '<', '>'}) {
    const std::string character = std::string("\x81") + special;
    EXPECT_EQ(XMLUtilities::escapeHTML(character + "&" + character),
              character + "&amp;" + character);
  }
}

TEST(EscapeHtml, CopiesCharactersOfFourBytesUntouched) {
  const ScopedEncoding encoding(Encoding::find("GB18030"));
  EXPECT_EQ(XMLUtilities::escapeHTML("\x81\x30\x81\x30<"), "\x81\x30\x81\x30&lt;");
}

/// A folder with an installation, a user's data and a working directory, all empty at first.
class GetFilePathTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "vornwout-looks-XXXXXX").string();
    root_ = mkdtemp(pattern.data());
    for (const char* name : {"VORNWOUT_HOME", "XDG_DATA_HOME"}) {
      const char* value = std::getenv(name);
      before_[name] = value == nullptr ? std::nullopt : std::optional<std::string>(value);
    }
    setenv("VORNWOUT_HOME", (root_ + "/home").c_str(), 1);
    setenv("XDG_DATA_HOME", (root_ + "/data").c_str(), 1);
    fs::create_directory(root_ + "/jobs");
    context_.emplace(PathContext{root_ + "/jobs", {}});
  }
  void TearDown() override {
    context_.reset();
    for (const auto& [name, value] : before_) {
      if (value) {
        setenv(name.c_str(), value->c_str(), 1);
      } else {
        unsetenv(name.c_str());
      }
    }
    fs::remove_all(root_);
  }

  void write(const std::string& path, const std::string& content = "look") {
    fs::create_directories(fs::path(root_ + path).parent_path());
    std::ofstream(root_ + path) << content;
  }
  /// The name that `name` resolves to, "-" and the name when it does not.
  static std::string resolved(std::string name, const char* extension) {
    return (XMLUtilities::getFilePath(name, extension) ? "" : "-") + name;
  }

  std::string installed(const std::string& file) { return root_ + "/home/Looks/" + file; }
  std::string users(const std::string& file) { return root_ + "/data/vornwout/Looks/" + file; }

  std::string root_;

 private:
  std::map<std::string, std::optional<std::string>> before_;
  std::optional<ScopedPathContext> context_;
};

TEST_F(GetFilePathTest, LeavesANameThatResolvesAsItStands) {
  write("/jobs/mine.qtt");
  write("/home/Looks/mine.qtt.qtt");
  EXPECT_EQ(resolved("mine.qtt", ".qtt"), "mine.qtt");
  EXPECT_EQ(resolved(root_ + "/jobs/mine.qtt", ".qgt"), root_ + "/jobs/mine.qtt");
  EXPECT_EQ(resolved("sub\\..\\mine.qtt", ".qtt"), "sub\\..\\mine.qtt");
}

TEST_F(GetFilePathTest, LooksIntoTheInstallationThenIntoTheUsersFolder) {
  EXPECT_EQ(resolved("Blue", ".qtt"), "-Blue");
  write("/data/vornwout/Looks/Blue.qtt");
  EXPECT_EQ(resolved("Blue", ".qtt"), users("Blue.qtt"));
  write("/home/Looks/Blue.qtt");
  EXPECT_EQ(resolved("Blue", ".qtt"), installed("Blue.qtt"));
  write("/jobs/Blue");
  EXPECT_EQ(resolved("Blue", ".qtt"), "Blue");
}

TEST_F(GetFilePathTest, AppendsTheExtensionThatItIsGiven) {
  write("/home/Looks/Blue.qgt");
  EXPECT_EQ(resolved("Blue", ".qtt"), "-Blue");
  EXPECT_EQ(resolved("Blue", ".qgt"), installed("Blue.qgt"));
  EXPECT_EQ(resolved("Blue.qgt", ".qgt"), "-Blue.qgt");
}

TEST_F(GetFilePathTest, TakesAnEmptyFileForNone) {
  write("/jobs/Empty", "");
  write("/home/Looks/Empty.qtt", "");
  EXPECT_EQ(resolved("Empty", ".qtt"), "-Empty");
  write("/data/vornwout/Looks/Empty.qtt");
  EXPECT_EQ(resolved("Empty", ".qtt"), users("Empty.qtt"));
}

TEST_F(GetFilePathTest, KeepsEveryNameAsResolvedWithoutAnExtension) {
  EXPECT_EQ(resolved("nowhere", nullptr), "nowhere");
  EXPECT_EQ(resolved("", nullptr), "");
  write("/jobs/here");
  EXPECT_EQ(resolved("here", nullptr), "here");
}

TEST_F(GetFilePathTest, RefusesAnEmptyName) { EXPECT_EQ(resolved("", ".qtt"), "-"); }

std::tm instant(int hour, int minute, int second) {
  std::tm time{};
  time.tm_year = 2024 - 1900;
  time.tm_mon = 2;
  time.tm_mday = 5;
  time.tm_hour = hour;
  time.tm_min = minute;
  time.tm_sec = second;
  return time;
}

TEST(InsertDateTime, ReplacesEachToken) {
  const std::tm time = instant(14, 7, 9);
  const struct {
    const char* text;
    const char* expanded;
  } cases[] = {
      {")DATE", "5-March-2024"},
      {")ADATE", "3/5/2024"},
      {")EDATE", "5.3.2024"},
      {")SDATE", "2024/3/5"},
      {")TIME", "2:07:09"},
      {")ETIME", "14:07:09"},
      {"a )DATE b )DATE", "a 5-March-2024 b 5-March-2024"},
      {")DATE)DATE)TIME)ETIME", "5-March-20245-March-20242:07:0914:07:09"},
      {")ADATE)EDATE)SDATE", "3/5/20245.3.20242024/3/5"},
      {"))DATE)", ")5-March-2024)"},
      {")DATED", "5-March-2024D"},
      {")XDATE)DAT)ET", ")XDATE)DAT)ET"},
      {")date )Date )time", ")date )Date )time"},
      {"DATE TIME", "DATE TIME"},
      {"(a)", "(a)"},
      {"", ""},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(XMLUtilities::insertDateTime(test.text, time), test.expanded) << test.text;
  }
}

TEST(InsertDateTime, KeepsTheHoursOfBothTokensAsTheyAre) {
  const struct {
    const char* time;
    const char* etime;
  } hours[] = {{"0", "00"}, {"1", "01"}, {"2", "02"}, {"3", "03"}, {"4", "04"},   {"5", "05"},
               {"6", "06"}, {"7", "07"}, {"8", "08"}, {"9", "09"}, {"10", "010"}, {"11", "011"},
               {"0", "12"}, {"1", "13"}, {"2", "14"}, {"3", "15"}, {"4", "16"},   {"5", "17"},
               {"6", "18"}, {"7", "19"}, {"8", "20"}, {"9", "21"}, {"10", "22"},  {"11", "23"}};
  static_assert(std::size(hours) == 24);
  for (int hour = 0; hour < 24; ++hour) {
    const std::tm time = instant(hour, 5, 3);
    EXPECT_EQ(XMLUtilities::insertDateTime(")TIME", time),
              hours[hour].time + std::string(":05:03"));
    EXPECT_EQ(XMLUtilities::insertDateTime(")ETIME", time),
              hours[hour].etime + std::string(":05:03"));
  }
}

TEST(InsertDateTime, PadsMinutesAndSecondsBelowTen) {
  for (int value = 0; value < 60; ++value) {
    const std::string two = (value < 10 ? "0" : "") + std::to_string(value);
    EXPECT_EQ(XMLUtilities::insertDateTime(")TIME", instant(1, value, 59 - value)).substr(0, 4),
              "1:" + two);
    EXPECT_EQ(XMLUtilities::insertDateTime(")TIME", instant(1, 59 - value, value)).substr(5), two);
  }
}

TEST(InsertDateTime, DoesNotPadDaysAndMonths) {
  std::tm time = instant(0, 0, 0);
  for (int month = 0; month < 12; ++month) {
    for (const int day : {1, 9, 10, 31}) {
      time.tm_mon = month;
      time.tm_mday = day;
      EXPECT_EQ(XMLUtilities::insertDateTime(")SDATE", time),
                "2024/" + std::to_string(month + 1) + "/" + std::to_string(day));
    }
  }
}

TEST(InsertDateTime, NamesTheMonthInTheCurrentLanguageAndEncoding) {
  constexpr const char* kEnglish[] = {"January",   "February", "March",    "April",
                                      "May",       "June",     "July",     "August",
                                      "September", "October",  "November", "December"};
  std::tm time = instant(0, 0, 0);
  for (int month = 0; month < 12; ++month) {
    time.tm_mon = month;
    EXPECT_EQ(XMLUtilities::insertDateTime(")DATE", time),
              std::string("5-") + kEnglish[month] + "-2024");
  }
  time.tm_mon = 2;
  const ScopedLanguage language("de");
  EXPECT_EQ(XMLUtilities::insertDateTime(")DATE", time), "5-M\xC3\xA4rz-2024");
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  EXPECT_EQ(XMLUtilities::insertDateTime(")DATE", time), "5-M\xE4rz-2024");
}

TEST(InsertDateTime, ReadsTheClockOnceInLocalTime) {
  const auto expected = [](std::time_t at) {
    return XMLUtilities::insertDateTime(")SDATE )ETIME )TIME", *std::localtime(&at));
  };
  const std::time_t before = std::time(nullptr);
  const std::string text = XMLUtilities::insertDateTime(")SDATE )ETIME )TIME");
  const std::time_t after = std::time(nullptr);
  bool found = false;
  for (std::time_t at = before; at <= after; ++at) found |= text == expected(at);
  EXPECT_TRUE(found) << text;
}

TEST(InsertDateTime, ReturnsATextWithoutTokensUnchanged) {
  std::string every;
  for (int byte = 0; byte < 256; ++byte) every.push_back(static_cast<char>(byte));
  EXPECT_EQ(XMLUtilities::insertDateTime(every), every);
}

TEST(InsertDateTime, StaysLinearInTheNumberOfTokens) {
  std::string text;
  std::string expected;
  for (int i = 0; i < 200000; ++i) {
    text += ")TIME ";
    expected += "2:07:09 ";
  }
  EXPECT_EQ(XMLUtilities::insertDateTime(text, instant(14, 7, 9)), expected);
}

}  // namespace
}  // namespace vornwout
