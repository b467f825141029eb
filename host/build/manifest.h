// Builds a document from a manifest: a JSON file that lists its objects and the files they come
// from.
//
// Entry point: buildFromManifest(). What a manifest may hold is declared where it is read, and
// described for editors in docs/manifest-schema.json; a test compares the two. A manifest comes
// from outside: 64 MiB, 64 levels and 1,000,000 objects are the most it may have, members that are
// unknown or stand twice are errors, and which files it may name is up to BuildFiles.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "host/build/build_files.h"
#include "host/document/document.h"

namespace vornwout {

inline constexpr std::size_t kMaxManifestBytes = std::size_t{64} << 20;
/// Objects and lists of JSON in each other. A heading takes two, and is limited by its own name.
inline constexpr std::size_t kMaxManifestDepth = 256;
inline constexpr int kMaxManifestHeadings = 30;  ///< in each other
inline constexpr std::size_t kMaxManifestObjects = 1'000'000;

/// Appends the manifest's objects to the document. `file` is what errors call the manifest. Throws
/// BuildError at the first mistake, with its place in the manifest or in the file that it names;
/// what the document has then got is of no use.
void buildFromManifest(std::string_view json, const std::string& file, BuildFiles& files,
                       Document& document);

}  // namespace vornwout
