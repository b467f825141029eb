// OUTPUT DISPLAY: lists the open output documents in a table and marks the active one.
//
// It makes no ParserMessage: the parser reports syntax errors by its own means.
#include "libvornwout/frame/command_frame.h"
#include "libvornwout/frame/constants.h"
#include "libvornwout/frame/output_commands.h"
#include "libvornwout/frame/output_request.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

constexpr int kMinColumnWidth = 150;  // points
constexpr int kMaxColumnWidth = 300;

void showDocuments(BpProcedure& procedure, const VornwMsgOutputControllerResponse& response) {
  const BpString title(kOutputDocument, true);
  BpPivotTable table = procedure.PivotTable(title, title, false);
  table.MinDataColumnWidth(kMinColumnWidth);
  table.MaxDataColumnWidth(kMaxColumnWidth);
  BpDimension names = table.Dimension(BpString("Name", true), kSortAsMade);
  names.Position(kPlaceRows, kFirstInPlace, true, true);
  for (int i = 0; i < response.GetOutputDocumentCount(); ++i) {
    const OutputDocumentItem* document = response.GetOutputDocumentItem(i);
    if (document == nullptr) continue;
    // The controller's own index, deliberately not renumbered from 1.
    BpCategory row = names.Category(BpNumber(i, procedure.Count()));
    // A name is the user's text; "(unnamed)" is ours, as the note is, and may be translated.
    row.Cell(document->name.empty() ? BpString("(unnamed)", true)
                                    : BpString(document->name.view(), false));
    if (document->active) {
      row.CellNote(BpAnnotation(BpString("Active output document", true).Replicate()));
    }
  }
}

void outputDisplay() {
  CommandFrame frame({"OUTPUT DISPLAY", nullptr, "Output Display"});
  if (!frame.parseForController()) return;

  OutputExchange exchange(OutputControllerCommand::kDisplay, "",
                          OutputDocumentMinimized::kNotApplicable);
  if (!exchange.send(frame.controller())) return;
  if (exchange.response().GetOutputDocumentCount() == 0) {
    return OutputCommands::ErrorWarn0(kNoDocumentsOpen, kLevelWarning);
  }
  showDocuments(frame.procedure(), exchange.response());
}

}  // namespace
}  // namespace vornwout

void outdisp_() { vornwout::outputDisplay(); }
