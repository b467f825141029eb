#include "host/store/number_text.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

std::string written(double value) {
  std::string out;
  appendNumber(out, value);
  return out;
}

std::string shortest(double value) {
  char digits[40];
  const double magnitude = std::fabs(value);
  if (magnitude >= 0.1 && magnitude < 1e6) {
    return {digits,
            std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed).ptr};
  }
  return {digits, std::to_chars(digits, digits + sizeof digits, value).ptr};
}

void expectSame(double value) {
  const std::string text = written(value);
  EXPECT_EQ(text, shortest(value));
  double back = 0;
  ASSERT_TRUE(parseNumber(text, back)) << text;
  EXPECT_EQ(std::memcmp(&back, &value, sizeof value), 0) << text;
}

TEST(NumberText, IsTheShortestThatReadsBack) {
  for (const double value : {0.0,
                             -0.0,
                             1.0,
                             -1.0,
                             0.1,
                             0.10001,
                             0.09999,
                             12.5,
                             999999.9999,
                             1e6,
                             1e-7,
                             123456.0,
                             1e22,
                             1e23,
                             5e-324,
                             1.7976931348623157e308,
                             0.3,
                             1.0 / 3,
                             100.0,
                             100000.0,
                             999999.99999,
                             2.0000000000000004,
                             0.30000000000000004}) {
    expectSame(value);
    expectSame(-value);
  }
}

TEST(NumberText, AgreesWithTheLibraryForNumbersOfEveryKind) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 200'000; ++i) {
    const auto bits = random();
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    if (std::isfinite(value)) expectSame(value);
    const auto scaled = static_cast<double>(random() % 100'000'000'000);
    for (const double power : {1.0, 10.0, 100.0, 1e4, 1e5, 1e6, 1e7}) expectSame(scaled / power);
    expectSame(std::nextafter(scaled / 100, 0));
    if (HasFailure()) break;
  }
}

TEST(NumberText, ReadsWhatTheLibraryReads) {
  std::mt19937 random(2);
  for (int i = 0; i < 300'000; ++i) {
    std::string text;
    for (auto length = random() % 20; length > 0; --length)
      text += "0123456789.-e+ in"[random() % 17];
    double expected = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), expected);
    const bool isNumber = result.ec == std::errc() && result.ptr == text.data() + text.size() &&
                          std::isfinite(expected);
    double value = 0;
    // A point without digits on one side is the library's to judge.
    ASSERT_EQ(parseNumber(text, value), isNumber) << "\"" << text << "\"";
    if (isNumber) {
      ASSERT_EQ(std::memcmp(&value, &expected, sizeof expected), 0) << text;
    }
  }
}

}  // namespace
}  // namespace vornwout
