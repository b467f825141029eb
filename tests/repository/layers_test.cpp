// Includes run downward only, and the map of the folders is true.
#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/file_content.h"

namespace fs = std::filesystem;

namespace {

const fs::path kRoot = VORN_SOURCE_DIR;

/// Which layers each layer may include besides itself: the arrows of docs/architecture.md.
const std::map<std::string, std::set<std::string>> kAllowed = {
    {"platform", {}},
    {"libvornwout", {"platform", "vornwout"}},
    {"host", {"platform"}},
    {"runner", {"platform", "host", "vornwout"}},
};

struct Include {
  std::string path;
  bool quoted = false;
};

std::vector<Include> includesOf(const std::string& text) {
  static const std::regex pattern(R"re(#\s*include\s*(["<])([^">]+)[">])re");
  std::vector<Include> found;
  for (auto it = std::sregex_iterator(text.begin(), text.end(), pattern);
       it != std::sregex_iterator(); ++it) {
    found.push_back({(*it)[2], (*it)[1] == "\""});
  }
  return found;
}

/// The layer that an include names; empty for a header of the system or of a dependency. Our own
/// headers stand in quotes, by their path from the root; the one public header of the commands by
/// its installed name.
std::string layerOf(const Include& include) {
  const std::string first = include.path.substr(0, include.path.find('/'));
  return include.quoted || kAllowed.contains(first) || first == "vornwout" ? first : "";
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
      for (const Include& include : includesOf(vornwout::fileContent(entry.path()))) {
        const std::string target = layerOf(include);
        EXPECT_TRUE(target.empty() || target == layer || allowed.contains(target))
            << entry.path() << " includes " << include.path << ", which is above or beside it";
        EXPECT_EQ(include.path.find(".."), std::string::npos)
            << entry.path() << " includes " << include.path << ": write the path from the root";
      }
    }
  }
  EXPECT_GT(sources, 50);
}

TEST(Layers, IncludesNameFilesThatExist) {
  for (const auto& [layer, allowed] : kAllowed) {
    for (const auto& entry : fs::recursive_directory_iterator(kRoot / layer)) {
      if (!isSource(entry.path())) continue;
      for (const Include& include : includesOf(vornwout::fileContent(entry.path()))) {
        const std::string target = layerOf(include);
        if (target.empty()) continue;
        const fs::path base = target == "vornwout" ? kRoot / "libvornwout/include" : kRoot;
        EXPECT_TRUE(fs::exists(base / include.path))
            << entry.path() << " includes " << include.path;
      }
    }
  }
}

TEST(Layers, LinkDownwardOnly) {
  const std::map<std::string, std::set<std::string>> targets = {
      // Its own module.
      {"platform", {"vornplatform"}},
      {"libvornwout", {"vornplatform", "vornwout_objects"}},
      {"host", {"vornplatform"}},
      {"runner", {"vornhost", "vornwout", "vornrunner"}},
  };
  static const std::regex links(R"(target_link_libraries\(([^)]*)\))");
  static const std::regex own(
      R"(\b(vornplatform|vornwout_objects|vornwout|vornhost|vornrunner)\b)");
  for (const auto& [layer, allowed] : targets) {
    const std::string text = vornwout::fileContent(kRoot / layer / "CMakeLists.txt");
    for (auto it = std::sregex_iterator(text.begin(), text.end(), links);
         it != std::sregex_iterator(); ++it) {
      const std::string call = (*it)[1];
      const std::string linked = call.substr(call.find_first_of(" \n"));
      for (auto name = std::sregex_iterator(linked.begin(), linked.end(), own);
           name != std::sregex_iterator(); ++name) {
        EXPECT_TRUE(allowed.contains((*name)[1])) << layer << " links " << (*name)[1];
      }
    }
  }
}

TEST(Architecture, NamesEveryFolderOfTheLayers) {
  const std::string map = vornwout::fileContent(kRoot / "docs/architecture.md");
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
  const std::string map = vornwout::fileContent(kRoot / "docs/architecture.md");
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
      const std::string text = vornwout::fileContent(entry.path());
      EXPECT_LE(std::count(text.begin(), text.end(), '\n'), kLongest) << entry.path();
    }
  }
}

}  // namespace
