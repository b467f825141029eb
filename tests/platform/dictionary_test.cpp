#include "platform/strings/dictionary.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "platform/strings/language.h"
#include "platform/text/encoding.h"
#include "tests/support/scratch_directory.h"
#include "tests/support/text_bundle_bytes.h"

namespace vornwout {
namespace {

TEST(DictionaryTest, englishHasTheTwelveMonths) {
  const FacSTDictionary dictionary("/opt/lang/en/");
  for (const std::string month : {"January", "February", "March", "April", "May", "June", "July",
                                  "August", "September", "October", "November", "December"}) {
    EXPECT_EQ(dictionary.LookUp("TFO" + month), month);
  }
}

TEST(DictionaryTest, monthsComeInTheLanguageOfTheLocationsLastDirectory) {
  const struct {
    const char* location;
    const char* march;
  } cases[] = {{"/opt/lang/en/", "March"},
               {"/opt/lang/de/", "M\xC3\xA4rz"},
               {"/opt/lang/de", "M\xC3\xA4rz"},
               {"/opt/lang/DE//", "M\xC3\xA4rz"},
               {"\\opt\\lang\\de\\", "M\xC3\xA4rz"},
               {"de", "M\xC3\xA4rz"},
               {"/opt/lang/es/", "marzo"},
               {"/opt/lang/fr/", "mars"},
               {"/opt/lang/it/", "marzo"},
               {"/opt/lang/ja/", "3\xE6\x9C\x88"},
               {"/opt/lang/ko/", "3\xEC\x9B\x94"},
               {"/opt/lang/pl/", "marzec"},  // stand-alone, not the genitive "marca"
               {"/opt/lang/pt-br/", "mar\xC3\xA7o"},
               {"/opt/lang/ru/", "\xD0\xBC\xD0\xB0\xD1\x80\xD1\x82"},
               {"/opt/lang/zh_CN/", "\xE4\xB8\x89\xE6\x9C\x88"},
               {"/opt/lang/zh_TW/", "3\xE6\x9C\x88"},
               {"/opt/de/nl/", "March"},
               {"/", "March"},
               {"", "March"}};
  for (const auto& c : cases) {
    EXPECT_EQ(FacSTDictionary(c.location).LookUp("TFOMarch"), c.march) << c.location;
  }
}

TEST(DictionaryTest, everyLanguageHasDifferentTextsForDifferentMonths) {
  for (const std::string_view language : kLanguages) {
    const FacSTDictionary dictionary(std::string("/lang/") + std::string(language) + "/");
    EXPECT_FALSE(dictionary.LookUp("TFOJanuary").empty()) << language;
    EXPECT_NE(dictionary.LookUp("TFOJanuary"), dictionary.LookUp("TFODecember")) << language;
  }
}

TEST(DictionaryTest, monthsComeInTheCurrentEncodingOrInEnglish) {
  const FacSTDictionary german("/lang/de/");
  const FacSTDictionary polish("/lang/pl/");
  const FacSTDictionary japanese("/lang/ja/");
  {
    const ScopedEncoding encoding(Encoding::find("windows-1252"));
    EXPECT_EQ(german.LookUp("TFOMarch"), "M\xE4rz");
    EXPECT_EQ(polish.LookUp("TFOMarch"), "March") << "no year has months in two languages";
    EXPECT_EQ(polish.LookUp("TFOJanuary"), "January");
    EXPECT_EQ(japanese.LookUp("TFOMarch"), "March");
  }
  {
    const ScopedEncoding encoding(Encoding::find("Shift-JIS"));
    EXPECT_EQ(japanese.LookUp("TFOMarch"), "3\x8C\x8E");
    EXPECT_EQ(german.LookUp("TFOMarch"), "March");
  }
  EXPECT_EQ(german.LookUp("TFOMarch"), "M\xC3\xA4rz");
}

TEST(DictionaryTest, labelsAreKnownWhateverTheProcedure) {
  FacSTDictionary dictionary("/lang/de/");
  EXPECT_EQ(dictionary.LookUp("E60801"), "Objects");
  dictionary.SetProcedure("Output Modify");
  EXPECT_EQ(dictionary.procedure(), "Output Modify");
  EXPECT_EQ(dictionary.LookUp("E60801"), "Objects");
  EXPECT_EQ(dictionary.LookUp("TFOMarch"), "M\xC3\xA4rz");
}

TEST(DictionaryTest, aMissingKeyGivesItself) {
  const FacSTDictionary dictionary("/lang/en/");
  for (const std::string& key :
       {std::string(), std::string("TFO"), std::string("TFOmarch"), std::string("TFOMarchX"),
        std::string("March"), std::string("E60802"), std::string("\xFF\0", 2)}) {
    EXPECT_EQ(dictionary.LookUp(key), key);
  }
}

/// A folder of string tables, each test's own: what was read of a place is kept for the process.
class DictionaryTableTest : public testing::Test {
 protected:
  /// Writes the table of a language and returns its location.
  std::string write(const std::string& language, const std::vector<keyValueGloss>& entries) const {
    std::filesystem::create_directories(scratch_.file(language));
    scratch_.write(language + "/output.qbb", textBundleBytes(entries));
    return scratch_.file(language) + "/";
  }

