#include "platform/strings/tool/table_tree.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <string_view>
#include <unordered_map>

#include <fmt/format.h>

namespace vornwout {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kReference = "en";
constexpr std::string_view kExtension = ".txt";

bool isModuleName(std::string_view name) {
  return !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
  });
}

/// What is in a folder, in the order of the names.
std::vector<fs::path> sortedEntries(const fs::path& folder) {
  std::vector<fs::path> paths;
  for (const auto& entry : fs::directory_iterator(folder)) paths.push_back(entry.path());
  std::sort(paths.begin(), paths.end());
  return paths;
}

/// "^1^3" for the placeholders of a text, each once.
std::string placeholdersOf(std::string_view text) {
  std::set<char> digits;
  for (std::size_t i = 0; i + 1 < text.size(); ++i) {
    if (text[i] == '^' && text[i + 1] >= '1' && text[i + 1] <= '9') digits.insert(text[i + 1]);
  }
  std::string placeholders;
  for (const char digit : digits) placeholders.append("^").push_back(digit);
  return placeholders.empty() ? "none" : placeholders;
}

/// Compares a table with the English one.
class Comparison {
 public:
  Comparison(const TableSource& english, const TableSource& other, SourceErrors& errors)
      : english_(english), other_(other), errors_(errors) {
    for (const SourceEntry& entry : other.entries) byKey_.emplace(entry.key, &entry);
  }

  void compare(bool isComplete) {
    for (const SourceEntry& entry : english_.entries) {
      const auto found = byKey_.find(entry.key);
      if (found != byKey_.end()) {
        compareEntries(entry, *found->second);
        byKey_.erase(found);
      } else if (isComplete) {
        errors_.push_back({other_.file, 1,
                           fmt::format("The key \"{}\" of {}:{} is missing.", entry.key,
                                       english_.file, entry.line)});
      }
    }
    for (const auto& [key, entry] : byKey_) {
      errors_.push_back(
          {other_.file, entry->line, fmt::format("{} has no key \"{}\".", english_.file, key)});
    }
  }

 private:
  void compareEntries(const SourceEntry& english, const SourceEntry& other) {
    // A key that is the English text itself has none beside it.
    const bool isKey = english.text.empty();
    comparePlaceholders(isKey ? english.key : english.text, isKey ? english.line : english.textLine,
                        other.text, other.textLine);
    if (other.text.empty()) {
      errors_.push_back({other_.file, other.textLine, "The text is empty."});
    }
    comparePlaceholders(english.help, english.helpLine, other.help, other.helpLine);
  }

  void comparePlaceholders(std::string_view english, int englishLine, std::string_view other,
                           int line) {
    // A help text may be left out.
    if (englishLine == 0 || line == 0) return;
    const std::string wanted = placeholdersOf(english);
    const std::string found = placeholdersOf(other);
    if (wanted == found) return;
    errors_.push_back({other_.file, line,
                       fmt::format("The placeholders are {}, in {}:{} they are {}.", found,
                                   english_.file, englishLine, wanted)});
  }

  const TableSource& english_;
  const TableSource& other_;
  SourceErrors& errors_;
  std::unordered_map<std::string_view, const SourceEntry*> byKey_;  ///< those not met yet
};

class TreeReader {
 public:
  TreeReader(const std::string& folder, SourceErrors& errors)
      : folder_(folder), list_((folder_ / "languages.txt").string()), errors_(errors) {}

  TableTree read() {
    languages_ = readLanguages(list_, errors_);
    for (const SourceLanguage& language : languages_) readLanguage(language);
    findUnlistedFolders();
    for (const SourceLanguage& language : languages_) compareLanguage(language);
    if (languageOf(kReference) == nullptr) {
      errors_.push_back({list_, 1, "English, en, which the others are compared with, is missing."});
    }
    return std::move(tree_);
  }

 private:
  void readLanguage(const SourceLanguage& language) {
    const fs::path folder = folder_ / language.code;
    std::error_code error;
    if (!fs::is_directory(folder, error)) {
      errors_.push_back(
          {list_, language.line, fmt::format("There is no folder {}.", folder.string())});
      return;
    }
    for (const fs::path& file : sortedEntries(folder)) {
      const std::string module = file.stem().string();
      if (file.extension() != kExtension || !isModuleName(module)) {
        errors_.push_back({file.string(), 1,
                           "A string table is called MODULE.txt, MODULE in small letters, digits "
                           "and _."});
        continue;
      }
      tree_.tables.push_back({language.code, module, TableSource::read(file.string(), errors_)});
    }
  }

  void findUnlistedFolders() {
    std::error_code error;
    if (!fs::is_directory(folder_, error)) return;
    for (const fs::path& path : sortedEntries(folder_)) {
      if (!fs::is_directory(path, error) || languageOf(path.filename().string()) != nullptr) {
        continue;
      }
      errors_.push_back({list_, 1, fmt::format("{} is not listed.", path.filename().string())});
    }
  }

  void compareLanguage(const SourceLanguage& language) {
    if (language.code == kReference) return;
    for (const TableTree::Table& table : tree_.tables) {
      const TableTree::Table* other = nullptr;
      if (table.language == kReference) {
        other = tableOf(language.code, table.module);
        if (other == nullptr && language.isComplete) {
          errors_.push_back({list_, language.line,
                             fmt::format("The language {} is complete, but has no {}.txt.",
                                         language.code, table.module)});
        }
        if (other != nullptr) {
          Comparison(table.source, other->source, errors_).compare(language.isComplete);
        }
      } else if (table.language == language.code && tableOf(kReference, table.module) == nullptr) {
        errors_.push_back({table.source.file, 1, "There is no such table in English."});
      }
    }
  }

  const SourceLanguage* languageOf(std::string_view code) const {
    for (const SourceLanguage& language : languages_) {
      if (language.code == code) return &language;
    }
    return nullptr;
  }
  const TableTree::Table* tableOf(std::string_view language, std::string_view module) const {
    for (const TableTree::Table& table : tree_.tables) {
      if (table.language == language && table.module == module) return &table;
    }
    return nullptr;
  }

  fs::path folder_;
  std::string list_;
  SourceErrors& errors_;
  std::vector<SourceLanguage> languages_;
  TableTree tree_;
};

}  // namespace

TableTree TableTree::read(const std::string& folder, SourceErrors& errors) {
  return TreeReader(folder, errors).read();
}

}  // namespace vornwout
