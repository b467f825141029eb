// OUTPUT OPEN: asks the output controller to open a document's file.
#include "libvornwout/commands/document_file.h"
#include "libvornwout/frame/command_frame.h"
#include "libvornwout/frame/constants.h"
#include "libvornwout/frame/output_request.h"
#include "libvornwout/frame/yes_or_no.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

void declareGrammar(CommandDescriptor& grammar) {
  SubComDescriptor main("", UPSpecTypes::kKeywords, true, false);
  main.addParamDesc(kKeywordFile, UPSpecTypes::kRawTokens, true, true);
  main.addParamDesc(kKeywordName, UPSpecTypes::kDeclaredValue, false, true);
  main.addParamDesc(yesOrNo(kKeywordLock));
  main.addParamDesc(yesOrNo(kKeywordMinimized));
  main.addParamDesc(passwordDescriptor());
  grammar.addSubComDesc(main);
}

void outputOpen() {
  CommandFrame frame({"OUTPUT OPEN", "Output Open", "Output Open"});
  declareGrammar(frame.grammar());
  if (!frame.parseForController()) return;

  const SubComObj& main = *frame.spec().getSubComObj("");
  FileRequest request;
  const auto path = readDocumentPath(*main.getParamObj(kKeywordFile), frame.messages());
  if (!path) return;
  request.path = *path;
  // A document is opened locked unless LOCK=NO says otherwise.
  const ParamObj* lock = main.getParamObj(kKeywordLock);
  const bool unlocked = lock != nullptr && lock->isStringValueCase(kNo);
  request.lock = unlocked ? OutputDocumentLock::kUnlocked : OutputDocumentLock::kLocked;
  const ParamObj* minimized = main.getParamObj(kKeywordMinimized);
  const bool isMinimized = minimized != nullptr && !minimized->isStringValueCase(kNo);
  request.minimized = isMinimized ? OutputDocumentMinimized::kYes : OutputDocumentMinimized::kNo;
  // The type is never given: the request has a field for it, the grammar deliberately no keyword.
  request.type = OutputDocumentType::kUnspecified;
  if (const ParamObj* password = main.getParamObj(kKeywordPassword)) {
    request.password = readPassword(*password);
  }
  request.encryptPassword = OutputDocumentEncryptPW::kNotApplicable;
  request.storeModel = YesNoEnum::kNo;
  // Read last, so that what is said of the name points at it.
  if (const ParamObj* name = main.getParamObj(kKeywordName)) name->getStringGeneric(request.name);
  if (!checkNameLength(request.name)) return;
  sendFileRequest(frame.controller(), OutputControllerCommand::kOpen, request);
}

}  // namespace
}  // namespace vornwout

void outopen_() { vornwout::outputOpen(); }
