// Checks the string tables of a folder and writes them as ICU's resource compiler reads them.
//
//   string_tables SOURCE [TARGET]
//
// Writes SOURCE/<language>/<module>.txt as TARGET/<language>/<module>.txt, a resource bundle in
// text form: three arrays of strings, in the order of the source. Mistakes go to standard error,
// each with its file and line; then nothing is written, and the exit status is 1.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include <fmt/format.h>

#include "platform/strings/tool/table_tree.h"

namespace vornwout {
namespace {

/// A string literal of ICU's resource compiler.
std::string literalOf(std::string_view text) {
  std::string literal = "\"";
  for (const char c : text) {
    if (c == '\n') {
      literal += "\\n";
      continue;
    }
    if (c == '"' || c == '\\') literal += '\\';
    literal += c;
  }
  return literal + '"';
}

std::string arrayOf(const char* name, const TableSource& source, std::string SourceEntry::*field) {
  std::string array = fmt::format("  {}:array {{\n", name);
  for (const SourceEntry& entry : source.entries) {
    array += "    " + literalOf(entry.*field) + ",\n";
  }
  return array + "  }\n";
}

bool write(const TableTree::Table& table, const std::string& target) {
  namespace fs = std::filesystem;
  const fs::path folder = fs::path(target) / table.language;
  const fs::path path = folder / (table.module + ".txt");
  std::error_code error;
  fs::create_directories(folder, error);
  std::ofstream file(path, std::ios::binary);
  file << "// Made from " << table.source.file << ".\n"
       << table.module << ":table(nofallback) {\n"
       << arrayOf("Keys", table.source, &SourceEntry::key)
       << arrayOf("Texts", table.source, &SourceEntry::text)
       << arrayOf("Helps", table.source, &SourceEntry::help) << "}\n";
  file.close();
  if (file) return true;
  fmt::print(stderr, "{}: error: The file cannot be written.\n", path.string());
  return false;
}

int report(SourceErrors errors) {
  // By file and line, whatever found them; one place's mistakes as they were found.
  std::stable_sort(errors.begin(), errors.end(), [](const SourceError& a, const SourceError& b) {
    return std::tie(a.file, a.line) < std::tie(b.file, b.line);
  });
  for (const SourceError& error : errors) {
    fmt::print(stderr, "{}:{}: error: {}\n", error.file, error.line, error.text);
  }
  return 1;
}

int run(const std::string& source, const std::string& target) {
  SourceErrors errors;
  const TableTree tree = TableTree::read(source, errors);
  if (!errors.empty()) return report(std::move(errors));
  if (target.empty()) return 0;
  for (const TableTree::Table& table : tree.tables) {
    if (!write(table, target)) return 1;
  }
  return 0;
}

}  // namespace
}  // namespace vornwout

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    std::fputs("usage: string_tables SOURCE [TARGET]\n", stderr);
    return 2;
  }
  return vornwout::run(argv[1], argc > 2 ? argv[2] : "");
}
