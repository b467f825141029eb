// The source of a string table: a text file per module and language, which people write and review.
//
//   # A comment.
//   key TFOMarch
//   text March
//   help The name of the month.
//
// A word at the start of a line says what the rest of it is; docs/string-tables.md has the rules.
//
// Entry points: TableSource::read(), readLanguages().
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vornwout {

/// What is wrong, and where.
struct SourceError {
  std::string file;
  int line = 0;
  std::string text;
};
using SourceErrors = std::vector<SourceError>;

/// An entry of a source, in UTF-8, its escapes replaced.
struct SourceEntry {
  int line = 0;  ///< of the key
  std::string key;
  std::string text;
  std::string help;
  int textLine = 0;  ///< 0 without a text
  int helpLine = 0;  ///< 0 without a help text
};

struct TableSource {
  std::string file;
  std::vector<SourceEntry> entries;

  /// Reads a source; what is wrong with it is added to `errors`, and left out.
  static TableSource read(const std::string& file, SourceErrors& errors);

  /// The entry with a key, null when there is none.
  const SourceEntry* find(std::string_view key) const;
};

/// A language that string tables are written in.
struct SourceLanguage {
  int line = 0;
  std::string code;
  bool isComplete = false;  ///< has every key of the English tables
};

/// Reads the list of languages: a code and "complete" or "partial" in each line.
std::vector<SourceLanguage> readLanguages(const std::string& file, SourceErrors& errors);

}  // namespace vornwout
