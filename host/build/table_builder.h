// Makes a pivot table from a CSV file and a description.
//
// Entry point: buildTable(). Every row of the file gives one cell per value column; an empty value
// gives none. Rows are collected as numbers of categories and a value, 24 bytes and four per
// dimension, and become cells when all categories are known: then the order of the categories is
// settled and a cell that stands twice shows.
//
// The format of a cell is that of its category where one has been given (columns before rows before
// layers), otherwise that of its value column, otherwise that of the table. A value whose format is
// one of dates or times is read as such; one whose format is A is a text.
#pragma once

#include <memory>
#include <string>

#include "host/build/build_files.h"
#include "host/build/table_description.h"
#include "platform/pivot/pivot_table.h"

namespace vornwout {

/// No table has more footnotes; each is compared with every cell.
inline constexpr std::size_t kMaxFootnotes = 1000;

/// The table. Throws BuildError for what is wrong in the file, with its place, and DescriptionError
/// for what the description asks for and the file does not have.
std::shared_ptr<const PivotTable> buildTable(const TableDescription& description,
                                             BuildFiles& files);

}  // namespace vornwout
