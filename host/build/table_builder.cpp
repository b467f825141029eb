#include "host/build/table_builder.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <set>

#include "host/build/build_error.h"
#include "host/build/category_tree.h"
#include "platform/parser/value_shape.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

constexpr int kNoFormat = -1;
/// Rows by whose length the number of all rows is guessed.
constexpr std::uint64_t kSampledRows = 1000;
/// The most coordinates that a guess prepares for.
constexpr double kMostReserved = 1.6e7;
/// Suggestions compare letter by letter; what is longer is no slip of the finger.
constexpr std::size_t kMaxSuggested = 200;

std::string suggestionFor(const std::string& name, const std::vector<std::string>& known) {
  if (name.size() > kMaxSuggested) return {};
  for (const std::string& candidate : known) {
    if (candidate != name && withoutBlanks(candidate) == withoutBlanks(name)) {
      return localized("Did you mean \"^1\"? Blanks belong to the name.", candidate);
    }
  }
  std::vector<std::string_view> candidates;
  for (const std::string& candidate : known) {
    if (candidate.size() <= kMaxSuggested) candidates.push_back(candidate);
  }
  return suggestion(name, candidates);
}

JsonPath extended(JsonPath path, std::initializer_list<std::string> steps) {
  path.insert(path.end(), steps);
  return path;
}

/// A value as the file has it, before the categories' final numbers are known.
struct RawValue {
  double number = 0;
  std::uint32_t record = 0;
  std::uint32_t text = 0;  ///< index of a text plus one; 0 for a number
  std::int16_t format = kNoFormat;
  std::uint16_t column = 0;  ///< which of the value columns
};

/// Finds cells by their coordinates: by a table of all places where most of them are taken, which
/// is the usual table, otherwise by a table of hashes.
class CellIndex {
 public:
  /// `sizes` has the number of leaves of each dimension.
  CellIndex(const std::vector<int>& coordinates, const std::vector<std::size_t>& sizes,
            std::size_t cells)
      : coordinates_(coordinates), dimensions_(sizes.size()) {
    constexpr std::size_t kPlacesPerCell = 4;
    const std::size_t most = cells * kPlacesPerCell;
    std::size_t places = 1;
    bool isDense = !sizes.empty();
    for (const std::size_t count : sizes) {
      isDense = isDense && count > 0 && places <= most / count;
      if (isDense) places *= count;
    }
    if (isDense) {
      sizes_ = sizes;
      slots_.assign(places, 0);
      return;
    }
    std::size_t size = 16;
    while (size < cells * 2) size *= 2;
    slots_.assign(size, 0);
  }

  /// The cell that has the coordinates of `cell` already; otherwise `cell`, which is added.
  std::size_t add(std::size_t cell) {
    const int* at = coordinates_.data() + cell * dimensions_;
    if (!sizes_.empty()) {
      std::size_t place = 0;
      for (std::size_t i = 0; i < dimensions_; ++i) {
        place = place * sizes_[i] + static_cast<std::size_t>(at[i]);
      }
      std::uint32_t& slot = slots_[place];
      if (slot == 0) slot = static_cast<std::uint32_t>(cell + 1);
      return slot - 1;
    }
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t slot = hashOf(at) & mask;; slot = (slot + 1) & mask) {
      if (slots_[slot] == 0) {
        slots_[slot] = static_cast<std::uint32_t>(cell + 1);
        return cell;
      }
      const std::size_t other = slots_[slot] - 1;
      if (std::equal(at, at + dimensions_, coordinates_.data() + other * dimensions_)) return other;
    }
  }

 private:
  std::size_t hashOf(const int* at) const {
    // Neighbours in the last dimension stay neighbours in memory: rows mostly come sorted. Only few
    // of them, for where long runs meet, each new cell would have to pass all of both.
    constexpr std::uint64_t kNeighbours = 16;
    const auto last = static_cast<std::uint64_t>(at[dimensions_ - 1]);
    std::uint64_t hash = 0;
    const auto mix = [&](std::uint64_t value) {
      hash = (hash ^ (value + 1)) * 0x9E3779B97F4A7C15U;
      hash ^= hash >> 29;
    };
    for (std::size_t i = 0; i + 1 < dimensions_; ++i) mix(static_cast<std::uint64_t>(at[i]));
    mix(last / kNeighbours);
    return static_cast<std::size_t>(hash + last % kNeighbours);
  }

  const std::vector<int>& coordinates_;
  std::size_t dimensions_;
  std::vector<std::size_t> sizes_;    ///< empty where cells are found by hashes
  std::vector<std::uint32_t> slots_;  ///< cells from 1, 0 where there is none
};

