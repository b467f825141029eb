// Where something stands in a table of comma-separated values: lines and columns for its records.
//
// A walk over the text from its start, which is valid up to the place that is looked for. Lines end
// with CR, LF or both, as in an editor, also within quotes; columns count characters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "host/build/build_files.h"
#include "platform/adapter/output_sink.h"

namespace vornwout {

struct CsvTextForm {
  std::string encoding;  ///< as Utf8Stream takes it
  char separator = ',';
  std::size_t preamble = 0;  ///< bytes before the header, as UTF-8, which are no record
};

/// Place of the byte at `offset` of the text in UTF-8.
SourcePlace placeOfOffset(ByteSource& source, const CsvTextForm& form, std::uint64_t offset);

/// Place of a field; of the end of the text where there is no such field.
SourcePlace placeOfField(ByteSource& source, const CsvTextForm& form, std::uint64_t record,
                         std::size_t field);

}  // namespace vornwout
