// OUTPUT SAVE: asks the output controller to save a document to a file.
//
// The length of the document's name is deliberately not checked here, unlike in OUTPUT NEW, OPEN
// and NAME.
#include "libvornwout/commands/document_file.h"
#include "libvornwout/frame/command_frame.h"
#include "libvornwout/frame/constants.h"
#include "libvornwout/frame/output_commands.h"
#include "libvornwout/frame/output_request.h"
#include "libvornwout/frame/yes_or_no.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

constexpr std::size_t kLongestPlainPassword = 10;  // bytes
constexpr std::size_t kLongestEncryptedPassword = 20;

void declareGrammar(CommandDescriptor& grammar) {
  SubComDescriptor main("", UPSpecTypes::kKeywords, true, false);
  main.addParamDesc(kKeywordOutfile, UPSpecTypes::kRawTokens, true, true);
  main.addParamDesc(kKeywordName, UPSpecTypes::kRawTokens, false, true);
  ParamDescriptor type(kKeywordType, UPSpecTypes::kDeclaredValue, false, true);
  type.addStringValue(kQxv);
  type.addStringValue(kQxw);
  main.addParamDesc(type);
  main.addParamDesc(yesOrNo(kKeywordLock));
  main.addParamDesc(yesOrNo(kKeywordStoreModel));
  grammar.addSubComDesc(main);
  SubComDescriptor protect(kPassprotect, UPSpecTypes::kKeywords, false, false);
  protect.addParamDesc(passwordDescriptor());
  protect.addParamDesc(yesOrNo(kKeywordEncryptedPw));
  grammar.addSubComDesc(protect);
}

/// False after reporting a value that is neither a name nor the asterisk of the active document.
bool readName(const SubComObj& main, const ParserMessage& messages, std::string& name) {
  const ParamObj* param = main.getParamObj(kKeywordName);
  if (param == nullptr || param->getStringGeneric(name)) return true;
  if (param->isOperatorValue(static_cast<int>(OperatorCode::kAsterisk))) return true;
  messages.WrongValueType(kKeywordName, "");
  return false;
}

OutputDocumentType readType(const SubComObj& main) {
  const ParamObj* type = main.getParamObj(kKeywordType);
  if (type == nullptr) return OutputDocumentType::kUnspecified;
  return type->isStringValueCase(kQxv) ? OutputDocumentType::kQxv : OutputDocumentType::kQxw;
}

OutputDocumentLock readLock(const SubComObj& main) {
  const ParamObj* lock = main.getParamObj(kKeywordLock);
  if (lock == nullptr) return OutputDocumentLock::kUnspecified;
  return lock->isStringValueCase(kYes) ? OutputDocumentLock::kLocked
                                       : OutputDocumentLock::kUnlocked;
}

YesNoEnum readStoreModel(const SubComObj& main) {
  const ParamObj* store = main.getParamObj(kKeywordStoreModel);
  return store != nullptr && store->isStringValueCase(kNo) ? YesNoEnum::kNo : YesNoEnum::kYes;
}

/// False after reporting a password longer than `longest` bytes.
bool checkLength(const std::string& password, std::size_t longest) {
  if (password.size() <= longest) return true;
  // The text names 10 bytes for encrypted passwords too, whose limit is 20; that is deliberate.
  OutputCommands::errorWarnSecret(kPasswordTooLong, password.c_str(), kLevelError);
  return false;
}

/// Reads PASSPROTECT; false after reporting a password that is refused.
bool readProtection(const SubComObj& protect, FileRequest& request) {
  bool accepted = true;
  if (const ParamObj* password = protect.getParamObj(kKeywordPassword)) {
    request.password = readPassword(*password);
    if (request.password.empty()) {
      OutputCommands::ErrorWarn0(kPasswordEmpty, kLevelError);
      accepted = false;
    }
  }
  const ParamObj* encrypted = protect.getParamObj(kKeywordEncryptedPw);
  // Without ENCRYPTEDPW the length is deliberately not checked: the password goes as it was
  // written.
  if (encrypted == nullptr) return accepted;
  const std::string value = encrypted->getUpStringToken();
  if (value == kYes) {
    request.encryptPassword = OutputDocumentEncryptPW::kYes;
    return checkLength(request.password, kLongestEncryptedPassword) && accepted;
  }
  return (value != kNo || checkLength(request.password, kLongestPlainPassword)) && accepted;
}

void outputSave() {
  CommandFrame frame({"OUTPUT SAVE", "Output Save", "Output Save"});
  declareGrammar(frame.grammar());
  if (!frame.parseForController()) return;

  const SubComObj& main = *frame.spec().getSubComObj("");
  FileRequest request;
  const auto path = readDocumentPath(*main.getParamObj(kKeywordOutfile), frame.messages());
  bool maySend = path.has_value();
  request.path = path.value_or("");
  maySend = readName(main, frame.messages(), request.name) && maySend;
  request.type = readType(main);
  request.lock = readLock(main);
  request.storeModel = readStoreModel(main);
  request.encryptPassword = OutputDocumentEncryptPW::kNo;
  if (const SubComObj* protect = frame.spec().getSubComObj(kPassprotect)) {
    maySend = readProtection(*protect, request) && maySend;
  }
  if (maySend) sendFileRequest(frame.controller(), OutputControllerCommand::kSave, request);
}

}  // namespace
}  // namespace vornwout

void outsave_() { vornwout::outputSave(); }