/// A dimension while the file is read.
struct Axis {
  explicit Axis(const DimensionDescription& from) : description(&from), tree(from.columns.size()) {}

  const DimensionDescription* description;
  CategoryTree tree;
  std::vector<std::size_t> fields;  ///< of the columns, outermost first
  std::vector<int> leafFormats;     ///< by leaf, kNoFormat for none; empty when nothing is given
  std::vector<std::string_view> labels;
};

class TableMaker {
 public:
  TableMaker(const TableDescription& description, BuildFiles& files)
      : description_(description),
        source_(files.open(description.csv)),
        fileSize_(files.sizeOf(description.csv)),
        reader_(*source_, files.shownName(description.csv), description.csvOptions) {
    if (description_.hasValueDimension) {
      valueDimension_.place = description_.valuesPlace;
      valueDimension_.label = description_.valuesLabel;
      valueDimension_.columns.emplace_back();
    }
    for (const PivotPlace place : {PivotPlace::kRows, PivotPlace::kColumns, PivotPlace::kLayers}) {
      for (const DimensionDescription& dimension : description_.dimensions) {
        if (dimension.place == place) axes_.emplace_back(dimension);
      }
      // Innermost in its place, where a table of several values shows them.
      if (description_.hasValueDimension && valueDimension_.place == place) {
        valueAxis_ = axes_.size();
        axes_.emplace_back(valueDimension_);
      }
    }
  }

  std::shared_ptr<const PivotTable> make() {
    if (description_.footnotes.size() > kMaxFootnotes) {
      throw DescriptionError({"footnotes"},
                             localized("There are more than ^1 footnotes.", kMaxFootnotes));
    }
    reader_.read([this](std::uint64_t record, std::span<const std::string_view> fields) {
      if (record == 0) {
        readHeader(fields);
      } else {
        readRow(record, fields);
      }
    });
    checkUnique();
    auto table = std::make_shared<PivotTable>();
    fillTexts(*table);
    fillDimensions(*table);
    fillCells(*table);
    addFootnotes(*table);
    return table;
  }

 private:
  // The file.

  std::string columnHelp(const std::string& missing) {
    std::string help = suggestionFor(missing, header_);
    if (help.empty() && header_.size() == 1) {
      help = localized(
          "Its only column is \"^1\"; maybe the separator is another than was taken for it.",
          shortened(header_.front()));
    }
    return help;
  }

  std::size_t fieldOf(const ColumnName& column) {
    const auto found = std::find(header_.begin(), header_.end(), column.name);
    if (found == header_.end()) {
      throw DescriptionError(column.path,
                             localized("^1 has no column \"^2\".", reader_.file(), column.name),
                             columnHelp(column.name));
    }
    const auto field = static_cast<std::size_t>(found - header_.begin());
    const auto second = std::find(found + 1, header_.end(), column.name);
    if (second != header_.end()) {
      throw BuildError(reader_.file(),
                       reader_.placeOf(0, static_cast<std::size_t>(second - header_.begin())),
                       localized("There are two columns \"^1\".", column.name),
                       localized("Give one of them another name."));
    }
    if (!used_.insert(field).second) {
      throw DescriptionError(column.path,
                             localized("The column \"^1\" is used twice.", column.name));
    }
    return field;
  }

  void readHeader(std::span<const std::string_view> fields) {
    header_.assign(fields.begin(), fields.end());
    for (std::size_t i = 0; i < axes_.size(); ++i) {
      if (isValueAxis(i)) continue;
      for (const ColumnName& column : axes_[i].description->columns) {
        axes_[i].fields.push_back(fieldOf(column));
      }
    }
    for (const ValueDescription& value : description_.values) {
      valueFields_.push_back(fieldOf(value.column));
      const auto& format = value.format ? value.format : description_.format;
      valueFormats_.push_back(format ? formatNumber(*format) : kNoFormat);
    }
    if (description_.hasValueDimension) nameValues();
    // Formats of categories count from the columns inward to the layers.
    for (const PivotPlace place : {PivotPlace::kColumns, PivotPlace::kRows, PivotPlace::kLayers}) {
      for (std::size_t i = 0; i < axes_.size(); ++i) {
        const DimensionDescription& dimension = *axes_[i].description;
        if (dimension.place == place && !dimension.formats.empty()) formatted_.push_back(i);
      }
    }
  }

