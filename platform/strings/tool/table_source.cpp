#include "platform/strings/tool/table_source.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <optional>
#include <unordered_map>

#include <fmt/format.h>

#include "platform/strings/language.h"
#include "platform/text/utf8.h"

namespace vornwout {
namespace {

/// A line's word, and what follows it behind one blank.
struct Line {
  int number = 0;
  std::string_view word;
  std::string_view rest;
};

bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

/// Calls `use` for each line that says something; what is wrong with a line whatever it says is
/// reported instead.
void readLines(const std::string& file, SourceErrors& errors,
               const std::function<void(const Line&)>& use) {
  std::ifstream lines(file, std::ios::binary);
  if (!lines) {
    errors.push_back({file, 1, "The file cannot be read."});
    return;
  }
  int number = 0;
  for (std::string text; std::getline(lines, text);) {
    ++number;
    const auto refuse = [&](const char* reason) { errors.push_back({file, number, reason}); };
    if (!isValidUtf8(text)) {
      refuse("The line is no valid UTF-8.");
    } else if (std::any_of(text.begin(), text.end(), isControl)) {
      refuse("The line holds a control character; a line end in a text is written \\n.");
    } else if (!text.empty() && text.back() == ' ') {
      refuse("The line ends with a blank; one that is meant is written \\s.");
    } else if (!text.empty() && text.front() != '#') {
      const std::string_view line = text;
      const std::size_t end = std::min(line.find(' '), line.size());
      use({number, line.substr(0, end), line.substr(std::min(end + 1, line.size()))});
    }
  }
}

/// The text with its escapes replaced; nothing when one of them is unknown.
std::optional<std::string> unescaped(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\') {
      result += text[i];
      continue;
    }
    const char escape = ++i < text.size() ? text[i] : '\0';
    if (escape != '\\' && escape != 'n' && escape != 's') return std::nullopt;
    result += escape == 'n' ? '\n' : escape == 's' ? ' ' : '\\';
  }
  return result;
}

/// Makes entries of lines.
class EntryReader {
 public:
  EntryReader(TableSource& source, SourceErrors& errors) : source_(source), errors_(errors) {}

  void take(const Line& line) {
    std::optional<std::string> rest = unescaped(line.rest);
    if (!rest) {
      refuse(line.number, "A backslash stands before n, s or a backslash.");
      return;
    }
    if (line.word == "key") {
      takeKey(line.number, std::move(*rest));
    } else if (line.word == "text") {
      takeText(line, std::move(*rest), &SourceEntry::text, &SourceEntry::textLine);
    } else if (line.word == "help") {
      takeText(line, std::move(*rest), &SourceEntry::help, &SourceEntry::helpLine);
    } else {
      refuse(line.number,
             fmt::format("A line starts with key, text, help or #, not with \"{}\".", line.word));
    }
  }

  /// Ends the last entry.
  void finish() {
    if (!isOpen_) return;
    const SourceEntry& entry = source_.entries.back();
    if (entry.textLine == 0) {
      refuse(entry.line, fmt::format("The key \"{}\" has no text.", entry.key));
    }
    isOpen_ = false;
  }

 private:
  void takeKey(int line, std::string key) {
    finish();
    if (key.empty()) {
      refuse(line, "The key is empty.");
      // What belongs to it is left out with it.
      isSkipping_ = true;
      return;
    }
    const auto [known, isNew] = lines_.try_emplace(key, line);
    isSkipping_ = !isNew;
    if (!isNew) {
      refuse(line, fmt::format("The key \"{}\" is there already, in line {}.", key, known->second));
      return;
    }
    source_.entries.emplace_back().line = line;
    source_.entries.back().key = std::move(key);
    isOpen_ = true;
  }

  void takeText(const Line& line, std::string text, std::string SourceEntry::*field,
                int SourceEntry::*fieldLine) {
    if (isSkipping_) return;
    if (!isOpen_) {
      refuse(line.number, fmt::format("There is no key before this {}.", line.word));
      return;
    }
    SourceEntry& entry = source_.entries.back();
    if (entry.*fieldLine != 0) {
      refuse(line.number,
             fmt::format("The key \"{}\" has another {} already.", entry.key, line.word));
      return;
    }
    entry.*field = std::move(text);
    entry.*fieldLine = line.number;
  }

  void refuse(int line, std::string reason) {
    errors_.push_back({source_.file, line, std::move(reason)});
  }

  TableSource& source_;
  SourceErrors& errors_;
  std::unordered_map<std::string, int> lines_;  ///< of the keys
  bool isOpen_ = false;
  bool isSkipping_ = false;
};

}  // namespace

TableSource TableSource::read(const std::string& file, SourceErrors& errors) {
  TableSource source;
  source.file = file;
  EntryReader reader(source, errors);
  readLines(file, errors, [&](const Line& line) { reader.take(line); });
  reader.finish();
  return source;
}

const SourceEntry* TableSource::find(std::string_view key) const {
  const auto found = std::find_if(entries.begin(), entries.end(),
                                  [&](const SourceEntry& entry) { return entry.key == key; });
  return found == entries.end() ? nullptr : &*found;
}

std::vector<SourceLanguage> readLanguages(const std::string& file, SourceErrors& errors) {
  std::vector<SourceLanguage> languages;
  readLines(file, errors, [&](const Line& line) {
    const auto refuse = [&](std::string reason) {
      errors.push_back({file, line.number, std::move(reason)});
    };
    if (std::find(kLanguages.begin(), kLanguages.end(), line.word) == kLanguages.end()) {
      return refuse(fmt::format("There is no language {}.", line.word));
    }
    if (line.rest != "complete" && line.rest != "partial") {
      return refuse("A language is complete or partial.");
    }
    for (const SourceLanguage& other : languages) {
      if (other.code != line.word) continue;
      return refuse(
          fmt::format("The language {} is there already, in line {}.", line.word, other.line));
    }
    languages.push_back({line.number, std::string(line.word), line.rest == "complete"});
  });
  return languages;
}

}  // namespace vornwout
