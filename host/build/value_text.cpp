#include "host/build/value_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include "host/store/number_text.h"

namespace vornwout {
namespace {

constexpr int kSecondsPerDay = 86400;
/// No number of a table needs more characters.
constexpr std::size_t kMaxNumber = 400;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Of a number that no double holds: whether it is too small, rather than too large.
bool isTooSmall(std::string_view text) {
  constexpr std::int64_t kFar = std::int64_t{1} << 40;  // no text has so many digits
  std::int64_t exponent = 0;
  const std::size_t mark = text.find_first_of("eE");
  if (mark != std::string_view::npos) {
    std::string_view digits = text.substr(mark + 1);
    const bool isNegative = digits.starts_with('-');
    if (isNegative || digits.starts_with('+')) digits.remove_prefix(1);
    for (const char c : digits) exponent = std::min(kFar, exponent * 10 + (c - '0'));
    if (isNegative) exponent = -exponent;
  }
  const std::string_view mantissa = text.substr(0, mark);
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  const std::size_t first = mantissa.find_first_of("123456789");
  if (first == std::string_view::npos) return true;
  // Far from 1 either way, so that a digit more or less decides nothing.
  return exponent + static_cast<std::int64_t>(point) < static_cast<std::int64_t>(first);
}

/// A number; infinity for one that is too large.
std::optional<double> readPlain(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  // It would read "inf", "nan" and nothing else that starts with a letter.
  const std::size_t first = text.starts_with('-') ? 1 : 0;
  if (first >= text.size() || (!isDigit(text[first]) && text[first] != '.')) return std::nullopt;
  if (double value = 0; parseNumber(text, value)) return value;
  double none = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), none);
  const bool isOutOfRange =
      error == std::errc::result_out_of_range && end == text.data() + text.size();
  if (!isOutOfRange) return std::nullopt;
  const double value = isTooSmall(text) ? 0.0 : std::numeric_limits<double>::infinity();
  return first == 1 ? -value : value;
}

/// Takes a fixed number of digits off the start; -1 when they are not there.
int takeDigits(std::string_view& text, std::size_t count) {
  if (text.size() < count) return -1;
  int number = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (!isDigit(text[i])) return -1;
    number = number * 10 + (text[i] - '0');
  }
  text.remove_prefix(count);
  return number;
}

/// Blanks of fixed width and apostrophes as typographers set them, as the plain character.
std::string withPlainMarks(std::string_view text, char mark) {
  using Variants = std::array<std::string_view, 3>;
  constexpr Variants kBlanks = {"\xC2\xA0", "\xE2\x80\xAF", "\xE2\x80\x89"};
  constexpr Variants kQuotes = {"\xE2\x80\x99", {}, {}};
  const Variants& variants = mark == ' ' ? kBlanks : kQuotes;
  std::string plain;
  while (!text.empty()) {
    const auto* const variant =
        std::find_if(variants.begin(), variants.end(),
                     [&](std::string_view v) { return !v.empty() && text.starts_with(v); });
    plain += variant == variants.end() ? text.front() : mark;
    text.remove_prefix(variant == variants.end() ? 1 : variant->size());
  }
  return plain;
}

bool takeCharacter(std::string_view& text, char c) {
  if (!text.starts_with(c)) return false;
  text.remove_prefix(1);
  return true;
}

/// ":minutes[:seconds[.fraction]]" to the end of the text, in seconds.
std::optional<double> takeBehindHours(std::string_view text) {
  if (!takeCharacter(text, ':')) return std::nullopt;
  const int minutes = takeDigits(text, 2);
  if (minutes < 0 || minutes > 59) return std::nullopt;
  if (text.empty()) return minutes * 60.0;
  if (!takeCharacter(text, ':') || text.size() < 2 || !isDigit(text[0]) || !isDigit(text[1])) {
    return std::nullopt;
  }
  if (text.size() > 2 && (text[2] != '.' || text.size() == 3)) return std::nullopt;
  for (const char c : text.substr(std::min<std::size_t>(3, text.size()))) {
    if (!isDigit(c)) return std::nullopt;
  }
  const auto seconds = readPlain(text);
  if (!seconds || *seconds >= 60) return std::nullopt;
  return minutes * 60.0 + *seconds;
}

