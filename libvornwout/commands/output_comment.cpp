// OUTPUT COMMENT: writes lines of text into the output as a one-column table.
//
// It needs no output controller: everything goes through the current procedure.
#include "libvornwout/commands/output_comment_data.h"
#include "libvornwout/frame/blame.h"
#include "libvornwout/frame/command_frame.h"
#include "libvornwout/frame/constants.h"
#include "platform/strings/localized.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

constexpr int kDefaultMinWidth = 100;  // points
constexpr int kDefaultMaxWidth = 200;

const std::string& firstGiven(const std::string& own, const std::string& global) {
  return own.empty() ? global : own;
}

void writeComment(BpProcedure& procedure, const OutputCommentGlobalData& global,
                  const std::vector<lineInfo>& lines) {
  const BpString comment(localizable("Comment"), true);
  BpPivotTable table = procedure.PivotTable(comment, comment, true);
  table.HideTitle();
  BpDimension dimension = table.Dimension(comment, kSortAsMade);
  dimension.Position(kPlaceRows, kFirstInPlace, true, true);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const lineInfo& line = lines[i];
    // Rows count from 0, deliberately, as those of OUTPUT DISPLAY do.
    BpCategory row = dimension.Category(BpNumber(static_cast<double>(i), procedure.Count()));
    row.Cell(BpString(line.text, false));
    const std::string& textColor = firstGiven(line.textColor, global.textColor());
    if (!textColor.empty()) row.TextColor(textColor);
    const std::string& background = firstGiven(line.backgroundColor, global.backgroundColor());
    if (!background.empty()) row.BackgroundColor(background);
    // A line's own BOLD=NO overrides the command's BOLD=YES.
    if (line.boldGiven ? line.bold : global.bold()) row.Bold();
  }
  table.MinDataColumnWidth(global.width().value_or(kDefaultMinWidth));
  table.MaxDataColumnWidth(global.width().value_or(kDefaultMaxWidth));
}

void outputComment() {
  CommandFrame frame({"OUTPUT COMMENT", "Output Comment", "Output Comment", true});
  OutputCommentGlobalData global(frame.grammar());
  OutputCommentLineData line(frame.grammar());
  if (!frame.parse()) return;

  std::vector<lineInfo> lines;
  bool valid = global.populateSpecification(frame.spec(), frame.messages(), lines);
  valid = line.populateSpecification(frame.spec(), frame.messages(), lines) && valid;
  if (!valid) return;
  if (lines.empty()) {
    // A table without rows shows nothing, and the user would not learn why. It is the whole command
    // that lacks something, not the value that was read last.
    blame(nullptr);
    frame.messages().GenericWarning("The comment has no text: nothing was written.");
    return;
  }
  writeComment(frame.procedure(), global, lines);
}

}  // namespace
}  // namespace vornwout

void outcomnt_() { vornwout::outputComment(); }
