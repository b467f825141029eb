#include "platform/pivot/display_format.h"

#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "platform/pivot/cell_text.h"

namespace vornwout {
namespace {

using Kind = DisplayFormat::Kind;

std::string shown(double value, const char* format) {
  const auto parsed = parseDisplayFormat(format);
  return parsed ? renderNumber(value, *parsed) : std::string("no format: ") + format;
}

/// Seconds of a day counted from 14 October 1582.
constexpr double atDay(double day, double seconds = 0) { return day * 86400 + seconds; }

/// 20 November 2026.
constexpr double kDay = 162205;

TEST(DisplayFormat, IsReadWithoutRegardToCaseAndNamedInUpperCase) {
  struct Case {
    const char* text;
    DisplayFormat format;
    const char* name;
  };
  const Case cases[] = {
      {"F8.2", {Kind::kF, 8, 2}, "F8.2"},
      {"f8", {Kind::kF, 8, 0}, "F8"},
      {"F8.0", {Kind::kF, 8, 0}, "F8"},
      {"F1", {Kind::kF, 1, 0}, "F1"},
      {"F40.16", {Kind::kF, 40, 16}, "F40.16"},
      {"F2.1", {Kind::kF, 2, 1}, "F2.1"},
      {"e10.3", {Kind::kE, 10, 3}, "E10.3"},
      {"Comma12.2", {Kind::kComma, 12, 2}, "COMMA12.2"},
      {"DOT12.2", {Kind::kDot, 12, 2}, "DOT12.2"},
      {"dollar9", {Kind::kDollar, 9, 0}, "DOLLAR9"},
      {"PCT5.1", {Kind::kPct, 5, 1}, "PCT5.1"},
      {"N6", {Kind::kN, 6, 0}, "N6"},
      {"A20", {Kind::kA, 20, 0}, "A20"},
      {"DATE11", {Kind::kDate, 11, 0}, "DATE11"},
      {"ADATE10", {Kind::kADate, 10, 0}, "ADATE10"},
      {"EDATE10", {Kind::kEDate, 10, 0}, "EDATE10"},
      {"SDATE10", {Kind::kSDate, 10, 0}, "SDATE10"},
      {"TIME11.2", {Kind::kTime, 11, 2}, "TIME11.2"},
      {"datetime23.2", {Kind::kDateTime, 23, 2}, "DATETIME23.2"},
  };
  for (const Case& c : cases) {
    const auto format = parseDisplayFormat(c.text);
    ASSERT_TRUE(format.has_value()) << c.text;
    EXPECT_EQ(*format, c.format) << c.text;
    EXPECT_EQ(displayFormatName(*format), c.name);
    EXPECT_EQ(parseDisplayFormat(displayFormatName(*format)), format) << c.text;
  }
}

TEST(DisplayFormat, WhatIsNoneIsRefused) {
  for (const char* text : {"",
                           "F",
                           "F0",
                           "F41",
                           "F100",
                           "F8.",
                           "F8.8",
                           "F40.17",
                           "F8.2x",
                           "F8.2.1",
                           "F8.-1",
                           "F-8",
                           " F8",
                           "F8 ",
                           "F 8",
                           "8.2",
                           "X8",
                           "FF8",
                           "COMMAS8",
                           "DATETIMES20",
                           "A8.1",
                           "A8.0",
                           "N8.2",
                           "DATE11.1",
                           "ADATE10.2",
                           "EDATE10.2",
                           "SDATE10.2",
                           "F8,2",
                           "F999999999999",
                           "\xC3\x84"
                           "8",
                           "F8.0000000000000001"}) {
    EXPECT_FALSE(parseDisplayFormat(text).has_value()) << text;
  }
}

TEST(DisplayFormat, EveryWidthAndNumberOfDecimalsWithinBoundsIsReadAndNamed) {
  for (int width = 0; width <= 45; ++width) {
    for (int decimals = 1; decimals <= 20; ++decimals) {
      const std::string name = "F" + std::to_string(width) + "." + std::to_string(decimals);
      const bool fits = width >= 1 && width <= 40 && decimals <= 16 && decimals < width;
      const auto format = parseDisplayFormat(name);
      ASSERT_EQ(format.has_value(), fits) << name;
      if (format) {
        EXPECT_EQ(displayFormatName(*format), name);
      }
    }
  }
}

TEST(DisplayFormat, NumbersAreShown) {
  struct Case {
    double value;
    const char* format;
    const char* text;
  };
  const Case cases[] = {
      {1234.5, "F8.2", "1234.50"},
      {-1234.5, "F8.2", "-1234.50"},
      {123456789, "F4", "123456789"},
      {0, "F8.2", "0.00"},
      {1234.5, "E10.3", "1.235E+03"},
      {-0.00012345, "E10.2", "-1.23E-04"},
      {0, "E8.1", "0.0E+00"},
      {1e300, "E8.1", "1.0E+300"},
      {1234567.891, "COMMA12.2", "1,234,567.89"},
      {-123, "COMMA12", "-123"},
      {-1234, "COMMA12", "-1,234"},
      {999.995, "COMMA12.2", "1,000.00"},
      {1234567.891, "DOT12.2", "1.234.567,89"},
      {0.5, "DOT12.1", "0,5"},
      {1234.5, "DOLLAR10.2", "$1,234.50"},
      {-1234.5, "DOLLAR10.2", "-$1,234.50"},
      {12.345, "PCT6.1", "12.3%"},
      {-12.5, "PCT6.1", "-12.5%"},
      {42, "N6", "000042"},
      {1234567, "N6", "1234567"},
      {-42, "N6", "-000042"},
      {1.25, "A8", "1.25"},
      {-3, "A8", "-3"},
  };
  for (const Case& c : cases) EXPECT_EQ(shown(c.value, c.format), c.text) << c.format;
}

TEST(DisplayFormat, WhatLiesExactlyInTheMiddleIsRoundedAwayFromZero) {
  struct Case {
    double value;
    const char* format;
    const char* text;
  };
  const Case cases[] = {
      {0.5, "F1", "1"},
      {1.5, "F1", "2"},
      {2.5, "F1", "3"},
      {-0.5, "F2", "-1"},
      {-2.5, "F2", "-3"},
      {0.125, "F5.2", "0.13"},
      {0.375, "F5.2", "0.38"},
      {1234567.5, "COMMA9", "1,234,568"},
      {0.0000152587890625, "F22.15", "0.000015258789063"},
      {2251799813685248.5, "F20", "2251799813685249"},
      // Not in the middle: these are less than what they were written as.
      {2.675, "F8.2", "2.67"},
      {1.005, "F8.2", "1.00"},
      {0.49999999999999994, "F1", "0"},
      {4503599627370495.5, "F20", "4503599627370496"},
      {2.5, "E8", "3E+00"},
      {1.25, "E8.1", "1.3E+00"},
      {1250, "E8.1", "1.3E+03"},
      {0.0625, "E8.1", "6.3E-02"},
      {9.5, "E8", "1E+01"},
      {45e22, "E8", "4E+23"},
      {0, "E8", "0E+00"},
  };
  for (const Case& c : cases) EXPECT_EQ(shown(c.value, c.format), c.text) << c.format << c.value;
}

TEST(DisplayFormat, ZeroHasNoSign) {
  for (const char* format :
       {"F8.2", "COMMA8.2", "DOT8.2", "DOLLAR8.2", "PCT8.2", "E8.2", "N4", "A4", "TIME8"}) {
    EXPECT_EQ(shown(-0.0, format), shown(0.0, format)) << format;
  }
  EXPECT_EQ(shown(-0.001, "F8.2"), "0.00");
  EXPECT_EQ(shown(-0.001, "DOLLAR8.2"), "$0.00");
  EXPECT_EQ(shown(-0.001, "TIME8"), "00:00:00");
  EXPECT_EQ(shown(-1e-300, "E8.2"), "-1.00E-300");
}

TEST(DisplayFormat, NumberThatIsNotFiniteIsAPeriod) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const char* format : {"F8.2", "E8.2", "COMMA8", "DOT8", "DOLLAR8", "PCT8", "N8", "A8",
                             "DATE11", "ADATE10", "EDATE10", "SDATE10", "TIME8", "DATETIME20"}) {
    EXPECT_EQ(shown(kInfinity, format), ".") << format;
    EXPECT_EQ(shown(-kInfinity, format), ".") << format;
    EXPECT_EQ(shown(std::nan(""), format), ".") << format;
  }
}

