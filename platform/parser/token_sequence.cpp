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
  double value = 0;
  if (IsNumber()) readNumber(command_->sourceText(*token_), value);
  return value;
}

}  // namespace vornwout
