// The shared library shows its entry points and nothing else.
#include <array>
#include <cstdio>
#include <memory>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "runner/command_table.h"
#include "tests/support/file_content.h"

namespace {

std::string output(const std::string& command) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  std::string text;
  std::array<char, 4096> buffer{};
  while (std::fgets(buffer.data(), buffer.size(), pipe.get()) != nullptr) text += buffer.data();
  return text;
}

/// The names that `nm -D` lists as defined and visible.
std::set<std::string> exportedNames(const std::string& library) {
  std::istringstream lines(output("nm -D --defined-only " + library));
  std::set<std::string> names;
  for (std::string address, type, name; lines >> address >> type >> name;) names.insert(name);
  return names;
}

std::set<std::string> entryPoints() {
  std::set<std::string> names;
  for (const vornwout::Command& command : vornwout::commandTable()) {
    if (command.run != nullptr) names.insert(std::string(command.entry));
  }
  return names;
}

TEST(Exports, AreTheEntryPointsAlone) {
  const auto exported = exportedNames(VORN_BUILD_DIR "/libvornwout/libvornwout.so");
  EXPECT_EQ(exported, entryPoints());
  EXPECT_FALSE(exported.empty());
}

TEST(Exports, HeaderDeclaresEveryEntryPoint) {
  const std::string header =
      vornwout::fileContent(VORN_SOURCE_DIR "/libvornwout/include/vornwout/entry_points.h");
  static const std::regex pattern(R"(void (\w+_)\(void\);)");
  std::set<std::string> declared;
  for (auto it = std::sregex_iterator(header.begin(), header.end(), pattern);
       it != std::sregex_iterator(); ++it) {
    declared.insert((*it)[1]);
  }
  EXPECT_EQ(declared, entryPoints());
}

}  // namespace
