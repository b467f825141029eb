// Holds the tables of a procedure back until the ones begun before them are finished.
//
// A command may have two tables open at a time and finish the later one first; readers expect them
// in the order in which they were begun. Everything here runs on the command thread.
#pragma once

#include <deque>
#include <memory>

#include "platform/pivot/pivot_table.h"

namespace vornwout {

/// The tables of one procedure, in the order in which they were begun.
///
/// Delivery calls the sinks, which may throw (for lack of memory, say): a table whose delivery
/// failed is not delivered again, the ones behind it wait for the next call.
class TableQueue {
 public:
  using Ticket = int;

  /// Takes a place in the order.
  Ticket begin();
  /// Delivers the table, or keeps it while an earlier one is open.
  void finish(Ticket ticket, std::shared_ptr<const PivotTable> table);
  /// Gives the place up, and drops every finished table that is still waiting.
  void abandon(Ticket ticket);
  /// Drops every finished table that is still waiting.
  void dropWaiting();
  /// Delivers what is waiting, in order, and waits no more: a table that is still open is delivered
  /// when it is finished.
  void close();

 private:
  struct Place {
    Ticket ticket = 0;
    std::shared_ptr<const PivotTable> finished;  ///< null while the table is open
  };

  void deliver();

  std::deque<Place> places_;
  Ticket next_ = 0;
  bool closed_ = false;
};

}  // namespace vornwout
