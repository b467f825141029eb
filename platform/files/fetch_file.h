// Whole files by the names that commands give them: table looks, chart templates.
#pragma once

#include <cstddef>
#include <string>

namespace vornwout {

class FetchFile {
 public:
  /// Larger files are refused: what is read here goes into one request.
  static constexpr std::size_t kMaxFileSize = std::size_t{64} * 1024 * 1024;

  /// The bytes of a file; a relative name is taken against the working directory. With
  /// `expandHandles` a file handle is replaced first; with `backslashIsSlash`, where nothing has
  /// the name as it is written, its backslashes are taken as slashes. Empty for what is missing,
  /// unreadable, no regular file, or larger than kMaxFileSize; the caller reports.
  static std::string fetch(const std::string& name, bool expandHandles, bool backslashIsSlash);
};

}  // namespace vornwout
