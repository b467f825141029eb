// The files of one export: all of them are written beside their targets first, so that a failed
// export leaves no partial file and no changed old one.
//
// Entry points: begin() or add() for each file, commit() at the end. Paths are the system's.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/export/export_error.h"
#include "host/store/replaced_file.h"

namespace vornwout {

class ExportFiles {
 public:
  /// A file to be written bit by bit; valid until commit(). Throws ExportError with `code` for a
  /// path that no file can have (an empty one, a folder, one in a folder that is not there) or that
  /// this export has a file for already, and StoreError for what else is in the way.
  ReplacedFile& begin(const std::string& path,
                      ExportErrorCode code = ExportErrorCode::kInvalidFileName);

  /// A whole file.
  void add(const std::string& path, std::string_view bytes,
           ExportErrorCode code = ExportErrorCode::kInvalidFileName) {
    begin(path, code).write(bytes);
  }

  /// Puts all files in their places or, throwing StoreError, none; each is the old one or the new
  /// one at every moment. Returns what there is to say about files that are in their places: a
  /// sentence, or nothing.
  std::string commit();

 private:
  struct Entry {
    std::string path;  ///< without links
    std::unique_ptr<ReplacedFile> file;
  };
  std::vector<Entry> entries_;
};

}  // namespace vornwout
