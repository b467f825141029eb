// Numbers are rounded as a person does it, half away from zero, and exactly: fmt rounds the exact
// binary value, and the one case in which it chooses the even neighbour, a value that lies exactly
// in the middle, is found by fmod(), which is exact too. Of such a value v, v * 10^d = n + 1/2, so
// v * 2^(d+1) = (2n + 1) / 5^d; a double times a power of two is an integer or has more binary
// places, so that is a whole odd number.
#include "platform/pivot/display_format.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <limits>

#include <fmt/format.h>

namespace vornwout {
namespace {

using Kind = DisplayFormat::Kind;

constexpr int kMaxWidth = 40;
constexpr int kMaxDecimals = 16;
constexpr double kSecondsPerDay = 86400;
/// Days from 14 October 1582 to 1 January 10000, the first date whose year has five digits.
constexpr double kEndOfDates = 3074325;
/// Seconds up to which every whole second is a number of its own.
constexpr double kEndOfTimes = 9007199254740992.0;
/// A larger power of ten has no middle that is a double: it is a multiple of 5^23.
constexpr int kMaxPower = 22;

struct KindEntry {
  std::string_view name;
  Kind kind;
  bool hasDecimals;
};

constexpr std::array<KindEntry, 14> kKinds = {{
    {"F", Kind::kF, true},
    {"E", Kind::kE, true},
    {"COMMA", Kind::kComma, true},
    {"DOT", Kind::kDot, true},
    {"DOLLAR", Kind::kDollar, true},
    {"PCT", Kind::kPct, true},
    {"N", Kind::kN, false},
    {"A", Kind::kA, false},
    {"DATE", Kind::kDate, false},
    {"ADATE", Kind::kADate, false},
    {"EDATE", Kind::kEDate, false},
    {"SDATE", Kind::kSDate, false},
    {"TIME", Kind::kTime, true},
    {"DATETIME", Kind::kDateTime, true},
}};

constexpr std::array<std::string_view, 12> kMonths = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                                      "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};

const KindEntry& entryOf(Kind kind) { return kKinds.at(static_cast<std::size_t>(kind)); }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// One or two digits at the start of `text`, which it takes off; -1 when there are none or more.
int takeNumber(std::string_view& text) {
  int number = 0;
  std::size_t digits = 0;
  for (; digits < text.size() && digits < 3 && isDigit(text[digits]); ++digits) {
    number = number * 10 + (text[digits] - '0');
  }
  text.remove_prefix(digits);
  return digits == 0 || digits > 2 ? -1 : number;
}

/// 10 to the power of `exponent`, which is at most kMaxPower: exact.
double powerOfTen(int exponent) {
  double power = 1;
  for (int i = 0; i < exponent; ++i) power *= 10;
  return power;
}

/// Whether `magnitude` lies exactly in the middle between two numbers of that many decimals; with
/// fewer than none, between two multiples of a power of ten.
bool isMiddle(double magnitude, int decimals) {
  if (decimals < -kMaxPower) return false;
  if (decimals < 0) {
    const double unit = powerOfTen(-decimals);
    return std::fmod(magnitude, unit) == unit / 2;
  }
  return std::fmod(std::ldexp(magnitude, decimals + 1), 2) == 1;
}

/// The next larger number for one in the middle, so that it is rounded away from zero.
double withoutMiddle(double magnitude, int decimals) {
  if (!isMiddle(magnitude, decimals)) return magnitude;
  return std::nextafter(magnitude, std::numeric_limits<double>::infinity());
}

std::string fixedText(double magnitude, int decimals) {
  return fmt::format("{:.{}f}", withoutMiddle(magnitude, decimals), decimals);
}

std::string scientificText(double magnitude, int decimals) {
  // The exponent before rounding says which decimal is the last.
  const std::string text = fmt::format("{:.17E}", magnitude);
  const std::size_t mark = text.find('E') + 1;
  int exponent = 0;
  std::from_chars(text.data() + mark + (text[mark] == '+' ? 1 : 0), text.data() + text.size(),
                  exponent);
  return fmt::format("{:.{}E}", withoutMiddle(magnitude, decimals - exponent), decimals);
}

/// Digits in groups of three, with the decimal point that belongs to the separator.
std::string groupedText(double magnitude, int decimals, char separator, char point) {
  const std::string plain = fixedText(magnitude, decimals);
  const std::size_t whole = std::min(plain.find('.'), plain.size());
  std::string grouped;
  for (std::size_t i = 0; i < whole; ++i) {
    if (i > 0 && (whole - i) % 3 == 0) grouped += separator;
    grouped += plain[i];
  }
  if (whole < plain.size()) {
    grouped += point;
    grouped.append(plain, whole + 1);
  }
  return grouped;
}

/// The text of a magnitude, with a minus before it unless nothing but zeros was left of the value.
std::string withSign(double value, std::string_view prefix, const std::string& magnitude) {
  const std::size_t end = std::min(magnitude.find('E'), magnitude.size());
  const bool isZero =
      std::string_view(magnitude).substr(0, end).find_first_of("123456789") == std::string::npos;
  return fmt::format("{}{}{}", value < 0 && !isZero ? "-" : "", prefix, magnitude);
}

/// The date of a day counted from 14 October 1582.
std::string dateText(double day, Kind kind, bool shortYear) {
  using std::chrono::days;
  using std::chrono::sys_days;
  using std::chrono::year_month_day;
  constexpr sys_days kStart(
      year_month_day(std::chrono::year(1582), std::chrono::October, std::chrono::day(14)));
  const year_month_day date(kStart + days(static_cast<int>(day)));
  const auto dayOfMonth = static_cast<unsigned>(date.day());
  const auto month = static_cast<unsigned>(date.month());
  const int fullYear = static_cast<int>(date.year());
  const std::string year =
      shortYear ? fmt::format("{:02}", fullYear % 100) : fmt::format("{:04}", fullYear);
  switch (kind) {
    case Kind::kADate:
      return fmt::format("{:02}/{:02}/{}", month, dayOfMonth, year);
    case Kind::kEDate:
      return fmt::format("{:02}.{:02}.{}", dayOfMonth, month, year);
    case Kind::kSDate:
      return fmt::format("{}/{:02}/{:02}", year, month, dayOfMonth);
    default:
      return fmt::format("{:02}-{}-{}", dayOfMonth, kMonths.at(month - 1), year);
  }
}

/// Seconds as they are shown: whole ones as a number, their fraction as a text with its point.
struct RoundedSeconds {
  std::int64_t whole = 0;
  std::string fraction;
};

RoundedSeconds roundedSeconds(double magnitude, int decimals) {
  const std::string text = fixedText(magnitude, decimals);
  RoundedSeconds seconds;
  const char* end = std::from_chars(text.data(), text.data() + text.size(), seconds.whole).ptr;
  seconds.fraction.assign(end, text.data() + text.size());
  return seconds;
}

std::string timeText(const RoundedSeconds& seconds, bool withSeconds) {
  const std::int64_t minutes = seconds.whole / 60;
  std::string text = fmt::format("{:02}:{:02}", minutes / 60, minutes % 60);
  if (withSeconds) text += fmt::format(":{:02}{}", seconds.whole % 60, seconds.fraction);
  return text;
}

std::string renderDate(double value, DisplayFormat format) {
  // Years have two digits where four do not fit.
  const int fullWidth = format.kind == Kind::kDate ? 11 : 10;
  const double day = std::floor(value / kSecondsPerDay);
  if (day < 0 || day >= kEndOfDates) return ".";
  return dateText(day, format.kind, format.width < fullWidth);
}

std::string renderTime(double value, DisplayFormat format) {
  const double magnitude = std::abs(value);
  if (magnitude >= kEndOfTimes) return ".";
  const bool withSeconds = format.width >= 8;
  return withSign(
      value, "",
      timeText(roundedSeconds(magnitude, withSeconds ? format.decimals : 0), withSeconds));
}

std::string renderDateTime(double value, DisplayFormat format) {
  if (value < 0 || value >= kEndOfDates * kSecondsPerDay) return ".";
  const bool withSeconds = format.width >= 20;
  RoundedSeconds seconds = roundedSeconds(value, withSeconds ? format.decimals : 0);
  constexpr auto kDay = static_cast<std::int64_t>(kSecondsPerDay);
  const std::int64_t day = seconds.whole / kDay;
  if (day >= static_cast<std::int64_t>(kEndOfDates)) return ".";
  seconds.whole %= kDay;
  return fmt::format("{} {}", dateText(static_cast<double>(day), Kind::kDate, false),
                     timeText(seconds, withSeconds));
}

}  // namespace

std::optional<DisplayFormat> parseDisplayFormat(std::string_view text) {
  std::string name;
  while (!text.empty() && !isDigit(text.front())) {
    const char c = text.front();
    name += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    text.remove_prefix(1);
    if (name.size() > 8) return std::nullopt;
  }
  for (const KindEntry& entry : kKinds) {
    if (entry.name != name) continue;
    DisplayFormat format;
    format.kind = entry.kind;
    const int width = takeNumber(text);
    if (width < 1 || width > kMaxWidth) return std::nullopt;
    format.width = static_cast<std::uint8_t>(width);
    if (text.empty()) return format;
    if (text.front() != '.' || !entry.hasDecimals) return std::nullopt;
    text.remove_prefix(1);
    const int decimals = takeNumber(text);
    const bool fits =
        decimals >= 0 && decimals <= kMaxDecimals && decimals < format.width && text.empty();
    format.decimals = static_cast<std::uint8_t>(std::max(decimals, 0));
    return fits ? std::optional(format) : std::nullopt;
  }
  return std::nullopt;
}

std::string displayFormatName(DisplayFormat format) {
  std::string name = fmt::format("{}{}", entryOf(format.kind).name, format.width);
  if (format.decimals > 0) name += fmt::format(".{}", format.decimals);
  return name;
}

std::string renderNumber(double value, DisplayFormat format) {
  if (!std::isfinite(value)) return ".";
  const double magnitude = std::abs(value);
  switch (format.kind) {
    case Kind::kF:
      return withSign(value, "", fixedText(magnitude, format.decimals));
    case Kind::kE:
      return withSign(value, "", scientificText(magnitude, format.decimals));
    case Kind::kComma:
      return withSign(value, "", groupedText(magnitude, format.decimals, ',', '.'));
    case Kind::kDot:
      return withSign(value, "", groupedText(magnitude, format.decimals, '.', ','));
    case Kind::kDollar:
      return withSign(value, "$", groupedText(magnitude, format.decimals, ',', '.'));
    case Kind::kPct:
      return withSign(value, "", fixedText(magnitude, format.decimals) + "%");
    case Kind::kN:
      return withSign(value, "", fmt::format("{:0>{}}", fixedText(magnitude, 0), format.width));
    case Kind::kA:
      return withSign(value, "", fmt::format("{}", magnitude));
    case Kind::kDate:
    case Kind::kADate:
    case Kind::kEDate:
    case Kind::kSDate:
      return renderDate(value, format);
    case Kind::kTime:
      return renderTime(value, format);
    case Kind::kDateTime:
      return renderDateTime(value, format);
  }
  return ".";
}

bool isDateOrTime(Kind kind) { return kind >= Kind::kDate; }

}  // namespace vornwout