  ScratchDirectory scratch_;
};

TEST_F(DictionaryTableTest, textsAreThoseOfTheTable) {
  const std::string location =
      write("de", {{"E60801", "Dinge", ""}, {"TFOMarch", "Lenzing", ""}, {"new", "neu", "help"}});
  const FacSTDictionary dictionary(location);
  EXPECT_EQ(dictionary.LookUp("E60801"), "Dinge");
  EXPECT_EQ(dictionary.LookUp("TFOMarch"), "Lenzing");
  EXPECT_EQ(dictionary.LookUp("new"), "neu");
  EXPECT_EQ(dictionary.LookUp("help"), "help");
}

TEST_F(DictionaryTableTest, whatTheTableLacksIsBuiltIn) {
  const FacSTDictionary german(write("de", {{"TFOMay", "Wonnemonat", ""}, {"TFOMarch", "", ""}}));
  EXPECT_EQ(german.LookUp("E60801"), "Objects");
  EXPECT_EQ(german.LookUp("TFOMay"), "Wonnemonat");
  EXPECT_EQ(german.LookUp("TFOMarch"), "M\xC3\xA4rz") << "an empty text is none";
}

TEST_F(DictionaryTableTest, aDamagedTableIsNone) {
  const std::string location = write("de", {{"E60801", "Dinge", ""}});
  const std::string whole = scratch_.read("de/output.qbb");
  scratch_.write("de/output.qbb", whole.substr(0, whole.size() - 1));
  EXPECT_EQ(FacSTDictionary(location).LookUp("E60801"), "Objects");
}

TEST_F(DictionaryTableTest, nothingIsReadBeforeAKeyIsAskedForAndThenOnce) {
  const std::string location = scratch_.file("de") + "\\";
  const FacSTDictionary early(location);
  write("de", {{"E60801", "Dinge", ""}});
  EXPECT_EQ(early.LookUp("E60801"), "Dinge");
  std::filesystem::remove(scratch_.file("de/output.qbb"));
  EXPECT_EQ(FacSTDictionary(location).LookUp("E60801"), "Dinge");
}

TEST_F(DictionaryTableTest, everyLanguageHasItsOwn) {
  const std::string german = write("de", {{"E60801", "Dinge", ""}});
  const std::string french = write("fr", {{"E60801", "Choses", ""}});
  EXPECT_EQ(FacSTDictionary(german).LookUp("E60801"), "Dinge");
  EXPECT_EQ(FacSTDictionary(french).LookUp("E60801"), "Choses");
}

TEST_F(DictionaryTableTest, aDirectoryOfNoLanguageHasNoTable) {
  EXPECT_EQ(FacSTDictionary(write("nl", {{"E60801", "Dingen", ""}})).LookUp("E60801"), "Objects");
}

TEST_F(DictionaryTableTest, whatTheEncodingCannotHoldComesInEnglish) {
  const FacSTDictionary dictionary(write("de", {{"E60801", "\xE6\x9C\x88", ""},
                                                {"TFOMarch", "\xE6\x9C\x88", ""},
                                                {"umlaut", "\xC3\xA4", ""},
                                                {"other", "\xE6\x9C\x88", ""}}));
  {
    const ScopedEncoding encoding(Encoding::find("windows-1252"));
    EXPECT_EQ(dictionary.LookUp("E60801"), "Objects");
    EXPECT_EQ(dictionary.LookUp("TFOMarch"), "March");
    EXPECT_EQ(dictionary.LookUp("TFOMay"), "May") << "no year has months in two languages";
    EXPECT_EQ(dictionary.LookUp("umlaut"), "\xE4");
    EXPECT_EQ(dictionary.LookUp("other"), "other");
  }
  EXPECT_EQ(dictionary.LookUp("E60801"), "\xE6\x9C\x88");
  EXPECT_EQ(dictionary.LookUp("TFOMay"), "Mai");
}

TEST(DictionaryTest, theTablesOfThisBuildHaveEveryKeyThatIsLookedUp) {
  const FacSTDictionary english(VORN_BUILD_DIR "/lang/en/");
  const FacSTDictionary german(VORN_BUILD_DIR "/lang/de/");
  EXPECT_EQ(english.LookUp("E60801"), "Objects");
  EXPECT_EQ(german.LookUp("E60801"), "Objekte");
  // With the tables, months are the same as without.
  const FacSTDictionary builtIn("/nowhere/de/");
  for (const std::string month : {"January", "February", "March", "April", "May", "June", "July",
                                  "August", "September", "October", "November", "December"}) {
    EXPECT_EQ(english.LookUp("TFO" + month), month);
    EXPECT_EQ(german.LookUp("TFO" + month), builtIn.LookUp("TFO" + month));
  }
}

TEST(DictionaryTest, lookUpsAfterTheFirstAreCheap) {
  constexpr int kCount = 200'000;
  const FacSTDictionary dictionary("/lang/pl/");
  const std::string key = "TFOSeptember";
  std::size_t total = dictionary.LookUp(key).size();
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < kCount; ++i) total += dictionary.LookUp(key).size();
  const auto each = (std::chrono::steady_clock::now() - start) / kCount;
  EXPECT_EQ(total % (kCount + 1), 0U);
  // Making the names again takes at least ten times as long, instrumented or not.
  EXPECT_LT(each, std::chrono::microseconds(5));
}

}  // namespace
}  // namespace vornwout
