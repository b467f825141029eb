#include "libvornwout/frame/file_path.h"

#include <vector>

#include "platform/adapter/host_adapter.h"
#include "platform/files/file_specification.h"
#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

/// A drive letter counts as absolute here as well: paths may come from any system's job.
bool isRelative(const std::string& path) {
  const bool rooted = path.starts_with('\\') || path.starts_with('/');
  const auto first = static_cast<std::size_t>(VORNMBmbclen_A(path.c_str()));
  return !rooted && !(path.size() > first && path[first] == ':');
}

}  // namespace

void NormalizeOutputFilePath(std::string& path) {
  HostAdapter* adapter = GetAdapter();
  if (adapter != nullptr && !adapter->IsPathExpansionSuppressed() && isRelative(path)) {
    std::vector<char> expanded(kPathBufferSize);
    if (ExpandFileSpecification(path.c_str(), expanded.data(), path.size()) == 0) {
      path = expanded.data();
    }
  }
  for (char* slash = VORNMBstrchr_A(path.data(), '/'); slash != nullptr;
       slash = VORNMBstrchr_A(slash + 1, '/')) {
    *slash = '\\';
  }
}

}  // namespace vornwout
