// The directories in which the installation and the user keep data: looks, templates, string
// tables.
//
// The installation is found by VORNWOUT_HOME; else beside the running program, or beside this
// library when the program is somebody else's; else, in a build directory, in the source tree that
// CMake recorded there. String tables are made by the build: there they stand in the build
// directory itself. So the same program works installed, relocated and freshly built.
#pragma once

#include <optional>
#include <string>
#include <utility>

namespace vornwout {

/// One of the places for data. All texts are in the current encoding.
class PathInstance {
 public:
  /// `stringTables` holds a directory per language.
  PathInstance(std::string directory, std::string stringTables)
      : directory_(std::move(directory)), stringTables_(std::move(stringTables)) {}

  /// The directory, without a trailing slash.
  const std::string& getDirectory() const { return directory_; }
  /// The directory of the current language's string tables, with a trailing slash.
  std::string getStringTableLocation() const;

 private:
  std::string directory_;
  std::string stringTables_;
};

class PathFactory {
 public:
  static constexpr int kUserDirectory = 0;
  static constexpr int kInstallation = 3;

  /// The place of a kind; it need not exist. Throws std::out_of_range for other kinds.
  static PathInstance getPathInstance(int kind);

  /// The data directory that belongs to a program or library at an absolute native path: that of
  /// its installation prefix, or its source tree's when it stands in a build directory. Nothing
  /// when there is none.
  static std::optional<std::string> dataDirectoryBeside(const std::string& binary);
  /// The directory of the string tables that belong to it: the data directory's, or the build
  /// directory's.
  static std::optional<std::string> stringTablesBeside(const std::string& binary);
};

}  // namespace vornwout
