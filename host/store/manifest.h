// The manifest of a stored document: its outline, and where each content lies.
//
// Entry points: readManifest() and writeManifest(), one the reverse of the other. The format is in
// docs/file-format.md.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/document/document_object.h"

namespace vornwout {

/// Headings in headings. What shows documents walks them by recursion.
inline constexpr int kMaxOutlineDepth = 256;
/// Objects of an outline. A hostile manifest has them for five bytes each.
inline constexpr std::size_t kMaxObjects = 1'000'000;
/// Elements and attributes of a manifest, for reader and writer alike.
inline constexpr std::size_t kMaxManifestNodes = 10'000'000;
/// Bytes of a text of the outline. They are in memory as long as the document, and shown in one
/// line.
inline constexpr std::size_t kMaxOutlineText = std::size_t{1} << 20;
/// The largest number of an object: every XML tool can hold it exactly.
inline constexpr std::uint64_t kMaxObjectId = std::uint64_t{1} << 53;

/// Where the content of one object lies: in a part with others, or as a medium in a member of its
/// own.
struct StoredPlace {
  int part = -1;                           ///< index into Manifest::parts, -1 for a medium
  std::string member;                      ///< of a medium
  std::string mediaType;                   ///< of a medium
  ObjectType type = ObjectType::kUnknown;  ///< of the object
};

struct Manifest {
  std::map<std::string, int> runs;                        ///< how often each command has run
  std::vector<std::string> parts;                         ///< names of members
  std::unordered_map<std::uint64_t, StoredPlace> places;  ///< by the number of the object
};

/// Reads the outline into `root`, whose contents will be asked of `source`, and the rest into
/// `manifest`. Throws StoreError of the kind kDamaged.
void readManifest(std::string bytes, const std::shared_ptr<ContentSource>& source,
                  DocumentObject& root, Manifest& manifest);

/// What is written of an outline.
struct OutlineNumbers {
  std::unordered_map<const DocumentObject*, std::uint64_t> ids;  ///< of objects with a content
  bool withModels = true;                                        ///< models are written too
};

/// Throws StoreError of the kind kNotWritten for headings that are nested too deeply, for more
/// objects than kMaxObjects, and for texts longer than kMaxOutlineText.
std::string writeManifest(const DocumentObject& root, const Manifest& manifest,
                          const OutlineNumbers& numbers);

}  // namespace vornwout
