#include "platform/pivot/table_queue.h"

#include <algorithm>
#include <utility>

#include "platform/adapter/output_sink.h"

namespace vornwout {

TableQueue::Ticket TableQueue::begin() {
  places_.push_back(Place{next_, nullptr});
  return next_++;
}

void TableQueue::finish(Ticket ticket, std::shared_ptr<const PivotTable> table) {
  for (Place& place : places_) {
    if (place.ticket == ticket) place.finished = std::move(table);
  }
  deliver();
}

void TableQueue::abandon(Ticket ticket) {
  std::erase_if(places_, [ticket](const Place& place) {
    return place.finished != nullptr || place.ticket == ticket;
  });
}

void TableQueue::dropWaiting() {
  std::erase_if(places_, [](const Place& place) { return place.finished != nullptr; });
}

void TableQueue::close() {
  closed_ = true;
  deliver();
}

void TableQueue::deliver() {
  for (;;) {
    const auto next = closed_ ? std::find_if(places_.begin(), places_.end(),
                                             [](const Place& place) { return place.finished; })
                              : places_.begin();
    if (next == places_.end() || next->finished == nullptr) return;
    const std::shared_ptr<const PivotTable> table = std::move(next->finished);
    places_.erase(next);
    for (OutputSink* sink : outputSinks()) sink->table(table);
  }
}

}  // namespace vornwout
