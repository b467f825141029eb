// OUTPUT NAME: gives the active output document a name.
//
// The name is not validated here, as OUTPUT NEW does: whether it is acceptable is the output
// controller's decision. The asymmetry is deliberate.
#include "libvornwout/commands/name_walk.h"
#include "libvornwout/frame/command_frame.h"
#include "libvornwout/frame/constants.h"
#include "libvornwout/frame/output_request.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

void outputName() {
  CommandFrame frame({"OUTPUT NAME", "OUTPUT NAME", "Output Name"});
  frame.grammar().addSubComDesc(SubComDescriptor("", UPSpecTypes::kTokenList, true, false));
  if (!frame.parseForController()) return;

  const auto document = readNamedDocument(frame.spec(), BareNames::kWithEqualsSign);
  if (!document) {
    frame.messages().WrongValueType(kKeywordName, "");
    return;
  }
  if (!checkNameLength(document->name)) return;
  sendShortRequest(frame.controller(), OutputControllerCommand::kName, document->name,
                   document->minimized);
}

}  // namespace
}  // namespace vornwout

void outname_() { vornwout::outputName(); }
