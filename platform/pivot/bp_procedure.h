// A procedure: the bracket around the output of one command, and what a command reports besides
// tables.
//
// A BpProcedure is a local of the command; procedures may nest. Notes and messages go to the output
// sinks at once and need no procedure.
#pragma once

#include <memory>
#include <string>

#include "platform/adapter/output_sink.h"
#include "platform/pivot/bp_cell_text.h"
#include "platform/pivot/bp_pivot_table.h"

namespace vornwout {

/// Where tables are begun.
class BpHeading {
 public:
  BpHeading(const BpHeading&) = delete;
  BpHeading& operator=(const BpHeading&) = delete;

  /// Begins a table; it is finished when the handle is destroyed.
  BpPivotTable PivotTable(const BpCellText& title, const BpCellText& subtype);
  /// The same with the interface's flag, which is kept with the table.
  BpPivotTable PivotTable(const BpCellText& title, const BpCellText& subtype, bool flag);

 protected:
  BpHeading();
  ~BpHeading();

  std::shared_ptr<TableQueue> queue_;
};

/// Opens a procedure while it lives.
///
/// The sinks are told of its opening and closing; a sink that throws at the opening makes the
/// construction fail, and the ones told before are told of the closing. The destructor delivers the
/// tables that are still waiting, which may throw: it is noexcept(false), and the procedure is
/// closed nevertheless. While an exception passes it drops them instead; a sink must not throw from
/// procedureClosed then.
class BpProcedure : public BpHeading {
 public:
  BpProcedure(const std::string& name, int number);
  ~BpProcedure() noexcept(false);

  /// The format of counts.
  BpFormatSpec Count() const { return BpFormatSpec{BpFormatSpec::Type::kCount}; }

  /// The innermost open procedure, null when there is none.
  static BpProcedure* current();

 private:
  void open();
  void close();

  ProcedureRecord record_;
  BpProcedure* outer_;
  int exceptions_;  ///< in flight when the procedure was opened
};

/// Adds a line to the notes.
void AddNotes(int number, const BpCellText& label, const BpCellText& value);

/// How a message is shown, and how bad it is: 2 is a warning, 3 an error. A host may give others,
/// which are passed on.
using BpErrorShow = int;
using BpErrorLevel = int;

/// Writes a message into the output.
void BpError(const BpCellText& message, BpErrorShow show, BpErrorLevel level);

}  // namespace vornwout
