// Output documents on disk: openDocument() and saveDocument().
//
// A document's file is a zip container (QXV), described in docs/file-format.md; a QXW holds a page
// for a browser as well. Opening reads the outline only. Saving takes what did not change from the
// file that it came from, as it lies there, and replaces the target at one stroke. Both report
// their progress (progress_listener.h).
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "host/document/document.h"
#include "host/store/file_lock.h"

namespace vornwout {

inline constexpr const char* kManifestMember = "manifest.xml";
inline constexpr const char* kPageMember = "index.html";
inline constexpr const char* kDocumentMediaType = "application/vnd.vornwout.document";

enum class DocumentFileType { kQxv, kQxw };

struct OpenOptions {
  std::string password;  ///< where the file is encrypted; empty for none
};

struct SaveOptions {
  DocumentFileType type = DocumentFileType::kQxv;
  std::string password;     ///< empty for none
  bool storeModels = true;  ///< models are saved with the rest
  int threads = 2;          ///< that compress
  /// A lock of the caller on the file that is replaced, or on another; it outlives the save.
  const FileLock* ownLock = nullptr;
};

/// A document with the file's objects; its number is 1 and it has no name. Throws StoreError.
std::unique_ptr<Document> openDocument(const std::string& path, const OpenOptions& options = {});

/// What has become of a document that was saved.
struct SavedFile {
  std::optional<FileLock> lock;  ///< on the new file; nothing where its file system has no locks
  std::string warning;           ///< sentences about what did not succeed besides; mostly empty
};

/// Saves the document as the file `path`; afterwards its contents lie there. Gives the lock on the
/// new file, for whoever wants to keep it. An old file is locked until it is replaced, unless the
/// caller holds its lock; one that another holds is refused (kLocked). Throws StoreError; the
/// document and an old file are then as they were.
SavedFile saveDocument(Document& document, const std::string& path,
                       const SaveOptions& options = {});

/// The type by the path's extension; QXV unless it is ".qxw" in any case.
DocumentFileType documentFileType(const std::string& path);

}  // namespace vornwout
