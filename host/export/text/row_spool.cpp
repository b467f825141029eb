#include "host/export/text/row_spool.h"

#include <utility>

namespace vornwout {
namespace {

constexpr std::size_t kPiece = 64 * 1024;

// What the byte before a cell tells; the alignment stands in its two lowest bits.
constexpr unsigned kAlignment = 3;
constexpr unsigned kIsNext = 4;   // it covers the one place behind the cell before it
constexpr unsigned kIsPlain = 8;  // one line, as wide as it has bytes
constexpr unsigned kIsOneLine = 16;

/// Seven bits in a byte, the lowest first; the highest bit says that more follow.
void putNumber(std::string& packed, std::uint64_t number) {
  for (; number >= 0x80; number >>= 7) packed += static_cast<char>((number & 0x7F) | 0x80);
  packed += static_cast<char>(number);
}

}  // namespace

void RowSpool::add(std::span<const TextCell> cells) {
  putNumber(packed_, cells.size());
  int expected = 0;
  for (const TextCell& cell : cells) {
    const bool isNext = cell.column == expected && cell.rowSpan == 1 && cell.columnSpan == 1;
    const bool isPlain = cell.isOneLine && static_cast<std::size_t>(cell.width) == cell.text.size();
    packed_ += static_cast<char>(static_cast<unsigned>(cell.alignment) | (isNext ? kIsNext : 0) |
                                 (isPlain ? kIsPlain : 0) | (cell.isOneLine ? kIsOneLine : 0));
    if (!isNext) {
      for (const int number : {cell.column, cell.rowSpan, cell.columnSpan}) {
        putNumber(packed_, static_cast<std::uint64_t>(number));
      }
    }
    if (!isPlain) putNumber(packed_, static_cast<std::uint64_t>(cell.width));
    putNumber(packed_, cell.text.size());
    packed_ += cell.text;
    expected = cell.column + cell.columnSpan;
  }
  if (packed_.size() >= kPiece) keepPiece();
}

void RowSpool::keepPiece() { pieces_.push_back(spool_.keep(std::exchange(packed_, {}))); }

bool RowSpool::readPiece() {
  if (!packed_.empty()) keepPiece();
  if (nextPiece_ == pieces_.size()) return false;
  const PartSpool::Place& place = pieces_[nextPiece_++];
  piece_.resize(static_cast<std::size_t>(place.size));
  spool_.read(place, 0, piece_.data(), piece_.size());
  at_ = 0;
  return true;
}

std::uint64_t RowSpool::takeNumber() {
  std::uint64_t number = 0;
  for (unsigned shift = 0;; shift += 7) {
    const auto byte = static_cast<unsigned char>(piece_[at_++]);
    number |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
    if (byte < 0x80) return number;
  }
}

bool RowSpool::next() {
  if (at_ == piece_.size() && !readPiece()) return false;
  cells_.clear();
  int expected = 0;
  for (std::uint64_t left = takeNumber(); left > 0; --left) {
    const auto flags = static_cast<unsigned char>(piece_[at_++]);
    TextCell& cell = cells_.emplace_back();
    cell.alignment = static_cast<CellAlignment>(flags & kAlignment);
    cell.isOneLine = (flags & kIsOneLine) != 0;
    cell.column = expected;
    if ((flags & kIsNext) == 0) {
      for (int* number : {&cell.column, &cell.rowSpan, &cell.columnSpan}) {
        *number = static_cast<int>(takeNumber());
      }
    }
    const bool isPlain = (flags & kIsPlain) != 0;
    if (!isPlain) cell.width = static_cast<int>(takeNumber());
    const auto size = static_cast<std::size_t>(takeNumber());
    if (isPlain) cell.width = static_cast<int>(size);
    cell.text = std::string_view(piece_).substr(at_, size);
    at_ += size;
    expected = cell.column + cell.columnSpan;
  }
  return true;
}

}  // namespace vornwout
