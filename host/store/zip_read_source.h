// A zip library's source that reads an open file by its descriptor, without moving the offset that
// other readers of the same descriptor might use: any number of them, in any threads.
//
// Entry point: makeZipReadSource(). What goes wrong below the library is kept in ReadableFile, for
// the library's own errors say no more than that reading failed.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <time.h>
#include <zip.h>

#include "host/store/file_descriptor.h"

namespace vornwout {

/// An ordinary file that is open for reading; it stays the same file when its name is given to
/// another one. Shared by readers, so nothing of it changes.
class ReadableFile {
 public:
  /// Throws StoreError of the kind kNoFile.
  explicit ReadableFile(const std::string& path);
  /// Takes a file that is open already.
  explicit ReadableFile(FileDescriptor file);

  int descriptor() const { return file_.number(); }
  /// The size when it was opened.
  std::uint64_t size() const { return size_; }
  /// Throws StoreError of the kind kDamaged when another program has written into the file since it
  /// was opened: what was found out about it then need not hold any more. A new name, or none, and
  /// other permissions change nothing of it.
  void requireUnchanged() const;

 private:
  void examine();

  FileDescriptor file_;
  std::uint64_t size_ = 0;
  timespec modified_ = {};
};

/// What a source tells its owner beside the library.
struct ReadSourceState {
  int systemError = 0;      ///< of the last read that failed, 0 when none did
  bool isCutShort = false;  ///< the file has become shorter than it was
};

/// `state` outlives the source. Null when there is no memory.
zip_source_t* makeZipReadSource(std::shared_ptr<const ReadableFile> file, ReadSourceState& state);

}  // namespace vornwout