TEST(DisplayFormat, DatesAndTimesAreShown) {
  struct Case {
    double value;
    const char* format;
    const char* text;
  };
  const Case cases[] = {
      {atDay(kDay), "DATE11", "20-NOV-2026"},
      {atDay(kDay), "DATE9", "20-NOV-26"},
      {atDay(kDay), "ADATE10", "11/20/2026"},
      {atDay(kDay), "ADATE8", "11/20/26"},
      {atDay(kDay), "EDATE10", "20.11.2026"},
      {atDay(kDay), "EDATE8", "20.11.26"},
      {atDay(kDay), "SDATE10", "2026/11/20"},
      {atDay(kDay), "SDATE8", "26/11/20"},
      {atDay(kDay, 86399.9), "DATE11", "20-NOV-2026"},
      {0, "DATE11", "14-OCT-1582"},
      {atDay(1), "SDATE10", "1582/10/15"},
      {atDay(152385), "SDATE10", "2000/01/01"},
      {atDay(152385 + 59), "SDATE10", "2000/02/29"},
      {atDay(3074324), "SDATE10", "9999/12/31"},
      {13 * 3600 + 5 * 60 + 59, "TIME8", "13:05:59"},
      {13 * 3600 + 5 * 60 + 59, "TIME5", "13:05"},
      {13 * 3600 + 5 * 60 + 59.25, "TIME11.2", "13:05:59.25"},
      {59.996, "TIME11.2", "00:01:00.00"},
      {-5400, "TIME8", "-01:30:00"},
      {450000, "TIME8", "125:00:00"},
      {atDay(kDay, 47159), "DATETIME20", "20-NOV-2026 13:05:59"},
      {atDay(kDay, 47159), "DATETIME17", "20-NOV-2026 13:05"},
      {atDay(kDay, 47159.5), "DATETIME23.2", "20-NOV-2026 13:05:59.50"},
      {atDay(kDay, 86399.9), "DATETIME20", "21-NOV-2026 00:00:00"},
  };
  for (const Case& c : cases) EXPECT_EQ(shown(c.value, c.format), c.text) << c.format;
}