  /// The value columns are categories, in the order in which they are described.
  void nameValues() {
    Axis& axis = axes_[valueAxis_];
    for (std::size_t i = 0; i < description_.values.size(); ++i) {
      const ValueDescription& value = description_.values[i];
      const std::string_view label = value.label.empty() ? value.column.name : value.label;
      if (axis.tree.leafOf({&label, 1}) != static_cast<int>(i)) {
        throw DescriptionError(value.column.path,
                               localized("Two value columns are called \"^1\".", label),
                               localized("Give one of them a label of its own."));
      }
    }
  }

  std::int16_t formatNumber(const DisplayFormat& format) {
    const auto found = std::find(formats_.begin(), formats_.end(), format);
    const auto index = found - formats_.begin();
    if (found == formats_.end()) formats_.push_back(format);
    return static_cast<std::int16_t>(index);
  }

  void readRow(std::uint64_t record, std::span<const std::string_view> fields) {
    if (record > std::numeric_limits<std::uint32_t>::max()) {
      throw BuildError(reader_.file(), {}, localized("The file has too many rows."));
    }
    if (record <= kSampledRows) sampleRow(record, fields);
    at_.resize(axes_.size());
    for (std::size_t i = 0; i < axes_.size(); ++i) {
      if (isValueAxis(i)) continue;
      Axis& axis = axes_[i];
      axis.labels.clear();
      for (const std::size_t field : axis.fields) axis.labels.push_back(fields[field]);
      at_[i] = axis.tree.leafOf(axis.labels);
    }
    const int categoryFormat = formatted_.empty() ? kNoFormat : formatOfCategories();
    for (std::size_t i = 0; i < valueFields_.size(); ++i) {
      const std::string_view text = fields[valueFields_[i]];
      if (text.empty()) continue;
      if (description_.hasValueDimension) at_[valueAxis_] = static_cast<int>(i);
      const int format = categoryFormat == kNoFormat ? valueFormats_[i] : categoryFormat;
      RawValue value;
      value.record = static_cast<std::uint32_t>(record);
      value.column = static_cast<std::uint16_t>(i);
      value.format = static_cast<std::int16_t>(format);
      readValue(text, description_.values[i], value);
      coordinates_.insert(coordinates_.end(), at_.begin(), at_.end());
      values_.push_back(value);
    }
  }

  /// Guesses from the first rows how many there are, so that what is kept of them need not move
  /// when it grows. A wrong guess costs addresses, not memory: what is not used is never touched.
  void sampleRow(std::uint64_t record, std::span<const std::string_view> fields) {
    for (const std::string_view field : fields) {
      sampledBytes_ += static_cast<double>(field.size() + 1);
    }
    if (record != kSampledRows) return;
    const auto rows = static_cast<double>(fileSize_) * kSampledRows / sampledBytes_;
    const double guess = rows * static_cast<double>(valueFields_.size()) * 1.02;
    const auto cells = static_cast<std::size_t>(
        std::min(guess, kMostReserved / static_cast<double>(axes_.size())));
    values_.reserve(cells);
    coordinates_.reserve(cells * axes_.size());
  }

  /// The format that a category of the row asks for.
  int formatOfCategories() {
    for (const std::size_t i : formatted_) {
      Axis& axis = axes_[i];
      while (axis.leafFormats.size() < static_cast<std::size_t>(axis.tree.leafCount())) {
        axis.leafFormats.push_back(formatOfLeaf(axis, static_cast<int>(axis.leafFormats.size())));
      }
      const int format = axis.leafFormats[static_cast<std::size_t>(at_[i])];
      if (format != kNoFormat) return format;
    }
    return kNoFormat;
  }

  /// The format of the leaf, or of the innermost group around it that has one.
  int formatOfLeaf(const Axis& axis, int leaf) {
    for (int node = axis.tree.nodeOfLeaf(leaf); node >= 0; node = axis.tree.parentOf(node)) {
      for (const auto& [label, format] : axis.description->formats) {
        if (label == axis.tree.labelOf(node)) return formatNumber(format);
      }
    }
    return kNoFormat;
  }

