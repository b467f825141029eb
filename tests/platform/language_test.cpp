#include "platform/strings/language.h"

#include <optional>
#include <stdexcept>
#include <string_view>

#include "gtest/gtest.h"

namespace vornwout {
namespace {

TEST(LanguageTest, codesAreFoundInAnyCaseAndWithAHyphen) {
  for (const std::string_view code : kLanguages) EXPECT_EQ(findLanguage(code), code);
  const struct {
    std::string_view text;
    std::string_view code;
  } cases[] = {{"DE", "de"},       {"pt_br", "pt_BR"}, {"PT-BR", "pt_BR"},
               {"zh-cn", "zh_CN"}, {"ZH_tw", "zh_TW"}, {"En", "en"}};
  for (const auto& c : cases) EXPECT_EQ(findLanguage(c.text), c.code) << c.text;
  for (const std::string_view text :
       {"", "e", "eng", "pt", "ptBR", "zh", "nl", "en ", "../en", "_"}) {
    EXPECT_EQ(findLanguage(text), std::nullopt) << text;
  }
}

TEST(LanguageTest, englishIsCurrentUntilAnotherIsScoped) {
  EXPECT_EQ(currentLanguage(), "en");
  {
    const ScopedLanguage outer("JA");
    EXPECT_EQ(currentLanguage(), "ja");
    {
      const ScopedLanguage inner("zh-tw");
      EXPECT_EQ(currentLanguage(), "zh_TW");
    }
    EXPECT_EQ(currentLanguage(), "ja");
    EXPECT_THROW(ScopedLanguage("nl"), std::invalid_argument);
    EXPECT_EQ(currentLanguage(), "ja");
  }
  EXPECT_EQ(currentLanguage(), "en");
}

}  // namespace
}  // namespace vornwout
