// The English string tables hold what the code says: every text that is looked up by its original,
// in the table of the layer that says it, and nothing else.
#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "platform/message/catalogue.h"
#include "tests/support/file_content.h"

namespace {

namespace fs = std::filesystem;

using Texts = std::set<std::string>;

/// A call whose first argument is looked up by its original.
struct Call {
  std::string_view name;
  std::string_view behind;  ///< what follows the text where it is one of the system's own
};

constexpr std::array kCalls = {Call{"localized(", ""},      Call{"localizable(", ""},
                               Call{"localizedText(", ""},  Call{"GenericError(", ""},
                               Call{"GenericWarning(", ""}, Call{"ErrorWarn(", ""},
                               Call{"ErrorWarn0(", ""},     Call{"errorWarnAlways(", ""},
                               Call{"BpString(", ", true"}, Call{"BpComposite(", ", true"}};

/// The string literal at a place, with those that follow it directly; moves the place behind them.
std::optional<std::string> literalAt(std::string_view code, std::size_t& at) {
  std::optional<std::string> text;
  for (;;) {
    const std::size_t begin = code.find_first_not_of(" \n", at);
    if (begin == std::string_view::npos || code[begin] != '"') return text;
    if (!text) text.emplace();
    std::size_t i = begin + 1;
    for (; code[i] != '"'; ++i) {
      if (code[i] == '\\') ++i;
      *text += code[i] == 'n' && code[i - 1] == '\\' ? '\n' : code[i];
    }
    at = i + 1;
  }
}

void addTextsOf(std::string_view code, Texts& texts) {
  for (const Call& call : kCalls) {
    for (std::size_t at = code.find(call.name); at != std::string_view::npos;
         at = code.find(call.name, at)) {
      at += call.name.size();
      const std::optional<std::string> text = literalAt(code, at);
      if (text && code.substr(at).starts_with(call.behind)) texts.insert(*text);
    }
  }
}

/// The texts in the sources below a folder of the repository.
Texts textsIn(const std::string& folder) {
  Texts texts;
  for (const auto& entry : fs::recursive_directory_iterator(VORN_SOURCE_DIR "/" + folder)) {
    const fs::path& path = entry.path();
    if (path.extension() != ".cpp" && path.extension() != ".h") continue;
    addTextsOf(vornwout::fileContent(path.string()), texts);
  }
  return texts;
}

void addCatalogue(Texts& texts) {
  for (const vornwout::MessageEntry& entry : vornwout::messageCatalogue()) {
    for (const std::string_view text : {entry.text, entry.shortText, entry.remedy}) {
      if (!text.empty()) texts.emplace(text);
    }
    for (const vornwout::KeywordRemedy& special : entry.keywordRemedies) {
      if (!special.remedy.empty()) texts.emplace(special.remedy);
    }
  }
}

/// The keys of an English table.
Texts keysOf(const std::string& module) {
  Texts keys;
  const std::string table = vornwout::fileContent(VORN_SOURCE_DIR "/strings/en/" + module + ".txt");
  constexpr std::string_view kKey = "key ";
  for (std::size_t line = 0; line < table.size();) {
    const std::size_t end = std::min(table.find('\n', line), table.size());
    const std::string_view text = std::string_view(table).substr(line, end - line);
    line = end + 1;
    if (!text.starts_with(kKey)) continue;
    std::string key;
    for (std::size_t i = kKey.size(); i < text.size(); ++i) {
      const bool isEscape = text[i] == '\\' && i + 1 < text.size();
      if (!isEscape) {
        key += text[i];
        continue;
      }
      const char escaped = text[++i];
      key += escaped == 'n' ? '\n' : escaped == 's' ? ' ' : escaped;
    }
    keys.insert(key);
  }
  return keys;
}

/// What the first has and the second lacks, as it would stand in a table.
std::string missing(const Texts& wanted, const Texts& present) {
  std::string list;
  for (const std::string& text : wanted) {
    if (present.contains(text)) continue;
    list += "key ";
    for (const char c : text) {
      if (c == '\n') {
        list += "\\n";
      } else {
        if (c == '\\') list += c;
        list += c;
      }
    }
    // A blank at the end of a line is no part of it.
    if (list.back() == ' ') list.replace(list.size() - 1, 1, "\\s");
    list += "\ntext \n\n";
  }
  return list;
}

void expectTable(const std::string& module, const Texts& texts) {
  const Texts keys = keysOf(module);
  EXPECT_EQ(missing(texts, keys), "") << "add to strings/en/" << module << ".txt";
  EXPECT_EQ(missing(keys, texts), "")
      << "nobody says this; remove from strings/en/" << module << ".txt";
}

TEST(Texts, ParserTableHasWhatThePlatformSays) {
  Texts texts = textsIn("platform");
  addCatalogue(texts);
  expectTable("parser", texts);
}

TEST(Texts, CommandAndOutputTablesHaveWhatTheCommandsSay) {
  Texts texts = textsIn("libvornwout");
  // Jobs select tables by their subtypes, which are the same in every language.
  for (const char* subtype : {"ExportSummary", "Output Modify Summary"}) {
    EXPECT_EQ(texts.erase(subtype), 1U) << subtype;
  }
  Texts labels = keysOf("output");
  // Those that are looked up by a key are the dictionary's.
  std::erase_if(labels, [](const std::string& key) { return key.starts_with("TFO"); });
  labels.erase("E60801");
  EXPECT_EQ(missing(labels, texts), "") << "nobody says this; remove from strings/en/output.txt";
  for (const std::string& label : labels) texts.erase(label);
  expectTable("command", texts);
}

TEST(Texts, HostTableHasWhatTheHostSays) { expectTable("host", textsIn("host")); }

TEST(Texts, ProgramTableHasWhatTheProgramSays) { expectTable("program", textsIn("runner")); }

}  // namespace
