#include "platform/parser/token_sequence.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "platform/parser/current_command.h"
#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

bool isDigitOrPoint(char c) { return (c >= '0' && c <= '9') || c == '.'; }

/// The text as std::from_chars takes it, which takes no plus sign; empty for what is no number here
/// but one there, such as "nan".
std::string_view digitsOf(std::string_view text) {
  const std::size_t begin = text.starts_with('+') || text.starts_with('-') ? 1 : 0;
  if (begin == text.size() || !isDigitOrPoint(text[begin])) return {};
  if (text[0] == '+') text.remove_prefix(1);
  return text;
}

/// True for a number that is out of a double's range on the side of infinity, not of zero. Its
/// text, without a sign, is what std::from_chars found to be a number.
bool isTooLarge(std::string_view digits) {
  const std::size_t end = std::min(digits.find_first_of("eE"), digits.size());
  const std::string_view mantissa = digits.substr(0, end);
  const std::size_t first = mantissa.find_first_not_of("0.");
  if (first == std::string_view::npos) return false;
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  // Where the first digit that counts stands before or behind the point.
  const double magnitude =
      first < point ? static_cast<double>(point - first) : -static_cast<double>(first - point - 1);
  double exponent = 0;  // a double, for it may have more digits than an integer holds
  bool isNegative = false;
  for (const char c : digits.substr(end)) {
    if (c == '-') isNegative = true;
    if (c >= '0' && c <= '9') exponent = exponent * 10 + (c - '0');
  }
  return magnitude + (isNegative ? -exponent : exponent) > 0;
}

template <typename Value>
bool readWhole(std::string_view text, Value& value) {
  text = digitsOf(text);
  Value read{};
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, read);
  if (error != std::errc() || stop != end || text.empty()) return false;
  value = read;
  return true;
}

}  // namespace

bool readNumber(std::string_view text, double& value) { return readWhole(text, value); }

bool readInteger(std::string_view text, int& value) { return readWhole(text, value); }

VORN_TokenSequence::VORN_TokenSequence(bool currentCommand) {
  const CurrentCommand* current = currentCommand ? CurrentCommand::current() : nullptr;
  if (current == nullptr) return;
  command_ = &current->command();
  tokens_ = current->argumentTokens();
}

std::string TokenInfoObj::getUpperString() const { return toUpperCase(getString()); }

bool TokenInfoObj::IsInteger() const {
  int value = 0;
  return IsNumber() && readInteger(command_->sourceText(*token_), value);
}

int TokenInfoObj::getInteger() const {
  const double value = std::trunc(getNumber());
  constexpr double kLowest = std::numeric_limits<int>::min();
  constexpr double kHighest = std::numeric_limits<int>::max();
  // The nearest, so that whoever asks for bounds sees that it lies outside them.
  return static_cast<int>(std::clamp(value, kLowest, kHighest));
}

double TokenInfoObj::getNumber() const {
  if (!IsNumber()) return 0;
  double value = 0;
  const std::string_view text = command_->sourceText(*token_);
  if (readNumber(text, value)) return value;
  std::string_view digits = text;
  if (digits.starts_with('+') || digits.starts_with('-')) digits.remove_prefix(1);
  if (!isTooLarge(digits)) return 0;
  // Infinite, so that whoever asks for bounds sees that it lies outside them.
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  return text.starts_with('-') ? -kInfinity : kInfinity;
}

}  // namespace vornwout
