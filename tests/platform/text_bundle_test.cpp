// Bundles as ICU's compiler makes them, and what others make of them.
#include "platform/strings/text_bundle.h"

#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unicode/unistr.h>
#include <unicode/ures.h>

#include "platform/text/utf8.h"
#include "tests/support/file_content.h"
#include "tests/support/hostile_size.h"
#include "tests/support/scratch_directory.h"
#include "tests/support/text_bundle_bytes.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::Optional;

using Entries = std::vector<keyValueGloss>;

const Entries kSome = {
    {"b", "zwei", ""}, {"a", "", "Hilfe \xF0\x9D\x84\x9E"}, {"c ^1", "M\xC3\xA4rz", "x\ny"}};

/// The bytes in memory of their own size, so that a sanitizer sees a byte read behind them.
std::vector<char> exactly(const std::string& bytes) { return {bytes.begin(), bytes.end()}; }

/// The entries of a bundle as ICU itself reads them.
Entries readByIcu(const std::string& bytes) {
  const ScratchDirectory folder;
  folder.write("en.res", bytes);
  UErrorCode status = U_ZERO_ERROR;
  UResourceBundle* bundle = ures_openDirect(folder.path().c_str(), "en", &status);
  Entries entries;
  const auto read = [&](const char* name, std::string keyValueGloss::*field) {
    UResourceBundle* array = ures_getByKey(bundle, name, nullptr, &status);
    entries.resize(static_cast<std::size_t>(U_SUCCESS(status) != 0 ? ures_getSize(array) : 0));
    for (std::size_t i = 0; i < entries.size(); ++i) {
      std::int32_t length = 0;
      const UChar* text =
          ures_getStringByIndex(array, static_cast<std::int32_t>(i), &length, &status);
      icu::UnicodeString(text, length).toUTF8String(entries[i].*field);
    }
    ures_close(array);
  };
  read("Keys", &keyValueGloss::key);
  read("Texts", &keyValueGloss::value);
  read("Helps", &keyValueGloss::gloss);
  ures_close(bundle);
  EXPECT_TRUE(U_SUCCESS(status)) << u_errorName(status);
  return entries;
}

TEST(TextBundle, HasItsEntriesInTheirOrder) {
  EXPECT_THAT(readTextBundle(textBundleBytes(kSome)), Optional(kSome));
  EXPECT_THAT(readTextBundle(textBundleBytes({})), Optional(IsEmpty()));
}

TEST(TextBundle, ReadsWhatIcuReads) {
  EXPECT_EQ(readByIcu(textBundleBytes(kSome)), kSome);
  for (const char* language : {"de", "en"}) {
    const std::string shipped =
        fileContent(std::string(VORN_BUILD_DIR "/lang/") + language + "/output.qbb");
    const auto entries = readTextBundle(shipped);
    ASSERT_TRUE(entries) << language;
    EXPECT_EQ(*entries, readByIcu(shipped)) << language;
    EXPECT_GT(entries->size(), 12U) << language;
  }
}

TEST(TextBundle, CutOffAnywhereIsNone) {
  const std::string whole = textBundleBytes(kSome);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const std::vector<char> cut = exactly(whole.substr(0, size));
    EXPECT_EQ(readTextBundle({cut.data(), cut.size()}), std::nullopt) << size;
  }
}

TEST(TextBundle, FlippedAnywhereIsNoneOrHoldsWholeTexts) {
  const std::string whole = textBundleBytes(kSome);
  int refused = 0;
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (int bits = 1; bits < 256; ++bits) {
      std::string flipped = whole;
      flipped[at] = static_cast<char>(flipped[at] ^ bits);
      const std::vector<char> bytes = exactly(flipped);
      const auto entries = readTextBundle({bytes.data(), bytes.size()});
      if (!entries) {
        ++refused;
        continue;
      }
      std::size_t size = 0;
      for (const keyValueGloss& entry : *entries) {
        EXPECT_FALSE(entry.key.empty());
        for (const std::string* text : {&entry.key, &entry.value, &entry.gloss}) {
          EXPECT_TRUE(isValidUtf8(*text)) << at << " " << bits;
          size += text->size();
        }
      }
      EXPECT_LE(size, 2 * whole.size());
    }
  }
  EXPECT_GT(refused, 1000);
}

struct Forgery {
  const char* name;
  std::function<std::string()> make;
};

