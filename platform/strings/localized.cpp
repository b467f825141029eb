#include "platform/strings/localized.h"

#include <map>
#include <mutex>
#include <vector>

#include <fmt/format.h>

#include "platform/files/path_factory.h"
#include "platform/pivot/cell_text.h"
#include "platform/strings/language.h"
#include "platform/strings/language_texts.h"

namespace vornwout {
namespace {

LanguageTexts& currentTexts() {
  static std::mutex mutex;
  static std::map<std::string_view, LanguageTexts> languages;
  const std::lock_guard lock(mutex);
  const std::string_view language = currentLanguage();
  const auto known = languages.find(language);
  if (known != languages.end()) return known->second;
  const PathInstance installation = PathFactory::getPathInstance(PathFactory::kInstallation);
  return languages.try_emplace(language, installation.getStringTableLocation()).first->second;
}

}  // namespace

std::string_view localizedText(std::string_view original) {
  if (original.empty() || currentLanguage() == kOriginalLanguage) return original;
  return currentTexts().find(original);
}

LocalizedArgument::LocalizedArgument(double number) { text_ = fmt::format("{}", number); }

std::string localized(std::string_view original,
                      std::initializer_list<LocalizedArgument> arguments) {
  std::vector<std::string> texts;
  texts.reserve(arguments.size());
  for (const LocalizedArgument& argument : arguments) texts.push_back(argument.text());
  return substitutePlaceholders(std::string(localizedText(original)), texts);
}

}  // namespace vornwout
