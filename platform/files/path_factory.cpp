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

std::string installedDirectory() {
  const std::string program = runningProgram();
  for (const std::string& binary : {program, thisLibrary()}) {
    if (binary.empty()) continue;
    if (auto directory = PathFactory::dataDirectoryBeside(binary)) return *directory;
  }
  return (fs::path(program).parent_path().parent_path() / "share" / kProductName).string();
}

std::string installation() {
  const std::string home = environment("VORNWOUT_HOME");
  if (!home.empty()) return withoutTrailingSlash(home);
  static const std::string kFound = installedDirectory();
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

std::string userDirectory() {
  const std::string data = environment("XDG_DATA_HOME");
  // A relative directory there is to be ignored by the convention that the variable comes from.
  const fs::path base = !data.empty() && data.front() == '/'
                            ? fs::path(data)
                            : fs::path(homeDirectory()) / ".local/share";
  return (base / kProductName).string();
}

}  // namespace

std::string PathInstance::getStringTableLocation() const {
  return directory_ + "/lang/" + std::string(currentLanguage()) + "/";
}

PathInstance PathFactory::getPathInstance(int kind) {
  switch (kind) {
    case kUserDirectory:
      return PathInstance(fromNativePath(userDirectory()));
    case kInstallation:
      return PathInstance(fromNativePath(installation()));
    default:
      throw std::out_of_range("no path of kind " + std::to_string(kind));
  }
}

std::optional<std::string> PathFactory::dataDirectoryBeside(const std::string& binary) {
  fs::path directory = fs::path(binary).parent_path();
  for (int depth = 0; depth < kMaxDepth; ++depth, directory = directory.parent_path()) {
    // The directory's own name is looked at, so that no "share" of a stranger's tree is taken.
    const std::string name = directory.filename().string();
    if (name == "bin" || name == "lib" || name == "lib64" || name == "libexec") {
      const fs::path installed = directory.parent_path() / "share" / kProductName;
      if (isDirectory(installed)) return installed.string();
    }
    const fs::path source = sourceTree(directory / "CMakeCache.txt");
    if (!source.empty() && isDirectory(source / "Looks")) return source.string();
  }
  return std::nullopt;
}

}  // namespace vornwout
