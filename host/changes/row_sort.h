// Sorts the rows of a table by one of its columns.
//
// Sorted are the categories of the innermost row dimension, each within its group: groups stay
// where they are, and so does everything in the dimensions around it. These have one order of inner
// categories in common, so only one of their combinations can be the one that is sorted by: the
// first from above that has a value in the column, which is the block that a reader sees first. Of
// several layers it is likewise the first one shown. A category that has no value there is missing.
//
// Leaves are numbered in the order in which they stand, which is what finds them and what a stored
// document relies on. So a category that is moved takes the number that belongs to its new place,
// and the cells follow it.
#pragma once

#include "host/changes/modify_request.h"
#include "platform/pivot/pivot_table.h"

namespace vornwout {

/// Sorts by the column that `sort` names: by its label the first column with cells that stands
/// below a leaf of this label, by its position one of those that layoutTable() shows. Numbers come
/// before texts, which are ordered by the rules of the current language, and missing values last;
/// the direction turns the order of numbers and that of texts. Equal values keep their order.
///
/// Returns whether a row has moved: without such a column nothing does. Throws ChangeError for a
/// table that cannot be laid out.
bool sortRows(PivotTable& table, const SortChange& sort);

}  // namespace vornwout
