// OUTPUT ACTIVATE: makes an open output document the active one.
//
// The length of the name is deliberately not checked, unlike in OUTPUT NEW and OUTPUT NAME: an
// over-long name goes to the output controller as it is.
#include "libvornwout/commands/name_walk.h"
#include "libvornwout/frame/command_frame.h"
#include "libvornwout/frame/constants.h"
#include "libvornwout/frame/output_request.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

void outputActivate() {
  CommandFrame frame({"OUTPUT ACTIVATE", "OUTPUT ACTIVATE", "Output Activate"});
  frame.grammar().addSubComDesc(SubComDescriptor("", UPSpecTypes::kTokenList, true, false));
  if (!frame.parseForController()) return;

  const auto document = readNamedDocument(frame.spec(), BareNames::kPlain);
  if (!document) {
    frame.messages().WrongValueType(kKeywordName, "");
    return;
  }
  sendShortRequest(frame.controller(), OutputControllerCommand::kActivate, document->name,
                   document->minimized);
}

}  // namespace
}  // namespace vornwout

void outactiv8_() { vornwout::outputActivate(); }
