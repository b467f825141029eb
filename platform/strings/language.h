// The language of the texts that the system itself contributes: string tables, month names.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace vornwout {

/// The languages that string tables exist for, in the order in which they are listed.
constexpr std::array<std::string_view, 12> kLanguages = {
    "de", "en", "es", "fr", "it", "ja", "ko", "pl", "pt_BR", "ru", "zh_CN", "zh_TW"};

/// The language of the texts in the code, which the others are looked up by.
inline constexpr std::string_view kOriginalLanguage = "en";

/// The language code that `text` means: any case, "-" for "_". Nothing when it is none of the
/// twelve.
std::optional<std::string_view> findLanguage(std::string_view text);

/// The current language's code; "en" unless another was set.
std::string_view currentLanguage();

/// Makes a language the current one while it lives; the one before is back afterwards. Throws
/// std::invalid_argument for a text that findLanguage() does not know.
class ScopedLanguage {
 public:
  explicit ScopedLanguage(std::string_view language);
  ~ScopedLanguage();
  ScopedLanguage(const ScopedLanguage&) = delete;
  ScopedLanguage& operator=(const ScopedLanguage&) = delete;

 private:
  std::string_view previous_;
};

}  // namespace vornwout
