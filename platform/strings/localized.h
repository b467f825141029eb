// The system's own texts in the current language, looked up by their English originals.
//
// The code says each text in English. A string table has the original as its key, and what it is
// called in its language; a text that no table of the language has comes in English. Nothing is
// read while the language is English, and otherwise one table after the other until the text is
// found. tests/repository/texts_test.cpp holds the tables against the code.
//
// Entry points: localized() for a text with its arguments, localizedText() for one as it stands.
#pragma once

#include <concepts>
#include <initializer_list>
#include <string>
#include <string_view>

namespace vornwout {

/// Marks an original that is looked up where it is shown, so that the tables can be held against
/// it.
consteval const char* localizable(const char* original) { return original; }

/// A text in the current language, in UTF-8, with its placeholders. What is returned lives as long
/// as the process, or is the original itself. May be called on any thread.
std::string_view localizedText(std::string_view original);

/// An argument of a localized text: a text, a number, one character.
class LocalizedArgument {
 public:
  LocalizedArgument(std::string_view text) : text_(text) {}
  LocalizedArgument(const std::string& text) : text_(text) {}
  LocalizedArgument(const char* text) : text_(text) {}
  LocalizedArgument(char character) : text_(1, character) {}
  LocalizedArgument(std::integral auto number) : text_(std::to_string(number)) {}
  LocalizedArgument(double number);

  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

/// A text in the current language with the arguments for "^1" and so on filled in.
std::string localized(std::string_view original,
                      std::initializer_list<LocalizedArgument> arguments);

template <typename... Arguments>
std::string localized(std::string_view original, const Arguments&... arguments) {
  return localized(original, {LocalizedArgument(arguments)...});
}

}  // namespace vornwout
