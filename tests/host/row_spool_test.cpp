#include "host/export/text/row_spool.h"

#include <random>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>

#include "host/store/store_error.h"
#include "platform/text/shown_text.h"
#include "tests/support/scratch_directory.h"

namespace vornwout {
namespace {

/// A row whose texts it owns.
struct OwnedRow {
  std::vector<TextCell> cells;
  std::vector<std::string> texts;
};

std::vector<OwnedRow> anyRows(int count) {
  std::mt19937 random(7);
  const auto upTo = [&](unsigned last) { return static_cast<int>(random() % (last + 1)); };
  static const char* const kTexts[] = {"", "12.5", "日本", "a\nbb", "e\u0301", "x"};
  std::vector<OwnedRow> rows(static_cast<std::size_t>(count));
  for (OwnedRow& row : rows) {
    int column = 0;
    for (int i = upTo(5); i > 0; --i) {
      TextCell& cell = row.cells.emplace_back();
      std::string& text = row.texts.emplace_back(kTexts[upTo(5)]);
      if (upTo(50) == 0) text = std::string(70'000, 'x');
      column += upTo(4) == 0 ? 200 : 0;
      cell.column = column;
      cell.rowSpan = upTo(3) == 0 ? 1'000'000 : 1;
      cell.columnSpan = upTo(3) == 0 ? 130 : 1;
      cell.alignment = static_cast<CellAlignment>(upTo(2));
      cell.isOneLine = text.find('\n') == std::string::npos;
      cell.width = widestLine(text);
      column += cell.columnSpan;
    }
    for (std::size_t i = 0; i < row.cells.size(); ++i) row.cells[i].text = row.texts[i];
  }
  return rows;
}

void expectSame(const TextCell& cell, const TextCell& other) {
  EXPECT_EQ(cell.column, other.column);
  EXPECT_EQ(cell.rowSpan, other.rowSpan);
  EXPECT_EQ(cell.columnSpan, other.columnSpan);
  EXPECT_EQ(cell.alignment, other.alignment);
  EXPECT_EQ(cell.isOneLine, other.isOneLine);
  EXPECT_EQ(cell.width, other.width);
  EXPECT_EQ(cell.text, other.text);
}

class RowSpoolTest : public testing::TestWithParam<std::uint64_t> {};

TEST_P(RowSpoolTest, GivesBackWhatItTook) {
  const ScratchDirectory scratch;
  const std::vector<OwnedRow> rows = anyRows(2'000);
  RowSpool spool(GetParam(), [&] {
    return FileDescriptor(open(scratch.path().c_str(), O_RDWR | O_TMPFILE | O_CLOEXEC, 0600));
  });
  for (const OwnedRow& row : rows) spool.add(row.cells);
  for (const OwnedRow& row : rows) {
    ASSERT_TRUE(spool.next());
    ASSERT_EQ(spool.cells().size(), row.cells.size());
    for (std::size_t i = 0; i < row.cells.size(); ++i) expectSame(spool.cells()[i], row.cells[i]);
  }
  EXPECT_FALSE(spool.next());
}

INSTANTIATE_TEST_SUITE_P(MemoryLimits, RowSpoolTest, testing::Values(0, 300'000, 1'000'000'000));

TEST(RowSpool, WithoutRowsIsAtItsEnd) {
  RowSpool spool(0, [] { return FileDescriptor(); });
  EXPECT_FALSE(spool.next());
}

TEST(RowSpool, FullDiskIsAnError) {
  RowSpool spool(0, [] { return FileDescriptor(open("/dev/full", O_RDWR | O_CLOEXEC)); });
  const std::string text(100'000, 'x');
  TextCell cell;
  cell.text = text;
  cell.width = 100'000;
  EXPECT_THROW(spool.add({&cell, 1}), StoreError);
}

}  // namespace
}  // namespace vornwout
