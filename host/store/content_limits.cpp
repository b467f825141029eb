#include "host/store/content_limits.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "host/store/xml_reader.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

/// Elements that one limit counts together.
enum class Counted : std::uint8_t { kText, kCategory };

struct CountedName {
  std::string_view name;
  Counted as;
};

constexpr std::array<CountedName, 8> kCounted = {{{"run", Counted::kText},
                                                  {"paragraph", Counted::kText},
                                                  {"footnote", Counted::kText},
                                                  {"argument", Counted::kText},
                                                  {"item", Counted::kText},
                                                  {"note", Counted::kText},
                                                  {"category", Counted::kCategory},
                                                  {"group", Counted::kCategory}}};

/// By Counted.
constexpr std::array<std::size_t, 2> kMost = {kMaxTextElements, kMaxCategories};
constexpr std::array<const char*, 2> kExcess = {
    localizable("holds more than 1,000,000 runs, footnotes and the like"),
    localizable("holds more than 2,000,000 categories")};
constexpr const char* kDimensionExcess = localizable("holds more than 1,000 dimensions");
constexpr const char* kDepthExcess =
    localizable("holds a category that stands in more than 100 groups");
constexpr const char* kGrowthExcess =
    localizable("holds texts that grow by more than 16 MiB when their arguments are filled in");

/// False for so few bytes of XML that no limit can be passed: "<run/>" is the shortest element.
bool mayHoldTooMany(std::size_t size) { return size >= kMaxTextElements * 6; }

class ElementCount {
 public:
  /// Why this element is one too many; nullptr when it is not.
  const char* add(std::string_view name) {
    for (const CountedName& counted : kCounted) {
      if (counted.name != name) continue;
      const auto limit = static_cast<std::size_t>(counted.as);
      return ++counts_[limit] > kMost[limit] ? kExcess[limit] : nullptr;
    }
    return nullptr;
  }

 private:
  std::array<std::size_t, 2> counts_{};
};

/// A text as it will be shown, in bytes.
struct ShownText {
  std::uint64_t size = 0;
  std::uint64_t growth = 0;  ///< what it has more than all that it is made of
};

/// Far above any limit, and far enough below the end for a sum of products with sizes of texts.
constexpr std::uint64_t kHuge = std::uint64_t{1} << 32;

/// What renderText() will make, without making it.
ShownText measure(const CellText& cell) {
  if (cell.kind == CellText::Kind::kNumber) return {renderText(cell).size(), 0};
  if (cell.kind == CellText::Kind::kString) return {cell.text.size(), 0};
  std::uint64_t held = cell.text.size();
  std::uint64_t growth = 0;
  const auto part = [&](const CellText& text) {
    const ShownText shown = measure(text);
    held += shown.size;
    growth += shown.growth;
    return shown.size;
  };
  std::vector<std::uint64_t> arguments;
  for (const CellText& argument : cell.arguments) arguments.push_back(part(argument));
  std::uint64_t size = cell.text.size();
  for (std::size_t i = 0; i + 1 < cell.text.size(); ++i) {
    if (cell.text[i] != '^' || cell.text[i + 1] < '1' || cell.text[i + 1] > '9') continue;
    const auto index = static_cast<std::size_t>(cell.text[i + 1] - '1');
    if (index >= arguments.size()) continue;
    size += arguments[index];
    ++i;
  }
  for (const CellText& item : cell.sublist) size += part(item);
  growth += size > held ? size - held : 0;
  return {std::min(size, kHuge), std::min(growth, kHuge)};
}

std::uint64_t growthOf(const CellText& cell) {
  return cell.kind == CellText::Kind::kComposite ? measure(cell).growth : 0;
}

std::uint64_t growthOf(const PivotTable& table) {
  std::uint64_t growth = growthOf(table.title) + growthOf(table.subtype) + growthOf(table.caption);
  for (const CellText& note : table.footnotes) growth += growthOf(note);
  for (const PivotDimension& dimension : table.dimensions) {
    growth += growthOf(dimension.label);
    for (const PivotCategory& category : dimension.categories) growth += growthOf(category.label);
  }
  for (const PivotCell& cell : table.cells) {
    growth += growthOf(cell.value);
    for (const CellText& note : cell.notes) growth += growthOf(note);
  }
  return growth;
}

bool isNestedTooDeeply(const PivotTable& table) {
  std::vector<int> levels;
  for (const PivotDimension& dimension : table.dimensions) {
    levels.clear();
    for (const PivotCategory& category : dimension.categories) {
      const auto parent = static_cast<std::size_t>(category.parent);
      levels.push_back(category.parent < 0 || parent >= levels.size() ? 0 : levels[parent] + 1);
      if (levels.back() > kMaxGroupDepth) return true;
    }
  }
  return false;
}

bool growsTooLarge(const ObjectContent& content) {
  std::uint64_t growth = 0;
  if (const auto* table = std::get_if<TableContent>(&content)) growth = growthOf(**table);
  if (const auto* notes = std::get_if<NotesContent>(&content)) {
    for (const NoteEntry& entry : notes->entries) {
      growth += growthOf(entry.label) + growthOf(entry.value);
    }
  }
  return growth > kMaxTextGrowth;
}

}  // namespace

std::string excessOf(const ObjectContent& content, std::string_view written) {
  const auto* table = std::get_if<TableContent>(&content);
  if (table != nullptr && (*table)->dimensions.size() > kMaxDimensions) return kDimensionExcess;
  if (table != nullptr && isNestedTooDeeply(**table)) return kDepthExcess;
  if (growsTooLarge(content)) return kGrowthExcess;
  if (!mayHoldTooMany(written.size())) return "";
  constexpr std::string_view kNameEnds = " />";
  ElementCount count;
  for (std::size_t at = written.find('<'); at != std::string_view::npos;
       at = written.find('<', at + 1)) {
    // The longest of the names, and what ends it.
    const std::string_view tag = written.substr(at + 1, 10);
    if (const char* excess = count.add(tag.substr(0, tag.find_first_of(kNameEnds)))) return excess;
  }
  return "";
}

void checkElementCounts(pugi::xml_node content, std::size_t size) {
  if (!mayHoldTooMany(size)) return;
  // Without recursion: how deep a foreign element is, is not known here.
  ElementCount count;
  pugi::xml_node node = content;
  for (;;) {
    if (const char* excess = count.add(node.name())) {
      refuseElement(content, std::string("it ") + excess);
    }
    if (const pugi::xml_node child = node.first_child()) {
      node = child;
      continue;
    }
    while (node != content && !node.next_sibling()) node = node.parent();
    if (node == content) return;
    node = node.next_sibling();
  }
}

void checkTextGrowth(pugi::xml_node node, const ObjectContent& content) {
  if (growsTooLarge(content)) refuseElement(node, localized("it ^1", localizedText(kGrowthExcess)));
}

}  // namespace vornwout
