#include "platform/files/path_context.h"

#include <filesystem>
#include <utility>

#include "platform/text/encoding.h"

namespace vornwout {
namespace {

PathContext& current() {
  static PathContext context;
  return context;
}

}  // namespace

const PathContext& currentPathContext() { return current(); }

ScopedPathContext::ScopedPathContext(PathContext context)
    : previous_(std::exchange(current(), std::move(context))) {}

ScopedPathContext::~ScopedPathContext() { current() = std::move(previous_); }

std::string workingDirectory() {
  std::string directory = current().workingDirectory;
  if (directory.empty() || directory.front() != '/') {
    const std::string real = fromNativePath(std::filesystem::current_path().string());
    directory = directory.empty() ? real : real + '/' + directory;
  }
  // No encoding in use has a slash as the last byte of a longer character.
  while (directory.size() > 1 && directory.back() == '/') directory.pop_back();
  return directory;
}

std::string toNativePath(std::string_view path) {
  const Encoding& encoding = currentEncoding();
  return encoding.isUtf8() ? std::string(path) : encoding.toUtf8(path);
}

std::string fromNativePath(std::string_view path) {
  const Encoding& encoding = currentEncoding();
  return encoding.isUtf8() ? std::string(path) : encoding.fromUtf8(path);
}

}  // namespace vornwout
