// What paths in commands are resolved against: the working directory and the declared file handles.
//
// All texts are in the current encoding. The file system's names are UTF-8; toNativePath() is the
// one place where a path of a command becomes a name that the system is asked for.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace vornwout {

struct PathContext {
  /// Absolute, or relative to the process's real working directory; empty for that directory
  /// itself.
  std::string workingDirectory;
  /// Directories by the names of their handles.
  std::map<std::string, std::string> handles;
};

/// The context in force; the real working directory and no handles unless another was set.
const PathContext& currentPathContext();

/// Makes a context the current one while it lives; the one before is back afterwards.
class ScopedPathContext {
 public:
  explicit ScopedPathContext(PathContext context);
  ~ScopedPathContext();
  ScopedPathContext(const ScopedPathContext&) = delete;
  ScopedPathContext& operator=(const ScopedPathContext&) = delete;

 private:
  PathContext previous_;
};

/// The current context's working directory as an absolute path, without a trailing slash unless it
/// is the root.
std::string workingDirectory();

/// A path of the current encoding as the file system knows it. With UTF-8 the bytes are taken as
/// they are, so that names which are not valid UTF-8 can still be reached.
std::string toNativePath(std::string_view path);
/// The reverse: a path from the file system in the current encoding.
std::string fromNativePath(std::string_view path);

}  // namespace vornwout
