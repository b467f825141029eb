#include "platform/strings/language.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace vornwout {
namespace {

/// Points to one of kLanguages, whose texts live as long as the process.
std::string_view current = kOriginalLanguage;

char simplified(char c) {
  if (c == '-') return '_';
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool means(std::string_view text, std::string_view code) {
  return std::equal(text.begin(), text.end(), code.begin(), code.end(),
                    [](char a, char b) { return simplified(a) == simplified(b); });
}

std::string_view known(std::string_view text) {
  const std::optional<std::string_view> code = findLanguage(text);
  if (!code.has_value()) throw std::invalid_argument("unknown language: " + std::string(text));
  return *code;
}

}  // namespace

std::optional<std::string_view> findLanguage(std::string_view text) {
  for (const std::string_view code : kLanguages) {
    if (means(text, code)) return code;
  }
  return std::nullopt;
}

std::string_view currentLanguage() { return current; }

ScopedLanguage::ScopedLanguage(std::string_view language)
    : previous_(std::exchange(current, known(language))) {}

ScopedLanguage::~ScopedLanguage() { current = previous_; }

}  // namespace vornwout
