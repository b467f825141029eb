#include "platform/text/locale_encoding.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/scoped_environment.h"

namespace vornwout {
namespace {

struct Case {
  const char* condition;
  std::optional<std::string> all;
  std::optional<std::string> ctype;
  std::optional<std::string> lang;
  const char* encoding;
};

class LocaleEncoding : public testing::TestWithParam<Case> {};

TEST_P(LocaleEncoding, IsWhatTheEnvironmentNames) {
  const ScopedEnvironment all("LC_ALL", GetParam().all);
  const ScopedEnvironment ctype("LC_CTYPE", GetParam().ctype);
  const ScopedEnvironment lang("LANG", GetParam().lang);
  EXPECT_EQ(localeEncoding()->name(), GetParam().encoding);
}

INSTANTIATE_TEST_SUITE_P(
    Environments, LocaleEncoding,
    testing::Values(Case{"Nothing", {}, {}, {}, "UTF-8"}, Case{"Ascii", "C", {}, {}, "UTF-8"},
                    Case{"Posix", {}, {}, "POSIX", "UTF-8"},
                    Case{"Utf8", "C.UTF-8", {}, {}, "UTF-8"},
                    Case{"NotInstalled", "xx_XX.ISO-8859-1", {}, {}, "ISO-8859-1"},
                    Case{"WithModifier", {}, {}, "xx_XX.ISO-8859-15@euro", "ISO-8859-15"},
                    Case{"AllBeforeTheOthers", "xx_XX.EUC-JP", "C.UTF-8", "C.UTF-8", "EUC-JP"},
                    Case{"CtypeBeforeLang", {}, "xx_XX.KOI8-R", "C.UTF-8", "KOI8-R"},
                    Case{"EmptyIsNotSet", "", "", "xx_XX.KOI8-R", "KOI8-R"},
                    Case{"WithoutAnEncoding", "xx_XX", {}, {}, "UTF-8"},
                    Case{"UnknownEncoding", "xx_XX.NONSENSE", {}, {}, "UTF-8"},
                    Case{"EncodingWithState", "xx_XX.ISO-2022-JP", {}, {}, "UTF-8"}),
    [](const testing::TestParamInfo<Case>& test) { return test.param.condition; });

}  // namespace
}  // namespace vornwout
