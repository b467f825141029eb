#include "platform/pivot/bp_procedure.h"

#include <exception>
#include <utility>

#include "platform/pivot/pivot_builder.h"
#include "platform/pivot/table_queue.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

BpProcedure* innermost = nullptr;

std::unique_ptr<PivotBuilder> newTable(const BpCellText& title, const BpCellText& subtype) {
  return std::make_unique<PivotBuilder>(title.data(), subtype.data());
}

}  // namespace

BpHeading::BpHeading() : queue_(std::make_shared<TableQueue>()) {}

BpHeading::~BpHeading() = default;

BpPivotTable BpHeading::PivotTable(const BpCellText& title, const BpCellText& subtype) {
  return {queue_, newTable(title, subtype)};
}

BpPivotTable BpHeading::PivotTable(const BpCellText& title, const BpCellText& subtype, bool flag) {
  std::unique_ptr<PivotBuilder> builder = newTable(title, subtype);
  builder->table().flag = flag;
  return {queue_, std::move(builder)};
}

BpProcedure::BpProcedure(const std::string& name, int number)
    : record_{currentToUtf8(name), number},
      outer_(innermost),
      exceptions_(std::uncaught_exceptions()) {
  open();
  innermost = this;
}

BpProcedure::~BpProcedure() noexcept(false) {
  innermost = outer_;
  if (std::uncaught_exceptions() > exceptions_) {
    queue_->dropWaiting();
    close();
    return;
  }
  try {
    queue_->close();
  } catch (...) {
    close();
    throw;
  }
  close();
}

BpProcedure* BpProcedure::current() { return innermost; }

void BpProcedure::open() {
  std::size_t told = 0;
  const std::vector<OutputSink*>& sinks = outputSinks();
  try {
    for (; told < sinks.size(); ++told) sinks[told]->procedureOpened(record_);
  } catch (...) {
    while (told > 0) sinks[--told]->procedureClosed(record_);
    throw;
  }
}

void BpProcedure::close() {
  for (OutputSink* sink : outputSinks()) sink->procedureClosed(record_);
}

void AddNotes(int number, const BpCellText& label, const BpCellText& value) {
  const NoteRecord record{number, label.data(), value.data()};
  for (OutputSink* sink : outputSinks()) sink->note(record);
}

void BpError(const BpCellText& message, int show, int level) {
  const OutputMessageRecord record{message.data(), show, level};
  for (OutputSink* sink : outputSinks()) sink->outputMessage(record);
}

}  // namespace vornwout
