// A document as JSON, for other programs: its outline, and what every object holds.
//
// The objects are written as they are read, one line each, so that memory is that of the largest
// object and not of the document. docs/showing-documents.md describes the members.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "host/document/outline.h"

namespace vornwout {

struct DocumentJsonOptions {
  std::string file;          ///< as the user wrote it
  bool hasContents = true;   ///< the outline alone reads no contents
  bool isAsciiOnly = false;  ///< other characters are escaped: a terminal obeys some of them
};

/// What a progress bar says while the file is shown.
std::string showingText(const std::string& file);

/// Writes one JSON value and a line end. `entries` is an outline, or an object of one with all that
/// stands below it. Returns whether every content could be read; one that cannot has a member
/// "error" in its place. A failure of writing is left in the stream's state.
bool writeDocumentJson(std::ostream& out, const std::vector<OutlineEntry>& entries,
                       const DocumentJsonOptions& options);

}  // namespace vornwout
