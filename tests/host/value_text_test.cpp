#include "host/build/value_text.h"

#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

TEST(ValueText, NumbersAreRead) {
  struct Case {
    const char* text;
    double value;
  };
  const Case cases[] = {{"1", 1},    {"-1.5", -1.5}, {"+2", 2},     {" 3 ", 3},
                        {".5", 0.5}, {"5.", 5},      {"1e3", 1000}, {"1E-2", 0.01},
                        {"-0", 0},   {"0012", 12},   {"-.5", -0.5}};
  for (const Case& c : cases) EXPECT_EQ(readNumber(c.text), c.value) << c.text;
  for (const char* text :
       {"1e-400", "2e-324", "0.001e-399", "1e-99999999999999999999", "0e-999", "1000e-9999"}) {
    const auto value = readNumber(text);
    ASSERT_TRUE(value.has_value()) << text;
    EXPECT_EQ(*value, 0) << text;
    EXPECT_FALSE(std::signbit(*value)) << text;
  }
  EXPECT_TRUE(std::signbit(readNumber("-1e-400").value_or(1)));
  EXPECT_EQ(readNumber("." + std::string(400, '0') + "1"), 0);
  EXPECT_EQ(readNumber("3e-324"), std::numeric_limits<double>::denorm_min());
  EXPECT_FALSE(readNumber(std::string(400, '1')).has_value());
  EXPECT_FALSE(readNumber(".001e400").has_value());
  for (const char* text :
       {"",    " ",   "x",    "1x",   "1 2",   "--1",     "+-1",    "-+1",
        "inf", "nan", "-inf", "0x10", "1e",    "1e999",   "-1e999", "1e99999999999999999999",
        "1e-", "1,5", ".",    "-",    "1_000", "\xD9\xA1"}) {
    EXPECT_FALSE(readNumber(text).has_value()) << text;
  }
}

TEST(ValueText, NumbersThatAreTooLargeAreToldFromWhatIsNone) {
  for (const char* text : {"1e999", "-1e999", "+2e308", " 1e99999999999999999999 ", ".001e400"}) {
    EXPECT_TRUE(isTooLargeNumber(text)) << text;
  }
  for (const char* text : {"", "x", "inf", "-inf", "nan", "1e", "1.5", "1e-999", "1e999x"}) {
    EXPECT_FALSE(isTooLargeNumber(text)) << text;
  }
  EXPECT_TRUE(isTooLargeNumber("1.234,5e999", {',', '.'}));
  EXPECT_FALSE(isTooLargeNumber("12.34,5e999", {',', '.'}));
}

TEST(ValueText, OtherMarksAreRead) {
  const NumberMarks german{',', '.'};
  EXPECT_EQ(readNumber("1.234.567,5", german), 1234567.5);
  EXPECT_EQ(readNumber("-1.234", german), -1234);
  EXPECT_EQ(readNumber("1234,5", german), 1234.5);
  EXPECT_EQ(readNumber("1,5e3", german), 1500);
  for (const char* text :
       {"1.23", "12.34,5", "1.2345", ".123", "1..234", "1,2,3", "1,234.5", "1.234.", "1234.567"}) {
    EXPECT_FALSE(readNumber(text, german).has_value()) << text;
  }
  EXPECT_EQ(readNumber("1,234.5", {'.', ','}), 1234.5);
  EXPECT_EQ(readNumber("1 234", {'.', ' '}), 1234);
  for (const char* text : {"1 234 567.5",
                           "1\xC2\xA0"
                           "234\xC2\xA0"
                           "567.5",
                           "1\xE2\x80\xAF"
                           "234\xE2\x80\x89"
                           "567.5"}) {
    EXPECT_EQ(readNumber(text, {'.', ' '}), 1234567.5) << text;
  }
  EXPECT_EQ(readNumber("1'234", {'.', '\''}), 1234);
  EXPECT_EQ(readNumber("1\xE2\x80\x99"
                       "234",
                       {'.', '\''}),
            1234);
  EXPECT_FALSE(readNumber("1\xC2\xA0"
                          "23",
                          {'.', ' '})
                   .has_value());
  EXPECT_FALSE(readNumber("1\xE2\x80\x99"
                          "234",
                          {'.', ' '})
                   .has_value());
  EXPECT_FALSE(readNumber("1\xC2\xA0"
                          "234")
                   .has_value());
  EXPECT_FALSE(readNumber(std::string(1000, '1'), german).has_value());
}

TEST(ValueText, DatesAndTimesAreRead) {
  using Kind = DisplayFormat::Kind;
  constexpr double kDay = 86400;
  EXPECT_EQ(readDateOrTime("1582-10-14", Kind::kDate), 0);
  EXPECT_EQ(readDateOrTime("1582-10-15", Kind::kADate), kDay);
  EXPECT_EQ(readDateOrTime("2000-01-01", Kind::kSDate), 152385 * kDay);
  EXPECT_EQ(readDateOrTime(" 2000-02-29T13:05:59.5 ", Kind::kDateTime),
            (152385 + 59) * kDay + 47159.5);
  EXPECT_EQ(readDateOrTime("2000-01-01 00:01", Kind::kDateTime), 152385 * kDay + 60);
  for (const char* text :
       {"", "2000", "2000-1-1", "2000-13-01", "1999-02-29", "2000-01-01T", "2000-01-01T24:00",
        "2000-01-01T12", "2000-01-01T12:60", "2000-01-01T12:00Z", "2000-01-01T12:00+01:00",
        "1582-10-13", "0000-01-01", "2000-01-01x", "20000101"}) {
    EXPECT_FALSE(readDateOrTime(text, Kind::kDate).has_value()) << text;
  }
  EXPECT_EQ(readDateOrTime("13:05", Kind::kTime), 47100);
  EXPECT_EQ(readDateOrTime("-1:30:00.25", Kind::kTime), -5400.25);
  EXPECT_EQ(readDateOrTime("125:00:00", Kind::kTime), 450000);
  for (const char* text : {"", "13", "13:5", "13:05:60", "13:60", "13:05:5", "13:05:59.", ":05",
                           "13:05:59.x", "13:05:+9", "1234567890123:00"}) {
    EXPECT_FALSE(readDateOrTime(text, Kind::kTime).has_value()) << text;
  }
}

}  // namespace
}  // namespace vornwout
