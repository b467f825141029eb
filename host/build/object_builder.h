// Makes single objects of a document from files: tables, charts, texts and models.
//
// Everything that a file holds is checked before it becomes a content. All throw BuildError with
// the place in the file; a table's description may turn out wrong besides (DescriptionError). What
// an object is called in the outline is its file's name without folder and extension, until the
// caller says otherwise.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "host/build/build_files.h"
#include "host/build/table_description.h"
#include "host/document/document_object.h"

namespace vornwout {

inline constexpr std::size_t kMaxMediumBytes = std::size_t{256} << 20;
inline constexpr std::size_t kMaxTextBytes = std::size_t{16} << 20;

DocumentObject tableObject(const TableDescription& description, BuildFiles& files);

/// A chart in SVG, which is sanitized, or in PNG.
DocumentObject chartObject(const std::string& file, BuildFiles& files);

/// A text from a Markdown file.
DocumentObject markdownObject(const std::string& file, BuildFiles& files);

/// A text of plain paragraphs, one per line.
DocumentObject textObject(std::string_view text);

/// A model that another program made, byte for byte.
DocumentObject modelObject(const std::string& file, const std::string& mediaType,
                           BuildFiles& files);

/// The title of a document as a page title.
DocumentObject titleObject(const std::string& title);

}  // namespace vornwout