TEST(DisplayFormat, DateOrTimeFarOutOfRangeIsAPeriod) {
  for (const double value : {-1.0, -1e300, 1e300, atDay(3074325), 1e19}) {
    for (const char* format : {"DATE11", "ADATE10", "EDATE10", "SDATE10", "DATETIME20"}) {
      EXPECT_EQ(shown(value, format), ".") << format << value;
    }
  }
  EXPECT_EQ(shown(atDay(3074325) - 0.25, "DATETIME20"), ".");
  EXPECT_EQ(shown(1e16, "TIME8"), ".");
  EXPECT_EQ(shown(-1e300, "TIME8"), ".");
}

TEST(DisplayFormat, EveryFormatShowsEveryMagnitude) {
  for (const char* format : {"F40.16", "E40.16", "COMMA40.16", "DOT40.16", "DOLLAR40.16",
                             "PCT40.16", "N40", "A40", "TIME40.16", "DATETIME40.16"}) {
    for (double value = 1e-310; value < 1e308; value *= 10) {
      ASSERT_FALSE(shown(value, format).empty());
      ASSERT_FALSE(shown(-value, format).empty());
    }
  }
  EXPECT_EQ(shown(1e300, "F8").size(), 301U);
  EXPECT_EQ(shown(1e300, "COMMA8").size(), 401U);
}

TEST(DisplayFormat, KnowsDatesAndTimes) {
  for (const char* format : {"DATE11", "ADATE10", "EDATE10", "SDATE10", "TIME8", "DATETIME20"}) {
    EXPECT_TRUE(isDateOrTime(parseDisplayFormat(format)->kind)) << format;
  }
  for (const char* format : {"F8", "E8", "COMMA8", "DOT8", "DOLLAR8", "PCT8", "N8", "A8"}) {
    EXPECT_FALSE(isDateOrTime(parseDisplayFormat(format)->kind)) << format;
  }
}

TEST(DisplayFormat, OfACellReachesItsText) {
  CellText cell;
  cell.kind = CellText::Kind::kNumber;
  cell.number = 1234.5;
  EXPECT_EQ(renderText(cell), "1234.5");
  cell.format.display = parseDisplayFormat("DOLLAR10.2");
  EXPECT_EQ(renderText(cell), "$1,234.50");
  // It stands before the general type.
  cell.format.type = BpFormatSpec::Type::kCount;
  EXPECT_EQ(renderText(cell), "$1,234.50");
  CellText composite;
  composite.kind = CellText::Kind::kComposite;
  composite.text = "Sum: ^1";
  composite.arguments.push_back(cell);
  EXPECT_EQ(renderText(composite), "Sum: $1,234.50");
}

}  // namespace
}  // namespace vornwout
