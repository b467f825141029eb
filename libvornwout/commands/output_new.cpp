// OUTPUT NEW: asks the output controller for a new, empty document.
#include "libvornwout/frame/command_frame.h"
#include "libvornwout/frame/constants.h"
#include "libvornwout/frame/output_request.h"
#include "libvornwout/frame/yes_or_no.h"
#include "platform/files/document_name.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

void declareGrammar(CommandDescriptor& grammar) {
  SubComDescriptor main("", UPSpecTypes::kKeywords, false, false);
  ParamDescriptor type(kKeywordType, UPSpecTypes::kDeclaredValue, false, true);
  type.addStringValue(kViewer);
  type.addStringValue(kDraft);
  main.addParamDesc(type);
  main.addParamDesc(kKeywordName, UPSpecTypes::kDeclaredValue, false, true);
  main.addParamDesc(yesOrNo(kKeywordMinimized));
  grammar.addSubComDesc(main);
}

void outputNew() {
  CommandFrame frame({"OUTPUT NEW", "OUTPUT NEW", "Output New"});
  declareGrammar(frame.grammar());
  if (!frame.parseForController()) return;

  std::string name;
  auto minimized = OutputDocumentMinimized::kNo;
  if (const SubComObj* main = frame.spec().getSubComObj("")) {
    // TYPE is deliberately not read: both its values, and none, make the same kind of document, and
    // the request has no field for it.
    if (const ParamObj* param = main->getParamObj(kKeywordMinimized)) {
      if (!param->isStringValueCase(kNo)) minimized = OutputDocumentMinimized::kYes;
    }
    // Read last, so that what is said of the name points at it.
    if (const ParamObj* param = main->getParamObj(kKeywordName)) param->getStringGeneric(name);
  }
  if (!checkNameLength(name)) return;
  if (!name.empty() && ValidateVORNNameCheckLastChar(name.c_str()) != 0) {
    frame.messages().WrongValueType(kKeywordName, "");
    return;
  }
  sendShortRequest(frame.controller(), OutputControllerCommand::kNew, name, minimized);
}

}  // namespace
}  // namespace vornwout

void outnew_() { vornwout::outputNew(); }
