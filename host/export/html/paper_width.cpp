#include "host/export/html/paper_width.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "platform/text/display_width.h"

namespace vornwout {
namespace {

// Points. The page's style sheet has the sizes of type and the padding to both sides of a cell.
constexpr double kUprightPaper = 515;  // A4 within half an inch
constexpr double kTurnedPaper = 715;   // Letter within half an inch
constexpr double kUsualType = 8.5;
constexpr double kUsualPadding = 9.6;
constexpr double kSmallType = 6;
constexpr double kSmallPadding = 6;
/// Width of a character against the size of its type.
constexpr double kCharacter = 0.64;
/// A text that is longer may as well be wrapped.
constexpr int kReadable = 20;

/// The widest part of a text that stays on one line: a word, or a few where they are short.
int unbrokenWidth(std::string_view text) {
  int word = 0;
  int widestWord = 0;
  int line = 0;
  int widestLine = 0;
  forEachCluster(text, [&](std::string_view cluster, int columns) {
    const bool isLineEnd = cluster == "\n";
    line = isLineEnd ? 0 : line + columns;
    // Wide characters are those of scripts that break lines anywhere.
    word = isLineEnd || cluster == " " || columns > 1 ? 0 : word + columns;
    widestWord = std::max(widestWord, word);
    widestLine = std::max(widestLine, line);
  });
  return std::max(widestWord, std::min(widestLine, kReadable));
}

}  // namespace

PaperWidth::PaperWidth(const TableGrid& grid)
    : grid_(grid),
      characters_(static_cast<std::size_t>(grid.columnCount)),
      points_(static_cast<std::size_t>(grid.columnCount)) {}

void PaperWidth::add(const GridCell& cell) {
  if (cell.columnSpan != 1) return;
  const auto column = static_cast<std::size_t>(cell.column);
  const double size = cell.look.empty() ? 0 : cell.look->size;
  const auto isWidest = [&](int characters) {
    return size > 0 ? characters * kCharacter * size > points_[column]
                    : characters > characters_[column];
  };
  // No text takes more columns than it has bytes: nearly all cells end here.
  if (!isWidest(static_cast<int>(cell.text.size()))) return;
  const int characters = cell.isNumber ? displayWidth(cell.text) : unbrokenWidth(cell.text);
  if (!isWidest(characters)) return;
  if (size > 0) {
    points_[column] = characters * kCharacter * size;
  } else {
    characters_[column] = characters;
  }
}

double PaperWidth::width(double fontSize, double padding) const {
  int leastLabel = 0;
  if (!grid_.tableLook.empty()) {
    const LookMargins& margins = grid_.tableLook->area(LookArea::kData).margins;
    padding = margins.left + margins.right;
    leastLabel = grid_.tableLook->rowLabelColumns.min;
  }
  double width = 0;
  for (int column = 0; column < grid_.columnCount; ++column) {
    const auto at = static_cast<std::size_t>(column);
    const int least =
        column < grid_.headerColumns ? leastLabel : grid_.minDataColumnWidth.value_or(0);
    const double text = std::max(characters_[at] * kCharacter * fontSize, points_[at]) + padding;
    width += std::max(
        {text, static_cast<double>(least), static_cast<double>(grid_.columnWidth(column))});
  }
  return width;
}

PaperFit PaperWidth::fit() const {
  const double usual = width(kUsualType, kUsualPadding);
  if (usual <= kUprightPaper) return PaperFit::kUpright;
  if (usual <= kTurnedPaper) return PaperFit::kTurned;
  return width(kSmallType, kSmallPadding) <= kTurnedPaper ? PaperFit::kSmall : PaperFit::kCut;
}

}  // namespace vornwout
