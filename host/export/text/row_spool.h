// Keeps the rows of a table until its columns are measured, so that every value is formatted once
// and memory does not grow with the table.
//
// Rows are packed into pieces of some ten kilobytes, a byte or two for a cell besides its text. The
// first pieces wait in memory, the others in a scratch file.
//
// Entry points: add() for each row, then next() for each.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/export/text/text_row.h"
#include "host/store/part_spool.h"

namespace vornwout {

class RowSpool {
 public:
  /// `memoryLimit` bounds the bytes of the pieces in memory; `makeFile` gives the scratch file.
  RowSpool(std::uint64_t memoryLimit, std::function<FileDescriptor()> makeFile)
      : spool_(memoryLimit, std::move(makeFile)) {}

  /// Throws StoreError, as next() does.
  void add(std::span<const TextCell> cells);

  /// Goes on to the next row, from the first one; false behind the last. No row may be added then.
  bool next();
  /// Its cells, until the next call of next().
  std::span<const TextCell> cells() const { return cells_; }

 private:
  void keepPiece();
  bool readPiece();
  std::uint64_t takeNumber();

  PartSpool spool_;
  std::string packed_;  ///< the piece that is being filled
  std::vector<PartSpool::Place> pieces_;
  std::size_t nextPiece_ = 0;
  std::string piece_;  ///< the one that is being read
  std::size_t at_ = 0;
  std::vector<TextCell> cells_;
};

}  // namespace vornwout
