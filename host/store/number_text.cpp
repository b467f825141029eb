#include "host/store/number_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace vornwout {
namespace {

/// Exact, as are the integers that are divided by them: those have at most 15 digits.
constexpr std::array<double, 7> kPowers = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6};
/// Below this, down to 0.1, numbers have no exponent, though that of 100000 would be shorter.
constexpr double kMaxPlain = 1e6;
constexpr std::size_t kMaxShortDigits = 15;

/// Appends the number when it has exactly so many decimals.
bool appendWithDecimals(std::string& out, double value, double magnitude, int decimals) {
  const double power = kPowers[static_cast<std::size_t>(decimals)];
  // Half up is as good as any rounding: only an exact number passes the test.
  const auto scaled = static_cast<std::uint64_t>(magnitude * power + 0.5);
  if (static_cast<double>(scaled) / power != magnitude) return false;
  if (decimals > 0 && scaled % 10 == 0) return false;
  std::array<char, 24> text;
  char* end = std::to_chars(text.data(), text.data() + text.size(), scaled).ptr;
  if (value < 0) out += '-';
  if (decimals == 0) {
    out.append(text.data(), end);
    return true;
  }
  // From 0.1 on there is a digit for every decimal.
  char* const point = end - decimals;
  if (point == text.data()) {
    out += '0';
  } else {
    out.append(text.data(), point);
  }
  out += '.';
  out.append(point, end);
  return true;
}

}  // namespace

void appendNumber(std::string& out, double value) {
  const double magnitude = std::fabs(value);
  const bool isPlain = magnitude >= 0.1 && magnitude < kMaxPlain;
  if (isPlain) {
    // Whole numbers and two decimals are what most tables hold.
    for (const int decimals : {0, 2, 1, 3, 4}) {
      if (appendWithDecimals(out, value, magnitude, decimals)) return;
    }
  }
  std::array<char, 32> digits;
  char* const end = digits.data() + digits.size();
  const auto result = isPlain ? std::to_chars(digits.data(), end, value, std::chars_format::fixed)
                              : std::to_chars(digits.data(), end, value);
  out.append(digits.data(), result.ptr);
}

bool parseNumber(std::string_view text, double& value) {
  std::size_t i = !text.empty() && text[0] == '-' ? 1 : 0;
  std::uint64_t digits = 0;
  std::size_t point = text.size();
  if (text.size() <= kMaxShortDigits) {
    std::size_t count = 0;
    for (; i < text.size(); ++i) {
      const char c = text[i];
      if (c >= '0' && c <= '9') {
        digits = digits * 10 + static_cast<std::uint64_t>(c - '0');
        ++count;
      } else if (c == '.' && point == text.size() && count > 0) {
        point = i;
      } else {
        break;
      }
    }
    const std::size_t decimals = point == text.size() ? 0 : text.size() - 1 - point;
    const bool isWhole = i == text.size() && count > 0 && point + 1 != text.size();
    if (isWhole && decimals < kPowers.size()) {
      const double magnitude = static_cast<double>(digits) / kPowers[decimals];
      value = text[0] == '-' ? -magnitude : magnitude;
      return true;
    }
  }
  double read = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), read);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size() || !std::isfinite(read)) {
    return false;
  }
  value = read;
  return true;
}

}  // namespace vornwout