/// A whole bundle of one entry with some of its bytes replaced.
std::string replaced(std::size_t at, std::string_view bytes) {
  return textBundleBytes({{"a", "b", "c"}}).replace(at, bytes.size(), bytes);
}
/// One with a word of its body replaced.
std::string withWord(std::size_t index, std::uint32_t value) {
  TextBundleBytes bundle({{"a", "b", "c"}});
  bundle.setWord(index, value);
  return bundle.bytes();
}
/// One whose table or arrays are made by `make`, which returns the three resources.
std::string withArrays(const std::function<std::vector<std::uint32_t>(TextBundleBytes&)>& make) {
  TextBundleBytes bundle;
  const std::vector<std::uint32_t> arrays = make(bundle);
  bundle.addTable(arrays);
  return bundle.bytes();
}

constexpr std::uint32_t kFarAway = 0x0FFFFFFF;

const Forgery kForgeries[] = {
    {"nothing", [] { return std::string(); }},
    {"a head that says it is too small", [] { return replaced(0, std::string_view("\x17\0", 2)); }},
    {"a whole bundle behind a head that is too small",
     [] { return replaced(0, "\x14").erase(20, TextBundleBytes::kHeadSize - 20); }},
    {"a head larger than the file", [] { return replaced(0, "\xFF\xFF"); }},
    {"other magic bytes", [] { return replaced(2, "\xDB"); }},
    {"a description that is too short", [] { return replaced(4, "\x13"); }},
    {"the other byte order", [] { return replaced(8, "\x01"); }},
    {"characters that are not ASCII's", [] { return replaced(9, "\x01"); }},
    {"units of four bytes", [] { return replaced(10, "\x04"); }},
    {"another kind of data", [] { return replaced(12, "CvAl"); }},
    {"format version 2", [] { return replaced(16, "\x02"); }},
    {"a head that moves the body", [] { return replaced(0, "\x22"); }},
    {"too few indexes", [] { return withWord(1, 3); }},
    {"a size that is too small", [] { return withWord(4, 20); }},
    {"bytes behind its end", [] { return textBundleBytes(kSome) + std::string(4, '\0'); }},
    {"half a word behind its end", [] { return textBundleBytes(kSome) + std::string(2, '\0'); }},
    {"a root that calls its table an array",
     [] {
       TextBundleBytes bundle({{"a", "b", "c"}});
       bundle.setWord(0, TextBundleBytes::kArrayType | (bundle.word(0) & kFarAway));
       return bundle.bytes();
     }},
    {"a root that is no table", [] { return withWord(0, TextBundleBytes::kArrayType | 12); }},
    {"a root that is elsewhere",
     [] { return withWord(0, TextBundleBytes::kTableType | kFarAway); }},
    {"a root in the last word",
     [] {
       TextBundleBytes bundle({{"a", "b", "c"}});
       bundle.addWord(0xFFFF);
       bundle.setWord(0, TextBundleBytes::kTableType | (bundle.end() - 1));
       bundle.setWord(4, bundle.end());
       return bundle.bytes();
     }},
    {"no array Keys", [] { return withWord(7, 0x73796560); }},
    {"a name without its end", [] { return withWord(8, 0x78655458); }},
    {"an array that is a string",
     [] {
       return withArrays([](TextBundleBytes& bundle) {
         const std::uint32_t text = bundle.addText("a");
         const std::uint32_t array = bundle.addArray({text});
         return std::vector{text, array, array};
       });
     }},
    {"an array that calls itself a string",
     [] {
       return withArrays([](TextBundleBytes& bundle) {
         const std::uint32_t array = bundle.addArray({bundle.addText("a")});
         return std::vector{array, array & kFarAway, array};
       });
     }},
    {"an array that is elsewhere",
     [] {
       return withArrays([](TextBundleBytes& bundle) {
         const std::uint32_t array = bundle.addArray({bundle.addText("a")});
         return std::vector{array, TextBundleBytes::kArrayType | kFarAway, array};
       });
     }},
    {"an array longer than the file",
     [] {
       return withArrays([](TextBundleBytes& bundle) {
         const std::uint32_t array = bundle.addArray({bundle.addText("a")});
         bundle.setWord(array & kFarAway, 0xFFFFFFFF);
         return std::vector{array, array, array};
       });
     }},
    {"an array that begins in the file and ends behind it",
     [] {
       TextBundleBytes bundle({{"a", "b", "c"}});
       const std::uint32_t items = (bundle.word(0) & kFarAway) + 2;
       const std::uint32_t text = bundle.addText("a");
       const std::uint32_t array = bundle.addArray({text});
       bundle.setWord(array & kFarAway, 2);
       for (std::uint32_t i = 0; i < 3; ++i) bundle.setWord(items + i, array);
       bundle.setWord(4, bundle.end());
       return bundle.bytes();
     }},
    {"fewer texts than keys",
     [] {
       return withArrays([](TextBundleBytes& bundle) {
         const std::uint32_t one = bundle.addArray({bundle.addText("a")});
         const std::uint32_t two = bundle.addArray({bundle.addText("b"), bundle.addText("c")});
         return std::vector{two, one, two};
       });
     }},
    {"fewer help texts than keys",
     [] {
       return withArrays([](TextBundleBytes& bundle) {
         const std::uint32_t one = bundle.addArray({bundle.addText("a")});
         const std::uint32_t two = bundle.addArray({bundle.addText("b"), bundle.addText("c")});
         return std::vector{two, two, one};
       });
     }},
    {"a key that is no string",
     [] {
       return withArrays([](TextBundleBytes& bundle) {
         const std::uint32_t texts = bundle.addArray({bundle.addText("a")});
         return std::vector{bundle.addArray({7U << 28U | 1}), texts, texts};
       });
     }},
    {"an empty key",
     [] {
       return textBundleBytes({{"", "b", "c"}});
     }},
    {"a text that is elsewhere",
     [] {
       return withArrays([](TextBundleBytes& bundle) {
         const std::uint32_t texts = bundle.addArray({bundle.addText("a")});
         return std::vector{texts, bundle.addArray({kFarAway}), bundle.addArray({0})};
       });
     }},
    {"a text longer than the file",
     [] {
       return withArrays([](TextBundleBytes& bundle) {
         const std::uint32_t text = bundle.addText("b");
         bundle.setWord(text, 0x7FFFFFFF);
         return std::vector{bundle.addArray({bundle.addText("a")}), bundle.addArray({text}),
                            bundle.addArray({0})};
       });
     }},
    {"half a character",
     [] {
       return withArrays([](TextBundleBytes& bundle) {
         const std::uint32_t text = bundle.addUnits(std::u16string(1, char16_t{0xD834}));
         return std::vector{bundle.addArray({bundle.addText("a")}), bundle.addArray({text}),
                            bundle.addArray({0})};
       });
     }},
    {"one string for many texts",
     [] {
       return withArrays([](TextBundleBytes& bundle) {
         const std::uint32_t text = bundle.addText(std::string(1000, 'x'));
         std::vector<std::uint32_t> keys;
         for (int i = 0; i < 10; ++i) keys.push_back(bundle.addText(std::to_string(i)));
         return std::vector{bundle.addArray(keys),
                            bundle.addArray(std::vector<std::uint32_t>(10, text)),
                            bundle.addArray(std::vector<std::uint32_t>(10, 0))};
       });
     }},
    {"one array for all, of more elements than entries fit in",
     [] {
       return withArrays([](TextBundleBytes& bundle) {
         const std::uint32_t text = bundle.addText("a");
         const std::uint32_t array = bundle.addArray(std::vector<std::uint32_t>(100'000, text));
         return std::vector{array, array, array};
       });
     }},
    {"more bytes than are read",
     [] {
       return textBundleBytes({{"a", std::string(kMaxBundleSize / 2, 'x'), ""}});
     }},
};

TEST(TextBundle, ForgedIsNone) {
  for (const Forgery& forgery : kForgeries) {
    const std::vector<char> bytes = exactly(forgery.make());
    EXPECT_EQ(readTextBundle({bytes.data(), bytes.size()}), std::nullopt) << forgery.name;
  }
}

TEST(TextBundle, LargeIsReadWhole) {
  Entries entries;
  for (std::size_t i = 0; i < kHostileCount / 10; ++i) {
    entries.push_back({"key " + std::to_string(i), std::string(i % 50, 'x'), ""});
  }
  EXPECT_EQ(readTextBundle(textBundleBytes(entries)), entries);
}

TEST(TextBundle, TextsMayHoldAnyCharacter) {
  const Entries entries = {{std::string("\0", 1), "\xEF\xBF\xBF", "\x7F\t\x1B["}};
  EXPECT_THAT(readTextBundle(textBundleBytes(entries)), Optional(entries));
}

}  // namespace
}  // namespace vornwout
