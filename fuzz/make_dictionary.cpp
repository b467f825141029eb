// Prints a libFuzzer dictionary: every name and value that the commands declare, and the marks of
// the language.
#include <iostream>
#include <set>
#include <string>

#include "platform/parser/grammar_capture.h"
#include "runner/command_table.h"

namespace {

using vornwout::CommandDescriptor;
using vornwout::ParamDescriptor;
using vornwout::SubComDescriptor;

void collect(const ParamDescriptor& param, std::set<std::string>& words) {
  words.insert(param.name());
  words.insert(param.values().begin(), param.values().end());
  for (const ParamDescriptor& qualifier : param.qualifiers()) collect(qualifier, words);
}

void collect(const SubComDescriptor& subcommand, std::set<std::string>& words) {
  words.insert("/" + subcommand.name());
  for (const ParamDescriptor& param : subcommand.params()) collect(param, words);
}

std::string escaped(const std::string& word) {
  std::string text;
  for (const char character : word) {
    if (character == '"' || character == '\\') text += '\\';
    text += character;
  }
  return text;
}

}  // namespace

int main() {
  std::set<std::string> words = {"RGB(", "POSITION(", ".\n",  "\n\n", "/*",
                                 "*/",   "''",        "\"\"", "[",    "]"};
  for (const vornwout::Command& command : vornwout::commandTable()) {
    words.insert(std::string(command.name));
    if (command.run == nullptr) continue;
    const CommandDescriptor grammar = vornwout::grammarOf(command.run);
    for (const SubComDescriptor& subcommand : grammar.subcommands()) collect(subcommand, words);
    for (const auto& group : grammar.groups()) {
      for (const SubComDescriptor& subcommand : group.subcommands()) collect(subcommand, words);
    }
  }
  for (const std::string& word : words) {
    if (word.find('\n') != std::string::npos) {
      std::cout << "\"" << escaped(word.substr(0, word.find('\n'))) << "\\x0A\"\n";
    } else if (!word.empty()) {
      std::cout << "\"" << escaped(word) << "\"\n";
    }
  }
}
