#include "platform/pivot/bp_pivot_table.h"

#include <exception>
#include <utility>

#include "platform/pivot/pivot_builder.h"
#include "platform/pivot/table_queue.h"
#include "platform/text/encoding.h"

namespace vornwout {

void BpCategory::Cell(const BpCellText& value) {
  builder_->cell(dimension_, node_).value = value.data();
}

void BpCategory::CellNote(const BpAnnotation& note) {
  builder_->cell(dimension_, node_).notes.push_back(note.data());
}

void BpCategory::TextColor(const std::string& color) {
  builder_->cell(dimension_, node_).look.edit([&](TextLook& look) {
    look.textColor = currentToUtf8(color);
  });
}

void BpCategory::BackgroundColor(const std::string& color) {
  builder_->cell(dimension_, node_).look.edit([&](TextLook& look) {
    look.backgroundColor = currentToUtf8(color);
  });
}

void BpCategory::Bold() {
  builder_->cell(dimension_, node_).look.edit([](TextLook& look) { look.bold = true; });
}

BpGroup BpGroup::Group(const BpCellText& label, bool /*showLabel*/, int /*sort*/) {
  return {*builder_, dimension_, builder_->group(dimension_, node_, label.data())};
}

BpCategory BpGroup::Category(const BpCellText& label) {
  return {*builder_, dimension_, builder_->category(dimension_, node_, label.data())};
}

void BpDimension::Position(int place, int index, bool hideLabel, bool hideCategories) {
  builder_->table().dimensions[static_cast<std::size_t>(dimension_)].position =
      PivotPosition{place, index, hideLabel, hideCategories};
}

BpPivotTable::BpPivotTable(std::shared_ptr<TableQueue> queue, std::unique_ptr<PivotBuilder> builder)
    : queue_(std::move(queue)),
      builder_(std::move(builder)),
      ticket_(queue_->begin()),
      exceptions_(std::uncaught_exceptions()) {}

BpPivotTable::BpPivotTable(BpPivotTable&& other) noexcept = default;

BpPivotTable::~BpPivotTable() noexcept(false) {
  if (builder_ == nullptr) return;
  if (std::uncaught_exceptions() > exceptions_) {
    queue_->abandon(ticket_);
    return;
  }
  std::shared_ptr<const PivotTable> table;
  try {
    table = builder_->finish();
  } catch (...) {
    // An open place would hold back every later table.
    queue_->abandon(ticket_);
    throw;
  }
  queue_->finish(ticket_, std::move(table));
}

void BpPivotTable::MinDataColumnWidth(int width) { builder_->table().minDataColumnWidth = width; }

void BpPivotTable::MaxDataColumnWidth(int width) { builder_->table().maxDataColumnWidth = width; }

void BpPivotTable::HideTitle() { builder_->table().titleHidden = true; }

BpDimension BpPivotTable::Dimension(const BpCellText& label, int sort) {
  return {*builder_, builder_->dimension(label.data(), sort)};
}

}  // namespace vornwout
