#include "host/changes/cell_selection.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "host/changes/change_notes.h"
#include "host/layout/table_axis.h"
#include "host/layout/table_grid.h"
#include "platform/pivot/cell_text.h"
#include "platform/strings/localized.h"
#include "platform/text/shortened_text.h"

namespace vornwout {
namespace {

/// Combinations up to which a set of them has a bit for each, whatever the size of the table.
constexpr std::uint64_t kFewCombinations = 1U << 20U;

std::size_t at(int index) { return static_cast<std::size_t>(index); }

// Why a data cell is selected.
constexpr std::uint8_t kByItself = 1;
constexpr std::uint8_t kByColumnLabel = 2;
constexpr std::uint8_t kByRowLabel = 4;

// What is known about a category, its own or from a group above it.
constexpr std::uint8_t kHasStatistic = 1;
constexpr std::uint8_t kHasLabel = 2;

/// Columns or rows, each of one layer.
class LineSet {
 public:
  LineSet(std::uint64_t layers, std::uint64_t lines, std::size_t cells) : lines_(lines) {
    const std::uint64_t few = kFewCombinations + 8 * std::uint64_t{cells};
    if (lines != 0 && layers <= few / lines) bits_.resize(layers * lines);
  }

  void add(std::uint64_t layer, std::uint64_t line) {
    if (!bits_.empty()) {
      bits_[layer * lines_ + line] = true;
    } else if (sparse_.empty() || sparse_.back() != std::pair(layer, line)) {
      sparse_.emplace_back(layer, line);
    }
  }
  /// To be called when all are in it.
  void finish() {
    std::sort(sparse_.begin(), sparse_.end());
    sparse_.erase(std::unique(sparse_.begin(), sparse_.end()), sparse_.end());
  }
  bool contains(std::uint64_t layer, std::uint64_t line) const {
    if (!bits_.empty()) return bits_[layer * lines_ + line];
    return std::binary_search(sparse_.begin(), sparse_.end(), std::pair(layer, line));
  }

 private:
  std::uint64_t lines_;
  std::vector<bool> bits_;  ///< empty where there were too many
  std::vector<std::pair<std::uint64_t, std::uint64_t>> sparse_;
};

/// The three sides of a table as they are shown.
struct Axes {
  explicit Axes(const PivotTable& table)
      : columns(table, PivotPlace::kColumns),
        rows(table, PivotPlace::kRows),
        layers(table, PivotPlace::kLayers) {}

  TableAxis columns;
  TableAxis rows;
  TableAxis layers;
};

/// Columns or rows, and what APPLYTO wants of them.
struct Side {
  PivotPlace place;
  bool isNamed = false;      ///< by SELECTDIMENSION
  bool wantsData = false;    ///< of the whole column or row
  bool wantsLabels = false;  ///< of its header
  int innermost = -1;        ///< index of the dimension next to the data, -1 without any
};

ApplyTarget targetOf(const CellsChange& change) {
  constexpr std::array<std::pair<std::string_view, ApplyTarget>, 8> kTargets = {
      {{"", {-1, false, false}},
       {"CELL", {-1, false, false}},
       {"COLUMN", {0, true, true}},
       {"ROW", {1, true, true}},
       {"COLUMNDATA", {0, true, false}},
       {"ROWDATA", {1, true, false}},
       {"COLUMNHEADER", {0, false, true}},
       {"ROWHEADER", {1, false, true}}}};
  const auto* const target = std::find_if(kTargets.begin(), kTargets.end(), [&](const auto& known) {
    return known.first == change.applyTo;
  });
  if (target == kTargets.end()) {
    constexpr int kShownColumns = 24;
    throw ChangeError(localized("cells have no \"^1\" to apply a change to",
                                textHead(change.applyTo, kShownColumns)));
  }
  return target->second;
}

/// The selection in one table.
class Selector {
 public:
  Selector(const PivotTable& table, const CellsChange& change, const CellConditions& conditions,
           const ApplyTarget& target)
      : table_(table), change_(change), conditions_(conditions) {
    appliesToSelf_ = target.side < 0;
    if (!appliesToSelf_) {
      sides_[at(target.side)].wantsData = target.data;
      sides_[at(target.side)].wantsLabels = target.labels;
    }
  }

