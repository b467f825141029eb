// The folders in which table looks and chart templates are looked for, all of a test's own.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "platform/files/path_context.h"
#include "tests/support/scratch_directory.h"

namespace vornwout {

/// While it lives, the working directory, the installation and the user's data are empty folders
/// below one scratch directory.
class LookFolders {
 public:
  LookFolders() {
    for (const char* name : {"VORNWOUT_HOME", "XDG_DATA_HOME"}) {
      const char* value = std::getenv(name);
      before_[name] = value == nullptr ? std::nullopt : std::optional<std::string>(value);
    }
    setenv("VORNWOUT_HOME", scratch_.file("home").c_str(), 1);
    setenv("XDG_DATA_HOME", scratch_.file("data").c_str(), 1);
    for (const char* folder : {"jobs", "home/Looks", "data/vornwout/Looks"}) {
      std::filesystem::create_directories(scratch_.file(folder));
    }
    context_.emplace(PathContext{scratch_.file("jobs"), {{"looks", scratch_.file("jobs")}}});
  }
  ~LookFolders() {
    for (const auto& [name, value] : before_) {
      if (value) {
        setenv(name.c_str(), value->c_str(), 1);
      } else {
        unsetenv(name.c_str());
      }
    }
  }
  LookFolders(const LookFolders&) = delete;
  LookFolders& operator=(const LookFolders&) = delete;

  /// Write a file where relative paths and the handle "looks" lead, into the installation's Looks
  /// folder, and into the user's; each returns the file's path.
  std::string write(const std::string& name, const std::string& content) const {
    return scratch_.write("jobs/" + name, content);
  }
  std::string install(const std::string& name, const std::string& content) const {
    return scratch_.write("home/Looks/" + name, content);
  }
  std::string keepForUser(const std::string& name, const std::string& content) const {
    return scratch_.write("data/vornwout/Looks/" + name, content);
  }

 private:
  ScratchDirectory scratch_;
  std::map<std::string, std::optional<std::string>> before_;
  std::optional<ScopedPathContext> context_;
};

}  // namespace vornwout
