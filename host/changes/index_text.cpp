#include "host/changes/index_text.h"

#include <array>

namespace vornwout {
namespace {

constexpr int kLetters = 26;
constexpr int kLargestRoman = 4999;  // MMMMCMXCIX, the largest that a command can start with

struct RomanSign {
  int value;
  const char* small;
  const char* capital;
};

constexpr std::array<RomanSign, 13> kRomanSigns = {{{1000, "m", "M"},
                                                    {900, "cm", "CM"},
                                                    {500, "d", "D"},
                                                    {400, "cd", "CD"},
                                                    {100, "c", "C"},
                                                    {90, "xc", "XC"},
                                                    {50, "l", "L"},
                                                    {40, "xl", "XL"},
                                                    {10, "x", "X"},
                                                    {9, "ix", "IX"},
                                                    {5, "v", "V"},
                                                    {4, "iv", "IV"},
                                                    {1, "i", "I"}}};

std::string letters(int number, char first) {
  std::string text;
  for (; number > 0; number = (number - 1) / kLetters) {
    text.insert(text.begin(), static_cast<char>(first + (number - 1) % kLetters));
  }
  return text;
}

std::string roman(int number, const char* RomanSign::*form) {
  std::string text;
  for (const RomanSign& sign : kRomanSigns) {
    for (; number >= sign.value; number -= sign.value) text += sign.*form;
  }
  return text;
}

}  // namespace

std::string indexText(IndexChange::Style style, int number) {
  if (number <= 0) return std::to_string(number);
  switch (style) {
    case IndexChange::Style::kNumber:
      break;
    case IndexChange::Style::kLetter:
      return letters(number, 'a');
    case IndexChange::Style::kCapitalLetter:
      return letters(number, 'A');
    case IndexChange::Style::kRoman:
      if (number <= kLargestRoman) return roman(number, &RomanSign::small);
      break;
    case IndexChange::Style::kCapitalRoman:
      if (number <= kLargestRoman) return roman(number, &RomanSign::capital);
      break;
  }
  return std::to_string(number);
}

}  // namespace vornwout
