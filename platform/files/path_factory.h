// The directories in which the installation and the user keep data: looks, templates, string
// tables.
//
// The installation is found by VORNWOUT_HOME; else beside the running program, or beside this
// library when the program is somebody else's; else, in a build directory, in the source tree that
// CMake recorded there. So the same program works installed, relocated and freshly built.
#pragma once

#include <optional>
#include <string>

namespace vornwout {

/// One of the places for data. All texts are in the current encoding.
class PathInstance {
 public:
  explicit PathInstance(std::string directory) : directory_(std::move(directory)) {}

  /// The directory, without a trailing slash.
  const std::string& getDirectory() const { return directory_; }
  /// The directory of the current language's string tables, with a trailing slash.
  std::string getStringTableLocation() const;

 private:
  std::string directory_;
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
};

}  // namespace vornwout