  void readValue(std::string_view text, const ValueDescription& described, RawValue& value) {
    using Kind = DisplayFormat::Kind;
    const bool hasFormat = value.format != kNoFormat;
    const Kind kind = hasFormat ? formats_[static_cast<std::size_t>(value.format)].kind : Kind::kF;
    if (described.isText || (hasFormat && kind == Kind::kA)) {
      texts_.emplace_back(text);
      value.text = static_cast<std::uint32_t>(texts_.size());
      return;
    }
    const bool isDate = hasFormat && isDateOrTime(kind);
    const std::optional<double> number =
        isDate ? readDateOrTime(text, kind) : readNumber(text, description_.marks);
    if (number) {
      value.number = *number;
      return;
    }
    if (withoutBlanks(text).empty()) {
      throw BuildError(reader_.file(), placeOf(value),
                       localized("The value is made of blanks only."),
                       localized("Leave the field empty where there is no value."));
    }
    if (isDate) {
      throw BuildError(reader_.file(), placeOf(value),
                       kind == Kind::kTime ? localized("\"^1\" is no time.", shortened(text))
                                           : localized("\"^1\" is no date.", shortened(text)),
                       kind == Kind::kTime ? localized("Times are written as 13:05 or 13:05:59.")
                                           : localized("Dates are written as 2026-11-20 or "
                                                       "2026-11-20T13:05:59, from 1582-10-14 on."));
    }
    if (isTooLargeNumber(text, description_.marks)) {
      throw BuildError(reader_.file(), placeOf(value),
                       localized("The number \"^1\" is too large.", shortened(text)),
                       localized("The largest is about 1.8e308."));
    }
    throw BuildError(
        reader_.file(), placeOf(value), localized("\"^1\" is no number.", shortened(text)),
        "For a column of texts a manifest has \"text\": true, the command line --format "
        "A8; decimal mark and thousands separator can be given as well.");
  }

  SourcePlace placeOf(const RawValue& value) {
    return reader_.placeOf(value.record, valueFields_[value.column]);
  }

