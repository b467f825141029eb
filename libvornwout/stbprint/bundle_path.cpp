#include "libvornwout/stbprint/bundle_path.h"

#include "platform/text/encoding.h"

namespace vornwout {
namespace {

/// What stands before the last of the separators, each of one byte; all of it where there is none.
/// A separator's byte inside a longer character is none.
std::string_view beforeLast(std::string_view path, std::string_view separators) {
  const Encoding& encoding = currentEncoding();
  std::size_t last = path.size();
  for (std::size_t at = 0; at < path.size();) {
    if (separators.find(path[at]) != std::string_view::npos) last = at;
    at += static_cast<std::size_t>(encoding.characterLength(path.substr(at)));
  }
  return path.substr(0, last);
}

}  // namespace

std::string bundleDirectory(std::string_view stringTableLocation) {
  return std::string(beforeLast(beforeLast(stringTableLocation, "/\\"), "/"));
}

std::string bundlePath(std::string_view directory, std::string_view language,
                       std::string_view name) {
  return std::string(directory).append("\\").append(language).append("\\").append(name);
}

}  // namespace vornwout
