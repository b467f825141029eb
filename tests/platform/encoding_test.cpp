// Every single byte and pair of bytes of the encodings in use, against ICU; and what hostile texts
// do.
#include "platform/text/encoding.h"

#include <chrono>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include "gtest/gtest.h"
#include "platform/text/utf8.h"

namespace vornwout {
namespace {

const std::string kBad = "\xEF\xBF\xBD";

std::shared_ptr<const Encoding> found(const std::string& name) {
  auto encoding = Encoding::find(name);
  if (encoding == nullptr) throw std::runtime_error("no encoding " + name);
  return encoding;
}

/// ICU's own reading of a text, straight from a converter that stops at the first fault.
class Reference {
 public:
  explicit Reference(const std::string& name) {
    UErrorCode status = U_ZERO_ERROR;
    converter_ = ucnv_open(name.c_str(), &status);
    ucnv_setToUCallBack(converter_, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    if (U_FAILURE(status) != 0) throw std::runtime_error("no converter " + name);
  }
  ~Reference() { ucnv_close(converter_); }
  Reference(const Reference&) = delete;
  Reference& operator=(const Reference&) = delete;

  /// The text as UTF-8; false when it is not wholly valid.
  bool decode(std::string_view text, std::string& utf8) {
    UErrorCode status = U_ZERO_ERROR;
    std::u16string units(text.size() * 4 + 4, u'\0');
    const std::int32_t length =
        ucnv_toUChars(converter_, units.data(), static_cast<std::int32_t>(units.size()),
                      text.data(), static_cast<std::int32_t>(text.size()), &status);
    if (U_FAILURE(status) != 0) return false;
    utf8.assign(units.size() * 3 + 1, '\0');
    std::int32_t written = 0;
    u_strToUTF8(utf8.data(), static_cast<std::int32_t>(utf8.size()), &written, units.data(), length,
                &status);
    utf8.resize(static_cast<std::size_t>(written));
    return U_SUCCESS(status) != 0;
  }

  /// Length of the character at the start: the shortest prefix that is valid; 1 when there is none.
  int characterLength(std::string_view text, std::string& utf8) {
    for (std::size_t length = 1; length <= std::min<std::size_t>(text.size(), 4); ++length) {
      if (decode(text.substr(0, length), utf8)) return static_cast<int>(length);
    }
    utf8 = kBad;
    return 1;
  }

 private:
  UConverter* converter_ = nullptr;
};

struct Pair {
  const char* name;
  const char* reference;
};

class EncodingTableTest : public ::testing::TestWithParam<Pair> {};

TEST_P(EncodingTableTest, lengthsAndTextsOfAllSinglesAndPairsAgreeWithReference) {
  const auto encoding = found(GetParam().name);
  Reference reference(GetParam().reference);
  std::string expected;
  int differences = 0;
  for (unsigned value = 0x8000; value < 0x20000; ++value) {
    // Pairs with a lead byte from 0x80 on; and every single byte.
    const bool isSingle = value >= 0x10000;
    if (isSingle && value >= 0x10100) break;
    std::string text(1, static_cast<char>(isSingle ? value : value >> 8U));
    if (!isSingle) text.push_back(static_cast<char>(value));
    int length = 1;
    if (static_cast<unsigned char>(text[0]) < 0x80) {
      expected = text;
    } else {
      length = reference.characterLength(text, expected);
    }
    const std::string character = text.substr(0, static_cast<std::size_t>(length));
    if (encoding->characterLength(text) != length || encoding->toUtf8(character) != expected) {
      ADD_FAILURE() << "at value " << std::hex << value;
      if (++differences == 5) return;
    }
  }
}

TEST_P(EncodingTableTest, everyValidCharacterRoundTripsOrSaysThatItDoesNot) {
  const auto encoding = found(GetParam().name);
  for (unsigned value = 0; value < 0x10000; ++value) {
    std::string text(1, static_cast<char>(value >> 8U));
    text.push_back(static_cast<char>(value));
    text.resize(static_cast<std::size_t>(encoding->characterLength(text)));
    const std::string utf8 = encoding->toUtf8(text);
    if (utf8 == kBad) continue;
    bool lossless = false;
    const std::string back = encoding->fromUtf8(utf8, &lossless);
    // Several byte pairs may stand for one character; the one that comes back must mean the same.
    ASSERT_EQ(encoding->toUtf8(back) == utf8, lossless) << std::hex << value;
    const bool isAscii = static_cast<unsigned char>(text[0]) < 0x80;
    ASSERT_TRUE(!isAscii || back == text) << std::hex << value;
  }
}

TEST_P(EncodingTableTest, conversionOfNoiseIsTheSumOfItsCharacters) {
  const auto encoding = found(GetParam().name);
  std::mt19937 random(7);
  for (int round = 0; round < 2000; ++round) {
    std::string noise(random() % 24, '\0');
    for (char& byte : noise)
      byte = static_cast<char>(random() % 3 == 0 ? random() % 64 + 48 : random());
    std::string sum;
    std::string_view rest = noise;
    while (!rest.empty()) {
      const int length = encoding->characterLength(rest);
      ASSERT_GE(length, 1);
      ASSERT_LE(static_cast<std::size_t>(length), rest.size());
      sum += encoding->toUtf8(rest.substr(0, static_cast<std::size_t>(length)));
      rest.remove_prefix(static_cast<std::size_t>(length));
    }
    ASSERT_EQ(encoding->toUtf8(noise), sum) << ::testing::PrintToString(noise);
    const std::u16string units = encoding->toUtf16(noise);
    std::string fromUnits;
    for (std::size_t i = 0; i < units.size(); ++i) {
      char32_t codePoint = units[i];
      if (codePoint >= 0xD800 && codePoint < 0xDC00 && i + 1 < units.size()) {
        codePoint = 0x10000 + ((codePoint - 0xD800) << 10U) + (units[++i] - 0xDC00U);
      }
      appendUtf8(fromUnits, codePoint);
    }
    ASSERT_EQ(fromUnits, sum);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Named, EncodingTableTest,
    ::testing::Values(Pair{"UTF-8", "UTF-8"}, Pair{"windows-1252", "windows-1252"},
                      Pair{"Shift-JIS", "ibm-943_P15A-2003"}, Pair{"Big5", "windows-950-2000"},
                      Pair{"GB18030", "gb18030"}, Pair{"EUC-KR", "euc-kr"},
                      Pair{"cp949", "windows-949-2000"}, Pair{"gbk", "windows-936-2000"},
                      Pair{"EUC-JP", "euc-jp"}, Pair{"EUC-TW", "euc-tw"},
                      Pair{"Big5-HKSCS", "big5-hkscs"}, Pair{"ISO-8859-15", "iso-8859-15"}));

TEST(EncodingTest, usualNamesFindTheEncoding) {
  const struct {
    const char* name;
    const char* canonical;
  } cases[] = {{"UTF-8", "UTF-8"},
               {"utf8", "UTF-8"},
               {"windows-1252", "windows-1252"},
               {"cp1252", "windows-1252"},
               {"CP1252", "windows-1252"},
               {"latin1", "ISO-8859-1"},
               {"ISO-8859-1", "ISO-8859-1"},
               {"us-ascii", "US-ASCII"},
               {"Shift-JIS", "Shift_JIS"},
               {"Shift_JIS", "Shift_JIS"},
               {"sjis", "Shift_JIS"},
               {"windows-31j", "Shift_JIS"},
               {"cp932", "Shift_JIS"},
               {"Big5", "Big5"},
               {"big5", "Big5"},
               {"cp950", "Big5"},
               {"GB18030", "GB18030"},
               {"cp936", "GBK"},
               {"gbk", "GBK"},
               {"EUC-KR", "EUC-KR"},
               {"euckr", "EUC-KR"},
               {"cp949", "KSC_5601"},
               {"uhc", "KSC_5601"}};
  for (const auto& c : cases) {
    const auto encoding = Encoding::find(c.name);
    ASSERT_NE(encoding, nullptr) << c.name;
    EXPECT_EQ(encoding->name(), c.canonical) << c.name;
    EXPECT_EQ(Encoding::find(c.canonical), encoding) << c.name;
  }
  EXPECT_TRUE(found("utf8")->isUtf8());
  EXPECT_FALSE(found("latin1")->isUtf8());
}

TEST(EncodingTest, statefulOtherHalfOrUnknownNamesFindNothing) {
  for (const char* name : {"UTF-16",
                           "UTF-16LE",
                           "UTF-32",
                           "UTF-7",
                           "ISO-2022-JP",
                           "ISO-2022-KR",
                           "hz",
                           "SCSU",
                           "BOCU-1",
                           "IMAP-mailbox-name",
                           "ibm-1047",
                           "ibm-37",
                           "ibm-930",
                           "CESU-8",
                           "ibm-943_P130-1999",
                           "iscii",
                           "",
                           " ",
                           "no such encoding",
                           "utf-8,locale=de",
                           "../../etc/passwd",
                           "UTF-8\n",
                           "latin1,version=1"}) {
    EXPECT_EQ(Encoding::find(name), nullptr) << name;
  }
  EXPECT_EQ(Encoding::find(std::string(100000, 'a')), nullptr);
  EXPECT_EQ(Encoding::find(std::string("UTF-8\0x", 7)), nullptr);
}

TEST(EncodingTest, trailBytesThatEqualSyntaxCharactersBelongToTheirCharacter) {
  const struct {
    const char* encoding;
    std::string character;
  } cases[] = {{"Shift-JIS", "\x83\\"}, {"Shift-JIS", "\x83|"}, {"Shift-JIS", "\x95\\"},
               {"Big5", "\xA5\\"},      {"Big5", "\xA5|"},      {"Big5", "\xB3\\"},
               {"GB18030", "\x81\\"},   {"GB18030", "\x81|"},   {"GB18030", "\x81\x30\x89\x39"}};
  for (const auto& c : cases) {
    const auto encoding = found(c.encoding);
    EXPECT_EQ(encoding->characterLength(c.character + "'x'"), static_cast<int>(c.character.size()));
    EXPECT_NE(encoding->toUtf8(c.character), kBad);
    EXPECT_EQ(encoding->toUtf8(c.character).find('\\'), std::string::npos);
    EXPECT_EQ(encoding->fromUtf8(encoding->toUtf8(c.character)), c.character);
  }
}

TEST(EncodingTest, quotesAndSlashesAreNeverTrailBytesOfAnything) {
  for (const char* name : {"Shift-JIS", "Big5", "GB18030", "EUC-KR", "cp949", "UTF-8", "EUC-JP"}) {
    const auto encoding = found(name);
    for (unsigned lead = 0x80; lead < 0x100; ++lead) {
      for (const char trail : {'/', '"', '\'', '=', '(', ')', ' ', '\n'}) {
        const std::string text{static_cast<char>(lead), trail};
        EXPECT_EQ(encoding->characterLength(text), 1) << name << ' ' << lead << trail;
      }
    }
  }
}

TEST(EncodingTest, fourByteCharactersOfGb18030AreWhole) {
  const auto encoding = found("GB18030");
  Reference reference("gb18030");
  std::mt19937 random(11);
  std::string expected;
  int valid = 0;
  for (int round = 0; round < 20000; ++round) {
    const std::string text{
        static_cast<char>(0x81 + random() % 0x7E), static_cast<char>(0x30 + random() % 10),
        static_cast<char>(0x81 + random() % 0x7E), static_cast<char>(0x30 + random() % 10)};
    const int length = reference.characterLength(text, expected);
    if (length == 4) ++valid;
    ASSERT_EQ(encoding->characterLength(text), length);
    ASSERT_EQ(encoding->characterLength(text + "1"), length);
    ASSERT_EQ(encoding->toUtf8(text.substr(0, static_cast<std::size_t>(length))), expected);
  }
  EXPECT_GT(valid, 1000);
  const std::string emoji = "\xF0\x9F\x98\x80";
  EXPECT_EQ(encoding->fromUtf8(emoji).size(), 4U);
  EXPECT_EQ(encoding->toUtf8(encoding->fromUtf8(emoji)), emoji);
  // A replacement character that was really written is a character, not a fault.
  EXPECT_EQ(encoding->characterLength(encoding->fromUtf8(kBad)), 4);
}

TEST(EncodingTest, truncatedAndMalformedSequencesAreBytesOfTheirOwn) {
  const struct {
    const char* encoding;
    std::string text;
    std::string utf8;
  } cases[] = {{"UTF-8", "a\xE2\x82", "a" + kBad + kBad},
               {"UTF-8", "\xC0\xAF", kBad + kBad},
               {"UTF-8", "\xED\xA0\x80", kBad + kBad + kBad},
               {"UTF-8", "\xF4\x90\x80\x80", kBad + kBad + kBad + kBad},
               {"Shift-JIS", "a\x83", "a" + kBad},
               {"Shift-JIS", "\x83\x20", kBad + " "},
               {"Big5", "\xA5", kBad},
               {"Big5", "\xA5'", kBad + "'"},
               {"GB18030", "\x81\x30\x81", kBad + "0" + kBad},
               {"GB18030", "\x81\x30", kBad + "0"},
               {"GB18030", "\x81\x30\x20", kBad + "0 "},
               {"GB18030", "\xFF\x41", kBad + "A"},
               {"EUC-KR", "\xB0", kBad},
               {"EUC-KR", "\xB0\x41", kBad + "A"},
               {"EUC-JP", "\x8F\xB0", kBad + kBad},
               {"us-ascii", "\xE9t\xE9", kBad + "t" + kBad}};
  for (const auto& c : cases) {
    const auto encoding = found(c.encoding);
    EXPECT_EQ(encoding->toUtf8(c.text), c.utf8) << c.encoding << ::testing::PrintToString(c.text);
    std::string copy = c.text;
    copy.shrink_to_fit();
    EXPECT_GE(encoding->characterLength(copy.substr(copy.size() - 1)), 1);
  }
}

TEST(EncodingTest, shiftJisKeepsAsciiAsItIs) {
  const auto encoding = found("Shift-JIS");
  std::string ascii;
  for (char c = 0; c < 127; ++c) ascii.push_back(c);
  ascii.push_back(127);
  bool lossless = false;
  EXPECT_EQ(encoding->toUtf8(ascii), ascii);
  EXPECT_EQ(encoding->fromUtf8(ascii, &lossless), ascii);
  EXPECT_TRUE(lossless);
}

TEST(EncodingTest, whatCannotBeHeldBecomesSubstituteAndIsToldAbout) {
  const struct {
    const char* encoding;
    const char* utf8;
    std::string bytes;
    bool lossless;
  } cases[] = {{"windows-1252", "caf\xC3\xA9", "caf\xE9", true},
               {"windows-1252", "\xE2\x82\xAC", "\x80", true},
               {"windows-1252", "a\xCE\xA9\xC3\xA9", "a?\xE9", false},
               {"windows-1252", "\xF0\x9F\x98\x80!", "?!", false},
               {"us-ascii", "\xC3\xA9", "?", false},
               // A yen sign must not come out as the backslash that shares its place.
               {"Shift-JIS", "\xC2\xA5", "?", false},
               {"Shift-JIS", "\xE8\xA1\xA8", "\x95\\", true},
               {"EUC-KR", "\xEA\xB0\x80", "\xB0\xA1", true},
               {"UTF-8", "\xC3\xA9", "\xC3\xA9", true},
               // A look-alike is held, but is not the text that was given.
               {"Shift-JIS", "\xEF\xA1\xAF", "\x87\x82", false},
               {"UTF-8", "\xC3", "\xEF\xBF\xBD", false}};
  for (const auto& c : cases) {
    bool lossless = !c.lossless;
    EXPECT_EQ(found(c.encoding)->fromUtf8(c.utf8, &lossless), c.bytes) << c.encoding << c.utf8;
    EXPECT_EQ(lossless, c.lossless) << c.encoding << c.utf8;
    EXPECT_EQ(found(c.encoding)->fromUtf8(c.utf8), c.bytes);
  }
}

TEST(EncodingTest, nothingOutsideAsciiTurnsIntoAsciiButTheSubstitute) {
  for (const char* name :
       {"windows-1252", "Shift-JIS", "Big5", "GB18030", "EUC-KR", "cp949", "EUC-JP", "gbk"}) {
    const auto encoding = found(name);
    for (char32_t codePoint = 0x80; codePoint < 0x10000; ++codePoint) {
      if (codePoint == 0xD800) codePoint = 0xE000;
      std::string utf8;
      appendUtf8(utf8, codePoint);
      bool lossless = false;
      const std::string bytes = encoding->fromUtf8(utf8, &lossless);
      const bool isHeld = static_cast<unsigned char>(bytes[0]) >= 0x80;
      ASSERT_TRUE(isHeld || (bytes == "?" && !lossless))
          << name << " " << static_cast<unsigned>(codePoint);
    }
  }
}

TEST(EncodingTest, lettersAreKnownByByte) {
  for (const char* name : {"UTF-8", "windows-1252", "Shift-JIS"}) {
    const auto encoding = found(name);
    EXPECT_TRUE(encoding->isLetterByte('a'));
    EXPECT_TRUE(encoding->isLetterByte('Z'));
    for (const unsigned char other : {'0', '_', '.', '@', '[', '`', '{', ' ', '\0'}) {
      EXPECT_FALSE(encoding->isLetterByte(other)) << name << other;
    }
  }
  EXPECT_TRUE(found("windows-1252")->isLetterByte(0xE9));
  EXPECT_FALSE(found("windows-1252")->isLetterByte(0xD7));  // multiplication sign
  EXPECT_TRUE(found("Shift-JIS")->isLetterByte(0xB1));      // half-width katakana
  EXPECT_FALSE(found("Shift-JIS")->isLetterByte(0x83));     // starts a pair
  EXPECT_FALSE(found("UTF-8")->isLetterByte(0xE9));
}

TEST(EncodingTest, currentEncodingIsUtf8UntilAnotherIsScoped) {
  EXPECT_TRUE(currentEncoding().isUtf8());
  {
    const ScopedEncoding outer(found("windows-1252"));
    EXPECT_EQ(currentToUtf8("\xE9"), "\xC3\xA9");
    {
      const ScopedEncoding inner(found("Big5"));
      EXPECT_EQ(currentEncoding().name(), "Big5");
    }
    EXPECT_EQ(currentEncoding().name(), "windows-1252");
  }
  EXPECT_TRUE(currentEncoding().isUtf8());
  EXPECT_THROW(ScopedEncoding(nullptr), std::invalid_argument);
  EXPECT_TRUE(currentEncoding().isUtf8());
}

TEST(EncodingTest, largeTextsConvertInTimeThatGrowsWithTheirSize) {
  std::string text;
  while (text.size() < 4'000'000) text += "SELECT \x95\\\x83\x41 \x83";
  const auto start = std::chrono::steady_clock::now();
  const std::string utf8 = found("Shift-JIS")->toUtf8(text);
  EXPECT_EQ(found("UTF-8")->toUtf8(utf8), utf8);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

}  // namespace
}  // namespace vornwout
