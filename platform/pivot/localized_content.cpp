#include "platform/pivot/localized_content.h"

#include <vector>

#include "platform/strings/language.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

void localize(CellText& cell);

void localize(Rare<std::vector<CellText>>& cells) {
  if (cells.empty()) return;
  for (CellText& cell : cells.edit()) localize(cell);
}

void localize(CellText& cell) {
  if (cell.translatable && !cell.secret) cell.text = std::string(localizedText(cell.text));
  localize(cell.arguments);
  localize(cell.sublist);
}

bool isOriginal() { return currentLanguage() == kOriginalLanguage; }

}  // namespace

CellText localizedContent(const CellText& cell) {
  CellText copy = cell;
  if (!isOriginal()) localize(copy);
  return copy;
}

std::shared_ptr<const PivotTable> localizedTable(const std::shared_ptr<const PivotTable>& table) {
  if (isOriginal()) return table;
  auto copy = std::make_shared<PivotTable>(*table);
  localize(copy->title);
  localize(copy->caption);
  for (CellText& footnote : copy->footnotes) localize(footnote);
  for (PivotDimension& dimension : copy->dimensions) {
    localize(dimension.label);
    for (PivotCategory& category : dimension.categories) localize(category.label);
  }
  for (PivotCell& cell : copy->cells) {
    localize(cell.value);
    localize(cell.notes);
  }
  return copy;
}

}  // namespace vornwout