  CellSelection run();

 private:
  /// What a dimension's categories have been found to be.
  struct Dimension {
    std::vector<std::uint8_t> known;      ///< by category
    std::vector<std::uint8_t> leafKnown;  ///< by leaf
    std::vector<std::size_t> leafNodes;   ///< category of each leaf
    std::vector<std::uint8_t> hit;        ///< by category: a selected cell stands below it
    std::vector<std::uint8_t> headed;     ///< by category: it is the header of such a cell
    /// By category: a cell that HEADERS needs for a condition stands below it. Empty without one.
    std::vector<std::uint8_t> met;
    std::vector<std::uint8_t> selected;  ///< by category
    bool matters = false;                ///< some category is known to be something
  };

  std::unordered_set<std::string> wholeLabels() const;
  bool namesCells() const;
  void readDimension(std::size_t index);
  bool isNamed(PivotPlace place) const;
  bool hasKind(StatisticKind kind) const;
  void checkCells() const;
  const Axes& axes();
  void findReasons();
  void addPositions(Side& side);
  void headPosition(const TableAxis& axis, std::uint64_t key);
  void meetConditions();
  void meetCells();
  void meetHeaders();
  void selectLabels();
  void extend(const Side& side);
  void markColumns();
  /// Of a layer that is chosen, the others are not meant.
  void leaveHiddenLayers();

