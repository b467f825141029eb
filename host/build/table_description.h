// How a pivot table is made from the columns of a CSV file, as a manifest or a command line says
// it.
//
// Plain data with UTF-8 texts. Every part that may turn out wrong when the file is read has the
// path by which the description's author finds it again.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "host/build/csv_reader.h"
#include "host/build/value_text.h"
#include "platform/pivot/display_format.h"
#include "platform/pivot/pivot_table.h"
#include "platform/pivot/statistic_kind.h"
#include "platform/strings/localized.h"
#include "platform/text/json_locator.h"

namespace vornwout {

/// In which order the categories of a dimension stand.
enum class CategoryOrder { kAppearance, kLabel, kNumber };

/// A column of the file that a description names, and where it names it.
struct ColumnName {
  std::string name;
  JsonPath path;
};

/// A dimension: one column, or several of which each groups the next.
struct DimensionDescription {
  PivotPlace place = PivotPlace::kRows;
  std::vector<ColumnName> columns;  ///< outermost first
  std::string label;                ///< empty for the columns' names
  CategoryOrder order = CategoryOrder::kAppearance;
  bool hideLabel = false;
  bool hideCategories = false;
  std::vector<std::pair<std::string, StatisticKind>> statistics;  ///< by category label
  std::vector<std::pair<std::string, DisplayFormat>> formats;     ///< by category label
  JsonPath path;
};

/// A column that holds values.
struct ValueDescription {
  ColumnName column;
  std::string label;  ///< of its category; empty for the column's name
  StatisticKind statistic = StatisticKind::kNone;
  std::optional<DisplayFormat> format;
  bool isText = false;
};

struct FootnoteDescription {
  std::string text;
  /// Which cells it is for, as column and label; none for the table as a whole.
  std::vector<std::pair<std::string, std::string>> at;
  JsonPath path;
};

struct TableDescription {
  std::string csv;  ///< name of the file
  CsvOptions csvOptions;
  NumberMarks marks;
  std::vector<DimensionDescription> dimensions;
  std::vector<ValueDescription> values;
  bool hasValueDimension = false;  ///< the value columns are the categories of one more dimension
  std::string valuesLabel = localized("Statistics");
  PivotPlace valuesPlace = PivotPlace::kColumns;
  std::optional<DisplayFormat> format;
  StatisticKind statistic = StatisticKind::kNone;
  std::string title;
  bool titleHidden = false;
  std::string caption;
  std::string subtype;
  std::vector<FootnoteDescription> footnotes;
};

/// What a description asks for and the file does not have.
class DescriptionError : public std::runtime_error {
 public:
  /// `path` leads from the table's description to the culprit.
  DescriptionError(JsonPath path, const std::string& text, std::string help = {})
      : std::runtime_error(text), path_(std::move(path)), help_(std::move(help)) {}
  const JsonPath& path() const { return path_; }
  const std::string& help() const { return help_; }

 private:
  JsonPath path_;
  std::string help_;
};

}  // namespace vornwout
