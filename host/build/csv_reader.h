// Reads tables of comma-separated values (RFC 4180) as records of fields.
//
// Entry points: read() gives every record in turn, placeOf() says where a field of one stands.
// libcsv finds the fields; separators are a comma, a semicolon, a tab or a pipe, lines end with CR,
// LF or both, blank lines are skipped, blanks belong to their field. A first line "sep=;" is the
// note by which spreadsheets tell each other the separator. The library knows no places,
// and counting them for every field would cost more than reading: a place is found by a second pass
// when there is something to say about it. Memory is that of a chunk and of the longest record.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "host/build/build_files.h"
#include "host/build/csv_place.h"
#include "platform/adapter/output_sink.h"

namespace vornwout {

inline constexpr std::size_t kMaxCsvColumns = 10000;
inline constexpr std::size_t kMaxCsvFieldBytes = std::size_t{16} << 20;

struct CsvOptions {
  std::optional<char> separator;  ///< otherwise the one that stands most often in the first line
  std::string encoding;           ///< empty for UTF-8; a byte-order mark comes before it
};

class CsvReader {
 public:
  /// Fields of one record, which last until the handler returns. Record 0 is the header.
  using Handler =
      std::function<void(std::uint64_t record, std::span<const std::string_view> fields)>;

  /// `file` is what errors call the source, which must outlive the reader.
  CsvReader(ByteSource& source, std::string file, CsvOptions options);

  /// Gives all records. Throws BuildError with a place for what is no table: no header, rows of
  /// different lengths, quotes in the wrong place, bytes that are no text; and what `handler`
  /// throws.
  void read(const Handler& handler);

  /// Where a field starts, in a file that has been read up to it.
  SourcePlace placeOf(std::uint64_t record, std::size_t field);

  /// The separator that was given or found; right once read() has given the header.
  char separator() const { return separator_; }
  const std::string& file() const { return file_; }

 private:
  ByteSource& source_;
  std::string file_;
  CsvOptions options_;
  CsvTextForm form() const { return {options_.encoding, separator_, preamble_}; }

  char separator_ = ',';
  std::size_t preamble_ = 0;
};

/// Whether fields may be separated so.
bool isCsvSeparator(char c);

}  // namespace vornwout