  const PivotTable& table_;
  const CellsChange& change_;
  const CellConditions& conditions_;
  std::array<Side, 2> sides_ = {Side{PivotPlace::kColumns}, Side{PivotPlace::kRows}};
  bool appliesToSelf_ = false;
  std::unordered_set<std::string> labels_;
  std::vector<Dimension> dimensions_;
  std::vector<std::uint8_t> reasons_;  ///< by cell: why it is selected, 0 for not
  /// By cell: 0 unless HEADERS with a condition takes the labels of this one.
  std::vector<std::uint8_t> headedCells_;
  std::optional<Axes> axes_;
  CellSelection selection_;
};

bool Selector::isNamed(PivotPlace place) const {
  switch (change_.dimension) {
    case CellsChange::Dimension::kColumns:
      return place == PivotPlace::kColumns;
    case CellsChange::Dimension::kRows:
      return place == PivotPlace::kRows;
    default:
      return true;
  }
}

bool Selector::hasKind(StatisticKind kind) const {
  switch (kind) {
    case StatisticKind::kCorrelation:
      return change_.correlation;
    case StatisticKind::kCount:
      return change_.count;
    case StatisticKind::kMean:
      return change_.mean;
    case StatisticKind::kMedian:
      return change_.median;
    case StatisticKind::kPercent:
      return change_.percent;
    case StatisticKind::kResidual:
      return change_.residual;
    case StatisticKind::kSignificance:
      return change_.significance;
    default:
      return false;
  }
}

/// The labels that are meant. One that holds the sign that parts them comes in parts, which belong
/// together where the table has such a label: the longest one that goes on from each place.
std::unordered_set<std::string> Selector::wholeLabels() const {
  if (change_.labels.size() < 2) return {change_.labels.begin(), change_.labels.end()};
  std::unordered_map<std::string, std::vector<std::string>> known;  // by the first part
  for (const PivotDimension& dimension : table_.dimensions) {
    if (dimension.place() == PivotPlace::kLayers || !isNamed(dimension.place())) continue;
    for (const PivotCategory& category : dimension.categories) {
      std::string label = renderText(category.label);
      const std::size_t sign = label.find(';');
      if (sign == std::string::npos) continue;
      known[label.substr(0, sign)].push_back(std::move(label));
    }
  }
  std::unordered_set<std::string> labels;
  std::string joined;
  for (const std::string& part : change_.labels) joined += part + ';';
  for (std::string_view rest = joined; !rest.empty();) {
    std::string_view label = rest.substr(0, rest.find(';'));
    if (const auto found = known.find(std::string(label)); found != known.end()) {
      for (const std::string& longer : found->second) {
        if (longer.size() > label.size() && rest.starts_with(longer) &&
            rest.substr(longer.size()).starts_with(';')) {
          label = rest.substr(0, longer.size());
        }
      }
    }
    labels.emplace(label);
    rest.remove_prefix(label.size() + 1);
  }
  return labels;
}

void Selector::readDimension(std::size_t index) {
  const PivotDimension& source = table_.dimensions[index];
  Dimension& dimension = dimensions_[index];
  const std::size_t count = source.categories.size();
  if (source.leafCount < 0 || at(source.leafCount) > count) {
    throw ChangeError(localized("a dimension of a table counts categories that it has not"));
  }
  dimension.known.resize(count);
  dimension.hit.resize(count);
  dimension.headed.resize(count);
  dimension.selected.resize(count);
  dimension.leafKnown.resize(at(source.leafCount));
  dimension.leafNodes.assign(at(source.leafCount), count);
  const PivotPlace place = source.place();
  const bool takesKinds = isNamed(place);
  const bool takesLabels = takesKinds && place != PivotPlace::kLayers && !labels_.empty();
  for (std::size_t i = 0; i < count; ++i) {
    const PivotCategory& category = source.categories[i];
    if (category.parent >= static_cast<int>(i)) {
      throw ChangeError(localized("a category of a table stands in no group before it"));
    }
    std::uint8_t& known = dimension.known[i];
    if (category.parent >= 0) known = dimension.known[at(category.parent)];
    if (takesKinds && hasKind(category.statistic)) known |= kHasStatistic;
    if (takesLabels) {
      const CellText& label = category.label;
      const bool isMeant = label.kind == CellText::Kind::kString
                               ? labels_.contains(label.text)
                               : labels_.contains(renderText(label));
      if (isMeant) {
        known |= kHasLabel;
        dimension.selected[i] = 1;
      }
    }
    dimension.matters = dimension.matters || known != 0;
    if (category.isGroup) continue;
    if (category.leaf < 0 || category.leaf >= source.leafCount ||
        dimension.leafNodes[at(category.leaf)] != count) {
      throw ChangeError(localized("a category of a table has no number of its own"));
    }
    dimension.leafNodes[at(category.leaf)] = i;
    dimension.leafKnown[at(category.leaf)] = known;
  }
  if (std::find(dimension.leafNodes.begin(), dimension.leafNodes.end(), count) !=
      dimension.leafNodes.end()) {
    throw ChangeError(localized("a dimension of a table counts categories that it has not"));
  }
}

void Selector::checkCells() const {
  if (table_.cells.size() > std::numeric_limits<std::uint32_t>::max()) {
    throw ChangeError(localized("a table has too many cells"));
  }
  for (const PivotCell& cell : table_.cells) {
    bool fits = cell.at.size() == table_.dimensions.size();
    for (std::size_t i = 0; fits && i < cell.at.size(); ++i) {
      fits = cell.at[i] >= 0 && cell.at[i] < table_.dimensions[i].leafCount;
    }
    if (!fits) throw ChangeError(localized("a cell of a table belongs to no category"));
  }
}

const Axes& Selector::axes() {
  if (!axes_) {
    try {
      axes_.emplace(table_);
    } catch (const std::length_error&) {
      throw ChangeError(kTooManyCombinations);
    } catch (const std::logic_error& error) {
      // Combinations beyond 2^63: such a table is not shown either.
      throw ChangeError(error.what());
    }
  }
  return *axes_;
}

void Selector::findReasons() {
  reasons_.assign(table_.cells.size(), change_.body ? kByItself : 0);
  for (std::size_t d = 0; d < dimensions_.size(); ++d) {
    const Dimension& dimension = dimensions_[d];
    if (!dimension.matters) continue;
    const bool isColumn = table_.dimensions[d].place() == PivotPlace::kColumns;
    const std::uint8_t byLabel = isColumn ? kByColumnLabel : kByRowLabel;
    std::vector<std::uint8_t> given(dimension.leafKnown.size());
    for (std::size_t leaf = 0; leaf < given.size(); ++leaf) {
      const std::uint8_t known = dimension.leafKnown[leaf];
      if ((known & kHasStatistic) != 0) given[leaf] |= kByItself;
      if ((known & kHasLabel) != 0) given[leaf] |= byLabel;
    }
    for (std::size_t i = 0; i < reasons_.size(); ++i) {
      reasons_[i] |= given[at(table_.cells[i].at[d])];
    }
  }
  if (change_.positions.empty()) return;
  for (Side& side : sides_) {
    if (side.isNamed) addPositions(side);
  }
}

/// Takes the cells of the columns or rows that are named by number.
void Selector::addPositions(Side& side) {
  const TableAxis& axis = side.place == PivotPlace::kColumns ? axes().columns : axes().rows;
  const TableAxis& layers = axes().layers;
  const bool hasLayers = !layers.dimensions().empty();
  std::vector<std::uint64_t> used;
  if (hasLayers) {
    for (const PivotCell& cell : table_.cells) {
      const std::uint64_t layer = layers.keyOf(cell);
      if (used.empty() || used.back() != layer) used.push_back(layer);
    }
    std::sort(used.begin(), used.end());
    used.erase(std::unique(used.begin(), used.end()), used.end());
  }
  // As layoutTable() decides which combinations it shows.
  const std::uint64_t layerCount = std::max<std::uint64_t>(1, used.size());
  const bool showsAll = (layerCount == 1 && axis.dimensions().size() <= 1) ||
                        axis.combinations() <= LayoutOptions().completeLimit / layerCount;
  std::vector<std::uint64_t> wanted;
  for (const int position : change_.positions) {
    if (position >= 1) wanted.push_back(static_cast<std::uint64_t>(position) - 1);
  }
  std::sort(wanted.begin(), wanted.end());
  wanted.erase(std::unique(wanted.begin(), wanted.end()), wanted.end());

  LineSet lines(showsAll ? 1 : layers.combinations(), axis.combinations(), table_.cells.size());
  if (showsAll) {
    for (const std::uint64_t key : wanted) {
      if (key >= axis.combinations()) break;
      lines.add(0, key);
      if (conditions_.areAllMet()) headPosition(axis, key);
    }
  } else {
    std::vector<std::pair<std::uint64_t, std::uint64_t>> shown;
    for (const PivotCell& cell : table_.cells) {
      shown.emplace_back(layers.keyOf(cell), axis.keyOf(cell));
    }
    std::sort(shown.begin(), shown.end());
    shown.erase(std::unique(shown.begin(), shown.end()), shown.end());
    std::size_t first = 0;  // of the layer
    for (std::size_t i = 0; i < shown.size(); ++i) {
      if (shown[i].first != shown[first].first) first = i;
      if (std::binary_search(wanted.begin(), wanted.end(), i - first)) {
        lines.add(shown[i].first, shown[i].second);
      }
    }
  }
  lines.finish();
  for (std::size_t i = 0; i < reasons_.size(); ++i) {
    const PivotCell& cell = table_.cells[i];
    if (lines.contains(showsAll ? 0 : layers.keyOf(cell), axis.keyOf(cell))) {
      reasons_[i] |= kByItself;
    }
  }
}

/// A column or row has its header even when it has no cells.
void Selector::headPosition(const TableAxis& axis, std::uint64_t key) {
  if (axis.dimensions().empty()) return;
  const std::size_t innermost = axis.dimensions().size() - 1;
  const AxisDimension& dimension = axis.dimensions()[innermost];
  const std::uint64_t rank = axis.rankIn(key, innermost);
  for (int level = dimension.depth() - 1; level >= 0; --level) {
    const int category = dimension.categoryAt(rank, level);
    if (category < 0) continue;
    dimensions_[dimension.index()].headed[at(category)] = 1;
    return;
  }
}

/// Leaves the cells that meet a condition. HEADERS with one are those of the selected cells; where
/// only texts are named, those of any cell.
void Selector::meetConditions() {
  leaveHiddenLayers();
  const bool narrowsHeaders = change_.headers && !conditions_.areAllMet();
  if (!narrowsHeaders || namesCells()) {
    conditions_.narrow(table_, reasons_);
    if (narrowsHeaders) headedCells_ = reasons_;
    return;
  }
  std::fill(reasons_.begin(), reasons_.end(), kByItself);
  leaveHiddenLayers();
  conditions_.narrow(table_, reasons_);
  headedCells_ = std::exchange(reasons_, std::vector<std::uint8_t>(reasons_.size()));
}

bool Selector::namesCells() const {
  return change_.correlation || change_.count || change_.mean || change_.median ||
         change_.percent || change_.residual || change_.significance || change_.body ||
         !change_.labels.empty() || !change_.positions.empty();
}

/// Notes below and beside which labels there are cells for HEADERS.
void Selector::meetHeaders() {
  if (!change_.headers || conditions_.areAllMet()) return;
  for (std::size_t d = 0; d < dimensions_.size(); ++d) {
    Dimension& dimension = dimensions_[d];
    const auto& categories = table_.dimensions[d].categories;
    dimension.met.resize(categories.size());
    for (std::size_t i = 0; i < headedCells_.size(); ++i) {
      if (headedCells_[i] != 0) dimension.met[dimension.leafNodes[at(table_.cells[i].at[d])]] = 1;
    }
    for (std::size_t i = categories.size(); i-- > 0;) {
      if (dimension.met[i] != 0 && categories[i].parent >= 0) {
        dimension.met[at(categories[i].parent)] = 1;
      }
    }
  }
}

/// Notes below and beside which labels the selected cells stand.
void Selector::meetCells() {
  for (const Side& side : sides_) {
    if (!side.wantsLabels) continue;
    const std::uint8_t byLabel = side.place == PivotPlace::kColumns ? kByColumnLabel : kByRowLabel;
    for (std::size_t d = 0; d < dimensions_.size(); ++d) {
      if (table_.dimensions[d].place() != side.place) continue;
      Dimension& dimension = dimensions_[d];
      const bool isInnermost = static_cast<int>(d) == side.innermost;
      if (!isInnermost && !dimension.matters) continue;
      for (std::size_t i = 0; i < reasons_.size(); ++i) {
        if (reasons_[i] == 0) continue;
        const std::size_t node = dimension.leafNodes[at(table_.cells[i].at[d])];
        dimension.hit[node] = 1;
        const bool isByOther = (reasons_[i] & byLabel) == 0 || (reasons_[i] & kByItself) != 0;
        if (isInnermost && isByOther) dimension.headed[node] = 1;
      }
    }
  }
}

void Selector::selectLabels() {
  for (std::size_t d = 0; d < dimensions_.size(); ++d) {
    Dimension& dimension = dimensions_[d];
    const auto& categories = table_.dimensions[d].categories;
    const PivotPlace place = table_.dimensions[d].place();
    const auto* const side =
        std::find_if(sides_.begin(), sides_.end(), [&](const Side& s) { return s.place == place; });
    const bool isSide = side != sides_.end();
    const bool takesHeaders = isSide && change_.headers && side->isNamed;
    const bool takesLabels = isSide && side->wantsLabels;
    for (std::size_t i = categories.size(); i-- > 0;) {
      if (dimension.hit[i] != 0 && categories[i].parent >= 0) {
        dimension.hit[at(categories[i].parent)] = 1;
      }
      const bool isMet = conditions_.areAllMet() || dimension.hit[i] != 0;
      const bool isNamedLabel = takesLabels && dimension.selected[i] != 0 && isMet;
      const bool isHeader = takesLabels && dimension.headed[i] != 0;
      const bool isAnyLabel = takesHeaders && (appliesToSelf_ || takesLabels) &&
                              (dimension.met.empty() || dimension.met[i] != 0);
      dimension.selected[i] = isNamedLabel || isHeader || isAnyLabel ? 1 : 0;
    }
    for (std::size_t i = 0; i < categories.size(); ++i) {
      if (dimension.selected[i] != 0) selection_.labels.push_back({d, i});
    }
  }
}

/// Takes all cells of the columns or rows that a selected cell stands in.
void Selector::extend(const Side& side) {
  if (change_.headers && side.isNamed) {
    if (conditions_.areAllMet()) {
      std::fill(reasons_.begin(), reasons_.end(), kByItself);
      return;
    }
    for (std::size_t i = 0; i < reasons_.size(); ++i) reasons_[i] |= headedCells_[i];
  }
  if (std::find_if(reasons_.begin(), reasons_.end(), [](std::uint8_t r) { return r != 0; }) ==
      reasons_.end()) {
    return;
  }
  const TableAxis& axis = side.place == PivotPlace::kColumns ? axes().columns : axes().rows;
  const TableAxis& layers = axes().layers;
  LineSet lines(layers.combinations(), axis.combinations(), table_.cells.size());
  for (std::size_t i = 0; i < reasons_.size(); ++i) {
    if (reasons_[i] != 0) lines.add(layers.keyOf(table_.cells[i]), axis.keyOf(table_.cells[i]));
  }
  lines.finish();
  for (std::size_t i = 0; i < reasons_.size(); ++i) {
    if (lines.contains(layers.keyOf(table_.cells[i]), axis.keyOf(table_.cells[i]))) {
      reasons_[i] = kByItself;
    }
  }
}

void Selector::markColumns() {
  const int innermost = sides_[0].innermost;
  if (innermost < 0) return;
  Dimension& dimension = dimensions_[at(innermost)];
  const auto& categories = table_.dimensions[at(innermost)].categories;
  std::vector<std::uint8_t> below(categories.size());
  for (const std::uint32_t cell : selection_.cells) {
    below[dimension.leafNodes[at(table_.cells[cell].at[at(innermost)])]] = 1;
  }
  for (const CellSelection::Label& label : selection_.labels) {
    if (label.dimension == at(innermost)) {
      below[label.category] = 1;
    } else if (table_.dimensions[label.dimension].place() == PivotPlace::kColumns) {
      std::fill(below.begin(), below.end(), std::uint8_t{1});
      break;
    }
  }
  for (std::size_t i = 0; i < categories.size(); ++i) {
    if (categories[i].parent >= 0) below[i] |= below[at(categories[i].parent)];
    if (below[i] != 0 && !categories[i].isGroup) {
      selection_.columns.push_back({at(innermost), i});
    }
  }
}

void Selector::leaveHiddenLayers() {
  for (std::size_t d = 0; d < table_.dimensions.size(); ++d) {
    const PivotDimension& dimension = table_.dimensions[d];
    if (dimension.place() != PivotPlace::kLayers || dimension.shownLeaf < 0) continue;
    for (std::size_t i = 0; i < reasons_.size(); ++i) {
      if (table_.cells[i].at[d] != dimension.shownLeaf) reasons_[i] = 0;
    }
  }
}

CellSelection Selector::run() {
  checkCells();
  labels_ = wholeLabels();
  dimensions_.resize(table_.dimensions.size());
  for (std::size_t d = 0; d < dimensions_.size(); ++d) readDimension(d);
  for (Side& side : sides_) {
    side.isNamed = isNamed(side.place);
    int outermost = std::numeric_limits<int>::min();
    for (std::size_t d = 0; d < dimensions_.size(); ++d) {
      const PivotDimension& dimension = table_.dimensions[d];
      const int order = dimension.position ? dimension.position->index : 1;
      if (dimension.place() != side.place || order < outermost) continue;
      outermost = order;
      side.innermost = static_cast<int>(d);
    }
  }
  findReasons();
  meetConditions();
  meetCells();
  meetHeaders();
  selectLabels();
  bool takesData = appliesToSelf_;
  for (const Side& side : sides_) {
    if (!side.wantsData) continue;
    extend(side);
    takesData = true;
  }
  if (takesData) {
    // Columns and rows that headers lead to reach through all layers.
    leaveHiddenLayers();
    for (std::size_t i = 0; i < reasons_.size(); ++i) {
      if (reasons_[i] != 0) selection_.cells.push_back(static_cast<std::uint32_t>(i));
    }
  }
  markColumns();
  // Texts have no value that could meet a condition.
  if (!conditions_.areAllMet()) return std::move(selection_);
  selection_.title = change_.title;
  selection_.caption = change_.caption && !renderText(table_.caption).empty();
  selection_.footnotes =
      change_.footnotes && (!table_.footnotes.empty() ||
                            std::any_of(table_.cells.begin(), table_.cells.end(),
                                        [](const PivotCell& cell) { return !cell.notes.empty(); }));
  return std::move(selection_);
}

}  // namespace

CellSelector::CellSelector(const CellsChange& change)
    : change_(change), conditions_(change.conditions), target_(targetOf(change)) {}

CellSelection CellSelector::select(const PivotTable& table) const {
  return Selector(table, change_, conditions_, target_).run();
}

}  // namespace vornwout