  static std::string shortened(std::string_view text) {
    constexpr std::size_t kMost = 60;
    if (text.size() <= kMost) return std::string(text);
    std::size_t end = kMost;
    while ((static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
    return std::string(text.substr(0, end)) + "...";
  }

  void checkUnique() {
    std::vector<std::size_t> sizes;
    for (const Axis& axis : axes_) {
      sizes.push_back(static_cast<std::size_t>(axis.tree.leafCount()));
    }
    CellIndex index(coordinates_, sizes, values_.size());
    for (std::size_t cell = 0; cell < values_.size(); ++cell) {
      const std::size_t other = index.add(cell);
      if (other == cell) continue;
      const SourcePlace first = placeOf(values_[other]);
      throw BuildError(reader_.file(), placeOf(values_[cell]),
                       localized("The cell ^1 stands twice, first in line ^2, column ^3.",
                                 nameOf(cell), first.line, first.column),
                       "Each combination of the labels may have one value; a label column may be "
                       "missing in the description.");
    }
  }

  /// The labels of a cell, "North, 2024".
  std::string nameOf(std::size_t cell) const {
    std::string name;
    for (std::size_t i = 0; i < axes_.size(); ++i) {
      const CategoryTree& tree = axes_[i].tree;
      std::string path;
      for (int node = tree.nodeOfLeaf(coordinates_[cell * axes_.size() + i]); node >= 0;
           node = tree.parentOf(node)) {
        path = shortened(tree.labelOf(node)) + (path.empty() ? "" : " " + path);
      }
      name += (i == 0 ? "" : ", ") + path;
    }
    return name;
  }

  // The table.

  bool isValueAxis(std::size_t axis) const {
    return description_.hasValueDimension && axis == valueAxis_;
  }

  void fillTexts(PivotTable& table) const {
    table.title.text = description_.title;
    table.titleHidden = description_.titleHidden;
    table.caption.text = description_.caption;
    table.subtype.text = description_.subtype;
  }

  /// What the values below each node are.
  std::vector<StatisticKind> statisticsOf(std::size_t index) const {
    const Axis& axis = axes_[index];
    std::vector<StatisticKind> statistics(static_cast<std::size_t>(axis.tree.nodeCount()),
                                          StatisticKind::kNone);
    const auto of = [&](int node) -> StatisticKind& {
      return statistics[static_cast<std::size_t>(node)];
    };
    if (isValueAxis(index)) {
      for (int i = 0; i < axis.tree.leafCount(); ++i) {
        const StatisticKind own = description_.values[static_cast<std::size_t>(i)].statistic;
        of(axis.tree.nodeOfLeaf(i)) = own == StatisticKind::kNone ? description_.statistic : own;
      }
      return statistics;
    }
    if (!description_.hasValueDimension && index == innermostAxis()) {
      for (int i = 0; i < axis.tree.leafCount(); ++i) {
        of(axis.tree.nodeOfLeaf(i)) = singleStatistic();
      }
    }
    for (const auto& [label, kind] : axis.description->statistics) {
      for (const int node : nodesCalled(axis, label, "statistics")) of(node) = kind;
    }
    for (const auto& entry : axis.description->formats) nodesCalled(axis, entry.first, "formats");
    return statistics;
  }

  StatisticKind singleStatistic() const {
    const StatisticKind own = description_.values.front().statistic;
    return own == StatisticKind::kNone ? description_.statistic : own;
  }

  /// The dimension whose categories are what a single value column's statistic is said of.
  std::size_t innermostAxis() const {
    for (const PivotPlace place : {PivotPlace::kColumns, PivotPlace::kRows, PivotPlace::kLayers}) {
      for (std::size_t i = axes_.size(); i-- > 0;) {
        if (axes_[i].description->place == place) return i;
      }
    }
    return 0;
  }

  /// The categories with that label; throws when there is none.
  static std::vector<int> nodesCalled(const Axis& axis, const std::string& label,
                                      const std::string& member) {
    std::vector<int> nodes;
    std::vector<std::string> labels;
    for (int node = 0; node < axis.tree.nodeCount(); ++node) {
      if (axis.tree.labelOf(node) == label) nodes.push_back(node);
    }
    if (!nodes.empty()) return nodes;
    throw DescriptionError(extended(axis.description->path, {member, label}),
                           localized("No category is called \"^1\".", label),
                           suggestionFor(label, someLabels(axis.tree)));
  }

  static std::vector<std::string> someLabels(const CategoryTree& tree) {
    constexpr int kMost = 1000;
    std::vector<std::string> labels;
    for (int node = 0; node < std::min(kMost, tree.nodeCount()); ++node) {
      labels.push_back(tree.labelOf(node));
    }
    return labels;
  }

  void fillDimensions(PivotTable& table) {
    std::array<int, 3> counts{};
    for (std::size_t i = 0; i < axes_.size(); ++i) {
      const DimensionDescription& from = *axes_[i].description;
      PivotDimension& dimension = table.dimensions.emplace_back();
      dimension.label.text = labelOf(from);
      PivotPosition position;
      position.place = static_cast<int>(from.place);
      position.index = ++counts.at(static_cast<std::size_t>(position.place));
      position.hideLabel = from.hideLabel;
      position.hideCategories = from.hideCategories;
      dimension.position = position;
      finalLeaves_.push_back(axes_[i].tree.finish(dimension, from.order, statisticsOf(i)));
    }
  }

  /// The given label, or the names of the columns from the outermost inward.
  static std::string labelOf(const DimensionDescription& dimension) {
    if (!dimension.label.empty()) return dimension.label;
    std::string label;
    for (const ColumnName& column : dimension.columns) {
      label += (label.empty() ? "" : " / ") + column.name;
    }
    return label;
  }

  void fillCells(PivotTable& table) {
    const std::size_t dimensions = axes_.size();
    table.cells.resize(values_.size());
    for (std::size_t i = 0; i < values_.size(); ++i) {
      const RawValue& value = values_[i];
      PivotCell& cell = table.cells[i];
      cell.at.resize(dimensions);
      for (std::size_t d = 0; d < dimensions; ++d) {
        cell.at[d] = finalLeaves_[d][static_cast<std::size_t>(coordinates_[i * dimensions + d])];
      }
      if (value.text > 0) {
        cell.value.text = std::move(texts_[value.text - 1]);
        continue;
      }
      cell.value.kind = CellText::Kind::kNumber;
      cell.value.number = value.number;
      if (value.format != kNoFormat) {
        cell.value.format.display = formats_[static_cast<std::size_t>(value.format)];
      }
    }
  }

  // Footnotes.

  void addFootnotes(PivotTable& table) const {
    for (const FootnoteDescription& note : description_.footnotes) {
      CellText text;
      text.text = note.text;
      if (note.at.empty()) {
        table.footnotes.push_back(std::move(text));
        continue;
      }
      // Per dimension, whether a leaf is one of those the note is for; empty where it says nothing.
      std::vector<std::vector<bool>> wanted(axes_.size());
      for (const auto& [column, label] : note.at) narrow(note, column, label, wanted);
      bool isUsed = false;
      for (std::size_t i = 0; i < values_.size(); ++i) {
        const int* at = coordinates_.data() + i * axes_.size();
        bool isWanted = true;
        for (std::size_t d = 0; d < axes_.size() && isWanted; ++d) {
          isWanted = wanted[d].empty() || wanted[d][static_cast<std::size_t>(at[d])];
        }
        if (!isWanted) continue;
        table.cells[i].notes.push_back(text);
        isUsed = true;
      }
      if (!isUsed) {
        throw DescriptionError(extended(note.path, {"at"}),
                               localized("There is no cell with these labels."));
      }
    }
  }

  /// Leaves only what has `label` in `column`, which is the name of a column or of a dimension.
  void narrow(const FootnoteDescription& note, const std::string& column, const std::string& label,
              std::vector<std::vector<bool>>& wanted) const {
    std::vector<std::string> names;
    for (std::size_t d = 0; d < axes_.size(); ++d) {
      const Axis& axis = axes_[d];
      const auto& columns = axis.description->columns;
      std::size_t level = 0;
      while (level < columns.size() && columns[level].name != column) ++level;
      const bool isDimension = labelOf(*axis.description) == column;
      for (const ColumnName& name : columns) names.push_back(name.name);
      names.push_back(labelOf(*axis.description));
      if (level == columns.size() && !isDimension) continue;
      std::vector<bool> leaves(static_cast<std::size_t>(axis.tree.leafCount()), false);
      bool isFound = false;
      for (int leaf = 0; leaf < axis.tree.leafCount(); ++leaf) {
        std::size_t nodeLevel = axis.tree.levels();
        for (int node = axis.tree.nodeOfLeaf(leaf); node >= 0; node = axis.tree.parentOf(node)) {
          --nodeLevel;
          if (level < columns.size() && nodeLevel != level) continue;
          if (axis.tree.labelOf(node) == label) leaves[static_cast<std::size_t>(leaf)] = true;
        }
        isFound = isFound || leaves[static_cast<std::size_t>(leaf)];
      }
      if (!isFound) {
        throw DescriptionError(extended(note.path, {"at", column}),
                               localized("\"^1\" has no category \"^2\".", column, label),
                               suggestionFor(label, someLabels(axis.tree)));
      }
      // Two columns of one dimension may both be named.
      for (std::size_t leaf = 0; leaf < leaves.size() && !wanted[d].empty(); ++leaf) {
        leaves[leaf] = leaves[leaf] && wanted[d][leaf];
      }
      wanted[d] = std::move(leaves);
      return;
    }
    throw DescriptionError(extended(note.path, {"at", column}),
                           localized("The table has no dimension from a column \"^1\".", column),
                           suggestionFor(column, names));
  }

  const TableDescription& description_;
  std::unique_ptr<ByteSource> source_;
  std::uint64_t fileSize_;
  CsvReader reader_;
  DimensionDescription valueDimension_;
  std::vector<Axis> axes_;
  std::size_t valueAxis_ = 0;
  std::vector<std::string> header_;
  std::set<std::size_t> used_;
  std::vector<std::size_t> valueFields_;
  std::vector<int> valueFormats_;
  std::vector<DisplayFormat> formats_;
  std::vector<std::size_t> formatted_;  ///< axes with formats of their own, in order of precedence
  std::vector<int> at_;
  std::vector<int> coordinates_;  ///< leaves as they came, one per dimension and cell
  std::vector<RawValue> values_;
  double sampledBytes_ = 0;  ///< of the first rows
  std::vector<std::string> texts_;
  std::vector<std::vector<int>> finalLeaves_;
};

}  // namespace

std::shared_ptr<const PivotTable> buildTable(const TableDescription& description,
                                             BuildFiles& files) {
  return TableMaker(description, files).make();
}

}  // namespace vornwout
