#include "host/changes/change_engine.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <string_view>
#include <utility>
#include <variant>

#include <fmt/format.h>

#include "host/changes/index_text.h"
#include "host/document/content_view.h"
#include "host/store/store_error.h"
#include "platform/strings/localized.h"
#include "platform/text/display_width.h"
#include "platform/text/shortened_text.h"

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

/// What of a group may concern an object of a type.
struct Concerned {
  bool byTables = false;
  bool byTexts = false;
  bool byCharts = false;
};

/// What is changed goes by the content. The types that hold one kind of contents in every document
/// that is made here are most of a document, and are not read for the other kinds.
Concerned concernedBy(ObjectType type) {
  switch (type) {
    case ObjectType::kTable:
      return {true, false, false};
    case ObjectType::kText:
    case ObjectType::kPageTitle:
      return {false, true, false};
    case ObjectType::kChart:
      return {false, false, true};
    case ObjectType::kLog:
    case ObjectType::kModel:
    case ObjectType::kHeading:
      return {false, false, false};
    case ObjectType::kWarning:
    case ObjectType::kNotes:
    case ObjectType::kTree:
    case ObjectType::kOther:
    case ObjectType::kUnknown:
      break;
  }
  return {true, true, true};
}

/// As a reason is, after the object that it is about.
std::string reasonIn(const DocumentObject& object, const std::string& reason) {
  if (object.label.empty()) return localized("in an object without a label, ^1", reason);
  constexpr int kLeastColumns = 7;
  constexpr int kMostColumns = 24;
  const int room = kReasonColumns - displayWidth(reason) - displayWidth("in \"\", ");
  return localized("in \"^1\", ^2",
                   textHead(object.label, std::clamp(room, kLeastColumns, kMostColumns)), reason);
}

/// Why a content cannot be read. The part of the file that it lies in tells less than the object's
/// label, and there is no room for both.
std::string reasonOf(const StoreError& error) { return clauseOf(error.detail()); }

/// Index numbers go on as far as there are numbers.
int nextIndex(int number) {
  return number == std::numeric_limits<int>::max() ? number : number + 1;
}

}  // namespace

ChangeEngine::Task::Task(const ModifyEvent& group, ChangeNotes& notes, const FontCheck& isFont)
    : event(group) {
  if (event.table) table.emplace(*event.table, notes);
  for (const CellsChange& change : event.cells) cells.emplace_back(change, notes, isFont);
  if (event.text) text.emplace(*event.text, notes, isFont);
  if (event.graph) chart.emplace(*event.graph);
}

ChangeEngine::ChangeEngine(const ModifyRequest& request, const FontCheck& isFont) {
  for (const ModifyEvent& event : request.events) tasks_.emplace_back(event, notes_, isFont);
}

void ChangeEngine::apply(Document& document) {
  ChangeLog& log = logs_.emplace_back(document);
  for (const Task& task : tasks_) carryOut(task, log);
}

void ChangeEngine::carryOut(const Task& task, ChangeLog& log) {
  const ModifyEvent& event = task.event;
  int index = event.index ? event.index->start : 0;
  for (DocumentObject* object : selectObjects(log.document(), event, log.gone())) {
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
  if (task.event.properties) changeProperties(*task.event.properties, object, log);
  const bool wantsTable = task.table || !task.cells.empty();
  const bool wantsChart = task.chart && task.chart->changesCharts();
  const Concerned concerned = concernedBy(object.type);
  if ((wantsTable && concerned.byTables) || (task.text && concerned.byTexts) ||
      (wantsChart && concerned.byCharts)) {
    changeContent(task, object, log);
  }
}

void ChangeEngine::changeContent(const Task& task, DocumentObject& object, ChangeLog& log) {
  try {
    tryChangeContent(task, object, log);
  } catch (const ChangeError& error) {
    throw ChangeError(reasonIn(object, error.what()));
  } catch (const StoreError& error) {
    throw ChangeError(reasonIn(object, reasonOf(error)));
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

void ChangeEngine::tryChangeContent(const Task& task, DocumentObject& object, ChangeLog& log) {
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
  if (const auto* table = std::get_if<TableContent>(&content)) {
    if (!task.table && task.cells.empty()) return std::nullopt;
    auto copy = std::make_shared<PivotTable>(**table);
    bool isChanged = task.table && task.table->apply(*copy);
    for (const CellsChanger& cells : task.cells) isChanged = cells.apply(*copy) || isChanged;
    if (isChanged) return TableContent(std::move(copy));
  } else if (const auto* text = std::get_if<TextContent>(&content)) {
    TextContent copy = *text;
    if (task.text && task.text->apply(copy)) return copy;
  } else if (const auto* chart = std::get_if<MediaContent>(&content)) {
    MediaContent copy = *chart;
    if (task.chart && task.chart->apply(copy)) return copy;
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
