// Includes run downward only, and the map of the folders is true.
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

const fs::path kRoot = VORN_SOURCE_DIR;

std::string readFile(const fs::path& path) {
  std::ifstream file(path);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

/// Which layers each layer may include besides itself: the arrows of docs/architecture.md.
const std::map<std::string, std::set<std::string>> kAllowed = {
    {"platform", {}},
    {"libvornwout", {"platform", "vornwout"}},
    {"host", {"platform"}},
    {"runner", {"platform", "host", "vornwout"}},
};

/// The layer that an include names; empty for a header of the system or of a dependency.
std::string layerOf(const std::string& included) {
  const std::string first = included.substr(0, included.find('/'));
  // The one public header of the commands is included by its installed name.
  return kAllowed.contains(first) || first == "vornwout" ? first : "";
}

std::vector<std::string> includesOf(const std::string& text) {
  static const std::regex pattern(R"re(#\s*include\s*["<]([^">]+)[">])re");
  std::vector<std::string> found;
  for (auto it = std::sregex_iterator(text.begin(), text.end(), pattern);
       it != std::sregex_iterator(); ++it) {
    found.push_back((*it)[1]);
  }
  return found;
}

bool isSource(const fs::path& path) {
  return path.extension() == ".h" || path.extension() == ".cpp";
}

TEST(Layers, IncludesRunDownwardOnly) {
  int sources = 0;
  for (const auto& [layer, allowed] : kAllowed) {
    for (const auto& entry : fs::recursive_directory_iterator(kRoot / layer)) {
      if (!isSource(entry.path())) continue;
      ++sources;
      for (const std::string& included : includesOf(readFile(entry.path()))) {
        const std::string target = layerOf(included);
        EXPECT_TRUE(target.empty() || target == layer || allowed.contains(target))
            << entry.path() << " includes " << included << ", which is above or beside it";
      }
    }
  }
  EXPECT_GT(sources, 50);
}

TEST(Layers, IncludesNameFilesThatExist) {
  for (const auto& [layer, allowed] : kAllowed) {
    for (const auto& entry : fs::recursive_directory_iterator(kRoot / layer)) {
      if (!isSource(entry.path())) continue;
      for (const std::string& included : includesOf(readFile(entry.path()))) {
        const std::string target = layerOf(included);
        if (target.empty()) continue;
        const fs::path base = target == "vornwout" ? kRoot / "libvornwout/include" : kRoot;
        EXPECT_TRUE(fs::exists(base / included)) << entry.path() << " includes " << included;
      }
    }
  }
}

TEST(Architecture, NamesEveryFolderOfTheLayers) {
  const std::string map = readFile(kRoot / "docs/architecture.md");
  for (const auto& [layer, allowed] : kAllowed) {
    EXPECT_NE(map.find("`" + layer + "/`"), std::string::npos) << layer;
    for (const auto& entry : fs::directory_iterator(kRoot / layer)) {
      if (!entry.is_directory() || entry.path().filename() == "include") continue;
      const std::string folder = layer + "/" + entry.path().filename().string();
      EXPECT_NE(map.find("`" + folder + "/`"), std::string::npos)
          << "docs/architecture.md says nothing of " << folder;
    }
  }
}

TEST(Architecture, NamesNoFolderThatIsGone) {
  const std::string map = readFile(kRoot / "docs/architecture.md");
  static const std::regex pattern(R"(`((?:platform|libvornwout|host|runner)/[a-z_/]*)/`)");
  for (auto it = std::sregex_iterator(map.begin(), map.end(), pattern);
       it != std::sregex_iterator(); ++it) {
    EXPECT_TRUE(fs::is_directory(kRoot / (*it)[1].str())) << (*it)[1];
  }
}

TEST(House, NoFileIsLongerThanTheHouseAllows) {
  constexpr int kLongest = 800;
  for (const char* folder :
       {"platform", "libvornwout", "host", "runner", "tests", "bench", "fuzz"}) {
    for (const auto& entry : fs::recursive_directory_iterator(kRoot / folder)) {
      if (!isSource(entry.path())) continue;
      const std::string text = readFile(entry.path());
      EXPECT_LE(std::count(text.begin(), text.end(), '\n'), kLongest) << entry.path();
    }
  }
}

}  // namespace
