#include "platform/pivot/cell_text.h"

#include <cmath>

#include <fmt/format.h>

namespace vornwout {
namespace {

constexpr double kLargestExactInteger = 9007199254740992;  // 2^53
constexpr double kSixDigits = 1e5;  // from here on six digits stand before the point
constexpr double kExponential = 1e15;

std::string generalText(double value) {
  const double size = std::abs(value);
  const bool isExact = size <= kLargestExactInteger && value == std::trunc(value);
  const bool isLarge = size >= kSixDigits && size < kExponential;
  return isExact || isLarge ? fmt::format("{:.0f}", value) : fmt::format("{:.6g}", value);
}

}  // namespace

std::string renderNumber(double value, BpFormatSpec format) {
  if (format.display) return renderNumber(value, *format.display);
  // The package shows a number that has no value as a period.
  if (!std::isfinite(value)) return ".";
  std::string shown =
      format.type == BpFormatSpec::Type::kCount ? fmt::format("{:.0f}", value) : generalText(value);
  return shown == "-0" ? "0" : shown;
}

std::string substitutePlaceholders(const std::string& text,
                                   const std::vector<std::string>& arguments) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    // In UTF-8 no byte of a longer character equals "^" or a digit.
    if (text[i] == '^' && i + 1 < text.size() && text[i + 1] >= '1' && text[i + 1] <= '9') {
      const auto index = static_cast<std::size_t>(text[i + 1] - '1');
      if (index < arguments.size()) {
        result += arguments[index];
        ++i;
        continue;
      }
    }
    result += text[i];
  }
  return result;
}

CellText withoutSecrets(const CellText& cell) {
  CellText copy = cell;
  if (copy.secret) copy.text = kHiddenSecret;
  if (!copy.arguments.empty()) {
    for (CellText& argument : copy.arguments.edit()) argument = withoutSecrets(argument);
  }
  if (!copy.sublist.empty()) {
    for (CellText& name : copy.sublist.edit()) name = withoutSecrets(name);
  }
  return copy;
}

std::string renderText(const CellText& cell) {
  if (cell.kind == CellText::Kind::kNumber) return renderNumber(cell.number, cell.format);
  if (cell.kind == CellText::Kind::kString) return cell.text;
  std::vector<std::string> arguments;
  arguments.reserve(cell.arguments.size());
  for (const CellText& argument : cell.arguments) arguments.push_back(renderText(argument));
  std::string shown = substitutePlaceholders(cell.text, arguments);
  const char* separator = " ";
  for (const CellText& name : cell.sublist) {
    shown += separator + renderText(name);
    separator = ", ";
  }
  return shown;
}

}  // namespace vornwout
