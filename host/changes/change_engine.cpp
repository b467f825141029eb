#include "host/changes/change_engine.h"

#include <limits>
#include <memory>
#include <utility>
#include <variant>

#include "host/changes/cell_changes.h"
#include "host/changes/chart_changes.h"
#include "host/changes/index_text.h"
#include "host/changes/table_changes.h"
#include "host/changes/text_changes.h"
#include "host/document/content_view.h"

namespace vornwout {
namespace {

/// The size that a change asks for; a side that it leaves open is 0 and keeps the proportions.
std::optional<ObjectSize> sizeOf(const PropertiesChange& change) {
  if (change.width || change.height) {
    return ObjectSize{change.width.value_or(0), change.height.value_or(0), false};
  }
  if (change.widthPercent || change.heightPercent) {
    return ObjectSize{change.widthPercent.value_or(0), change.heightPercent.value_or(0), true};
  }
  return std::nullopt;
}

/// Types whose content need not be read for a change of tables, or texts, are most of a document.
bool mayHoldTable(ObjectType type) {
  return type == ObjectType::kTable || type == ObjectType::kTree || type == ObjectType::kOther ||
         type == ObjectType::kUnknown;
}

bool mayHoldText(ObjectType type) {
  return type == ObjectType::kText || type == ObjectType::kPageTitle ||
         type == ObjectType::kOther || type == ObjectType::kUnknown;
}

/// Index numbers go on as far as there are numbers.
int nextIndex(int number) {
  return number == std::numeric_limits<int>::max() ? number : number + 1;
}

}  // namespace

void ChangeEngine::apply(const ModifyRequest& request, Document& document) {
  ChangeLog& log = logs_.emplace_back(document);
  for (const ModifyEvent& event : request.events) applyEvent(event, log);
}

void ChangeEngine::check(const ModifyEvent& event) {
  if (event.table) checkTableChange(*event.table, notes_);
  for (const CellsChange& cells : event.cells) checkCellsChange(cells, notes_, isFont_);
  if (event.text && !event.text->font.empty() && isFont_ && !isFont_(event.text->font)) {
    notes_.invalidFont(event.text->font);
  }
}

void ChangeEngine::applyEvent(const ModifyEvent& event, ChangeLog& log) {
  check(event);
  const Task task{event, event.graph ? chartStyles(*event.graph) : std::vector<ChartStyle>()};
  int index = event.index ? event.index->start : 0;
  for (DocumentObject* object : selectObjects(log.document().root(), event, log.gone())) {
    selected_.insert(object);
    if (event.index) {
      std::string text = indexText(event.index->style, index);
      index = nextIndex(index);
      if (text != object->index) {
        log.willChange(*object);
        object->index = std::move(text);
      }
    }
    if (event.deletes) {
      log.remove(*object);
    } else {
      changeObject(task, *object, log);
    }
  }
}

void ChangeEngine::changeObject(const Task& task, DocumentObject& object, ChangeLog& log) {
  const ModifyEvent& event = task.event;
  if (event.properties) changeProperties(*event.properties, object, log);
  const bool wantsTable = event.table || !event.cells.empty();
  if ((wantsTable && mayHoldTable(object.type)) || (event.text && mayHoldText(object.type)) ||
      (!task.chartStyles.empty() && object.type == ObjectType::kChart)) {
    changeContent(task, object, log);
  }
}

void ChangeEngine::changeProperties(const PropertiesChange& change, DocumentObject& object,
                                    ChangeLog& log) {
  const std::optional<ObjectSize> size = sizeOf(change);
  const bool changes = (change.visible && *change.visible != object.visible) ||
                       (change.label && *change.label != object.label) ||
                       (size && size != object.size);
  if (!changes) return;
  log.willChange(object);
  if (change.visible) object.visible = *change.visible;
  if (change.label) object.label = *change.label;
  if (size) object.size = size;
}

void ChangeEngine::changeContent(const Task& task, DocumentObject& object, ChangeLog& log) {
  std::optional<ObjectContent> changed;
  {
    // What is not changed is forgotten again where it can be read once more.
    const ContentView view(object.content);
    changed = changedContent(task, *view);
  }
  if (!changed) return;
  log.willChange(object);
  object.content.set(std::move(*changed));
}

std::optional<ObjectContent> ChangeEngine::changedContent(const Task& task,
                                                          const ObjectContent& content) {
  const ModifyEvent& event = task.event;
  if (const auto* table = std::get_if<TableContent>(&content)) {
    if (!event.table && event.cells.empty()) return std::nullopt;
    auto copy = std::make_shared<PivotTable>(**table);
    bool isChanged = event.table && changeTable(*copy, *event.table, notes_);
    for (const CellsChange& cells : event.cells) {
      isChanged = changeCells(*copy, cells, notes_, isFont_) || isChanged;
    }
    if (isChanged) return TableContent(std::move(copy));
  } else if (const auto* text = std::get_if<TextContent>(&content)) {
    TextContent copy = *text;
    if (event.text && changeText(copy, *event.text, notes_, isFont_)) return copy;
  } else if (const auto* chart = std::get_if<MediaContent>(&content)) {
    MediaContent copy = *chart;
    if (changeChart(copy, task.chartStyles)) return copy;
  }
  return std::nullopt;
}

ChangeCounts ChangeEngine::counts() const {
  ChangeCounts counts;
  counts.selected = selected_.size();
  for (const ChangeLog& log : logs_) {
    counts.modified += log.changedCount();
    counts.deleted += log.removedCount();
  }
  return counts;
}

std::vector<ChangeEngine::Removed> ChangeEngine::commit() {
  std::vector<Removed> removed;
  for (ChangeLog& log : logs_) {
    std::vector<std::size_t> positions = log.commit();
    if (!positions.empty()) {
      removed.push_back({log.document().number(), std::move(positions)});
    }
  }
  return removed;
}

}  // namespace vornwout