std::optional<double> readTime(std::string_view text) {
  const bool isNegative = takeCharacter(text, '-');
  std::size_t digits = 0;
  while (digits < text.size() && isDigit(text[digits])) ++digits;
  // More hours than that no double counts in seconds.
  if (digits == 0 || digits > 12) return std::nullopt;
  double hours = 0;
  std::from_chars(text.data(), text.data() + digits, hours);
  const auto rest = takeBehindHours(text.substr(digits));
  if (!rest) return std::nullopt;
  const double seconds = hours * 3600 + *rest;
  return isNegative ? -seconds : seconds;
}

std::optional<double> readDate(std::string_view text) {
  using std::chrono::sys_days;
  using std::chrono::year_month_day;
  const int year = takeDigits(text, 4);
  if (year < 0 || !takeCharacter(text, '-')) return std::nullopt;
  const int month = takeDigits(text, 2);
  if (month < 0 || !takeCharacter(text, '-')) return std::nullopt;
  const int day = takeDigits(text, 2);
  if (day < 0) return std::nullopt;
  const year_month_day date(std::chrono::year(year),
                            std::chrono::month(static_cast<unsigned>(month)),
                            std::chrono::day(static_cast<unsigned>(day)));
  constexpr sys_days kStart(
      year_month_day(std::chrono::year(1582), std::chrono::October, std::chrono::day(14)));
  if (!date.ok() || sys_days(date) < kStart) return std::nullopt;
  const double days = static_cast<double>((sys_days(date) - kStart).count());
  double seconds = 0;
  if (!text.empty()) {
    if (!takeCharacter(text, 'T') && !takeCharacter(text, ' ')) return std::nullopt;
    const int hours = takeDigits(text, 2);
    const auto rest = hours < 0 || hours > 23 ? std::nullopt : takeBehindHours(text);
    if (!rest) return std::nullopt;
    seconds = hours * 3600.0 + *rest;
  }
  return days * kSecondsPerDay + seconds;
}

/// A number with marks; infinity for one that is too large.
std::optional<double> readMarked(std::string_view text, const NumberMarks& marks) {
  text = withoutBlanks(text);
  if (marks.decimal == '.' && marks.thousands == 0) return readPlain(text);
  if (text.size() > kMaxNumber) return std::nullopt;
  std::string marked;
  if (marks.thousands == ' ' || marks.thousands == '\'') {
    marked = withPlainMarks(text, marks.thousands);
    text = marked;
  }
  std::string plain;
  std::size_t digits = 0;  // since the last mark
  bool hasGroups = false;
  bool isWhole = true;  // the decimal mark or the exponent is still to come
  const auto endsGroup = [&] { return !hasGroups || digits == 3; };
  for (const char c : text) {
    if (isDigit(c)) {
      ++digits;
      plain += c;
    } else if (isWhole && marks.thousands != 0 && c == marks.thousands) {
      if (digits == 0 || digits > 3 || !endsGroup()) return std::nullopt;
      hasGroups = true;
      digits = 0;
    } else if (isWhole && c == marks.decimal) {
      if (!endsGroup()) return std::nullopt;
      isWhole = false;
      plain += '.';
    } else if (c == 'e' || c == 'E') {
      if (isWhole && !endsGroup()) return std::nullopt;
      isWhole = false;
      plain += c;
    } else if (c == '+' || c == '-') {
      plain += c;
    } else {
      return std::nullopt;
    }
  }
  if (isWhole && !endsGroup()) return std::nullopt;
  return readPlain(plain);
}

}  // namespace

std::string_view withoutBlanks(std::string_view text) {
  constexpr std::string_view kBlanks = " \t";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::optional<double> readNumber(std::string_view text, const NumberMarks& marks) {
  const auto value = readMarked(text, marks);
  return value && std::isfinite(*value) ? value : std::nullopt;
}

bool isTooLargeNumber(std::string_view text, const NumberMarks& marks) {
  const auto value = readMarked(text, marks);
  return value && std::isinf(*value);
}

std::optional<double> readDateOrTime(std::string_view text, DisplayFormat::Kind kind) {
  text = withoutBlanks(text);
  return kind == DisplayFormat::Kind::kTime ? readTime(text) : readDate(text);
}

}  // namespace vornwout
