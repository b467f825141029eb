#include "platform/files/path_factory.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <vector>

#include <dlfcn.h>
#include <pwd.h>
#include <unistd.h>

#include "platform/files/path_context.h"
#include "platform/strings/language.h"

namespace vornwout {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kProductName = "vornwout";
constexpr std::string_view kStringTables = "/lang";
/// How far a binary stands below its prefix (bin/, lib/<architecture>/) or its build directory.
constexpr int kMaxDepth = 4;

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

std::string withoutTrailingSlash(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

bool isDirectory(const fs::path& path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

/// The source tree that a build directory was configured from; empty when `cache` cannot be read.
fs::path sourceTree(const fs::path& cache) {
  constexpr std::string_view kEntry = "CMAKE_HOME_DIRECTORY:INTERNAL=";
  std::ifstream lines(cache);
  for (std::string line; std::getline(lines, line);) {
    if (line.compare(0, kEntry.size(), kEntry) == 0) return line.substr(kEntry.size());
  }
  return {};
}

std::string runningProgram() {
  std::error_code error;
  return fs::read_symlink("/proc/self/exe", error).string();
}

std::string thisLibrary() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&runningProgram), &info) == 0) return {};
  std::error_code error;
  const fs::path path = fs::canonical(info.dli_fname, error);
  return error ? std::string() : path.string();
}

/// Where data and string tables are, as native paths.
struct DataDirectories {
  std::string data;
  std::string stringTables;

  explicit DataDirectories(const std::string& directory)
      : data(directory), stringTables(std::string(directory).append(kStringTables)) {}
  DataDirectories(std::string directory, std::string tables)
      : data(std::move(directory)), stringTables(std::move(tables)) {}
};

std::optional<DataDirectories> directoriesBeside(const std::string& binary) {
  fs::path directory = fs::path(binary).parent_path();
  for (int depth = 0; depth < kMaxDepth; ++depth, directory = directory.parent_path()) {
    // The directory's own name is looked at, so that no "share" of a stranger's tree is taken.
    const std::string name = directory.filename().string();
    if (name == "bin" || name == "lib" || name == "lib64" || name == "libexec") {
      const fs::path installed = directory.parent_path() / "share" / kProductName;
      if (isDirectory(installed)) return DataDirectories(installed.string());
    }
    const fs::path source = sourceTree(directory / "CMakeCache.txt");
    if (!source.empty() && isDirectory(source / "Looks")) {
      return DataDirectories(source.string(), directory.string().append(kStringTables));
    }
  }
  return std::nullopt;
}

DataDirectories installedDirectories() {
  const std::string program = runningProgram();
  for (const std::string& binary : {program, thisLibrary()}) {
    if (binary.empty()) continue;
    if (auto directories = directoriesBeside(binary)) return *directories;
  }
  return DataDirectories(
      (fs::path(program).parent_path().parent_path() / "share" / kProductName).string());
}

DataDirectories installation() {
  const std::string home = environment("VORNWOUT_HOME");
  if (!home.empty()) return DataDirectories(withoutTrailingSlash(home));
  static const DataDirectories kFound = installedDirectories();
  return kFound;
}

std::string homeDirectory() {
  const std::string home = environment("HOME");
  if (!home.empty()) return withoutTrailingSlash(home);
  std::vector<char> buffer(16384);
  struct passwd entry {};
  struct passwd* found = nullptr;
  if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr) {
    return withoutTrailingSlash(found->pw_dir);
  }
  return "/";
}

DataDirectories userDirectories() {
  const std::string data = environment("XDG_DATA_HOME");
  // A relative directory there is to be ignored by the convention that the variable comes from.
  const fs::path base = !data.empty() && data.front() == '/'
                            ? fs::path(data)
                            : fs::path(homeDirectory()) / ".local/share";
  return DataDirectories((base / kProductName).string());
}

PathInstance instanceOf(const DataDirectories& directories) {
  return PathInstance(fromNativePath(directories.data), fromNativePath(directories.stringTables));
}

}  // namespace

std::string PathInstance::getStringTableLocation() const {
  return stringTables_ + "/" + std::string(currentLanguage()) + "/";
}

PathInstance PathFactory::getPathInstance(int kind) {
  switch (kind) {
    case kUserDirectory:
      return instanceOf(userDirectories());
    case kInstallation:
      return instanceOf(installation());
    default:
      throw std::out_of_range("no path of kind " + std::to_string(kind));
  }
}

std::optional<std::string> PathFactory::dataDirectoryBeside(const std::string& binary) {
  auto directories = directoriesBeside(binary);
  if (!directories) return std::nullopt;
  return std::move(directories->data);
}

std::optional<std::string> PathFactory::stringTablesBeside(const std::string& binary) {
  auto directories = directoriesBeside(binary);
  if (!directories) return std::nullopt;
  return std::move(directories->stringTables);
}

}  // namespace vornwout
