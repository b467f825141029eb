#include "platform/files/file_specification.h"

#include <cerrno>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/files/path_context.h"
#include "platform/text/encoding.h"
#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

bool isSeparator(char c) { return c == '/' || c == '\\'; }

/// Offset of the first separator that is a character of its own; the text's size when there is
/// none.
std::size_t findSeparator(std::string_view text) {
  const Encoding& encoding = currentEncoding();
  std::size_t at = 0;
  while (at < text.size() && !isSeparator(text[at])) {
    at += static_cast<std::size_t>(encoding.characterLength(text.substr(at)));
  }
  return at;
}

bool startsWithDrive(std::string_view path) {
  return path.size() >= 3 && path[1] == ':' && isSeparator(path[2]) &&
         ((path[0] >= 'a' && path[0] <= 'z') || (path[0] >= 'A' && path[0] <= 'Z'));
}

/// A component with the separator that follows it, if any.
struct Component {
  std::string_view name;
  std::string_view separator;
};

std::vector<Component> componentsOf(std::string_view path) {
  std::vector<Component> components;
  while (!path.empty()) {
    const std::size_t end = findSeparator(path);
    components.push_back({path.substr(0, end), path.substr(end, end < path.size() ? 1 : 0)});
    path.remove_prefix(end + components.back().separator.size());
  }
  return components;
}

/// Resolves ".", ".." and empty components of a path that starts with a separator.
std::string resolved(std::string_view path) {
  std::vector<Component> kept;
  for (const Component& component : componentsOf(path.substr(1))) {
    if (component.name.empty() || component.name == ".") continue;
    if (component.name != "..") {
      kept.push_back(component);
    } else if (!kept.empty()) {
      kept.pop_back();
    }
  }
  std::string result(path.substr(0, 1));
  for (const Component& component : kept) result.append(component.name).append(component.separator);
  return result;
}

/// Copies a result with its terminating zero; false when it does not fit.
bool copyTo(char* buffer, const std::string& result) {
  if (result.size() >= kPathBufferSize) return false;
  std::memcpy(buffer, result.c_str(), result.size() + 1);
  return true;
}

bool isPlainPath(const char* path, std::size_t length) {
  return path != nullptr && length > 0 && std::memchr(path, '\0', length) == nullptr;
}

/// The directory in which a path's last component stands.
std::string parentOf(const std::string& nativePath) {
  const std::size_t slash = nativePath.rfind('/');
  if (slash == std::string::npos) return ".";
  return nativePath.substr(0, slash == 0 ? 1 : slash);
}

bool isWritable(const std::string& nativePath) {
  return faccessat(AT_FDCWD, nativePath.c_str(), W_OK, AT_EACCESS) == 0;
}

}  // namespace

std::string expandPath(std::string_view path) {
  if (startsWithDrive(path)) return std::string(path);
  if (isSeparator(path.front())) return resolved(path);
  std::string absolute = workingDirectory();
  absolute += '/';
  return resolved(absolute.append(path));
}

std::optional<std::string> replaceDirectoryHandle(std::string_view path) {
  const std::size_t end = findSeparator(path);
  const auto& handles = currentPathContext().handles;
  const auto handle = handles.find(std::string(path.substr(0, end)));
  if (end == 0 || handle == handles.end()) return std::nullopt;
  std::string result = handle->second;
  std::string_view rest = path.substr(end);
  if (!rest.empty() && !result.empty() && result.back() == '/') rest.remove_prefix(1);
  return result.append(rest);
}

std::string handleInOtherCase(std::string_view path) {
  const std::string directory = workingDirectory();
  if (!path.starts_with(directory)) return {};
  path.remove_prefix(directory.size());
  if (!path.empty() && isSeparator(path.front())) path.remove_prefix(1);
  const std::string_view first = path.substr(0, findSeparator(path));
  for (const auto& [name, target] : currentPathContext().handles) {
    if (name != first && AreStringsEqualCase(name, first)) return name;
  }
  return {};
}

int ExpandFileSpecification(const char* path, char* buffer, std::size_t length) {
  if (!isPlainPath(path, length)) return 1;
  return copyTo(buffer, expandPath({path, length})) ? 0 : 1;
}

int ExpandDirectoryHandle(const char* path, char* buffer, std::size_t length) {
  if (!isPlainPath(path, length)) return 1;
  const std::optional<std::string> replaced = replaceDirectoryHandle({path, length});
  return replaced.has_value() && copyTo(buffer, *replaced) ? 0 : 1;
}

std::string CheckFileRef(const std::string& text, bool /*fromCommand*/, bool /*isFile*/) {
  const std::string path = replaceDirectoryHandle(text).value_or(text);
  return path.empty() || isSeparator(path.front()) ? path : expandPath(path);
}

extern "C" void validateclientfilespec_(const char* path, const int* length, int* usable,
                                        int* exists, int* accessible) {
  *usable = *exists = *accessible = 0;
  if (*length <= 0 || !isPlainPath(path, static_cast<std::size_t>(*length))) return;
  const std::string native = toNativePath({path, static_cast<std::size_t>(*length)});
  if (native.back() == '/') return;
  struct stat status {};
  if (stat(native.c_str(), &status) == 0) {
    if (S_ISDIR(status.st_mode)) return;
    *usable = *exists = 1;
    *accessible = isWritable(native) ? 1 : 0;
    return;
  }
  if (errno == ENAMETOOLONG) return;
  const bool isMissing = errno == ENOENT;
  *usable = 1;
  const std::string parent = parentOf(native);
  struct stat parentStatus {};
  const bool hasParent =
      isMissing && stat(parent.c_str(), &parentStatus) == 0 && S_ISDIR(parentStatus.st_mode);
  *accessible = hasParent && faccessat(AT_FDCWD, parent.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

}  // namespace vornwout
