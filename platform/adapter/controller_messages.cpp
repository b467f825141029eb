#include "platform/adapter/controller_messages.h"

#include <utility>

namespace vornwout {

VornwMsgOutputControllerRequest::VornwMsgOutputControllerRequest(int id,
                                                                 OutputControllerCommand command,
                                                                 const char* name, const char* text,
                                                                 OutputDocumentMinimized minimized)
    : longForm_(false),
      id_(id),
      command_(command),
      name_(name),
      text_(text),
      minimized_(minimized) {}

VornwMsgOutputControllerRequest::VornwMsgOutputControllerRequest(
    int id, OutputControllerCommand command, const char* name, const char* path,
    OutputDocumentLock lock, OutputDocumentMinimized minimized, OutputDocumentType type,
    const char* password, OutputDocumentEncryptPW encryptPassword, YesNoEnum storeModel)
    : longForm_(true),
      id_(id),
      command_(command),
      name_(name),
      text_(path),
      minimized_(minimized),
      lock_(lock),
      type_(type),
      password_(password),
      encryptPassword_(encryptPassword),
      storeModel_(storeModel) {}

const OutputDocumentItem* VornwMsgOutputControllerResponse::GetOutputDocumentItem(int index) const {
  if (index < 0 || index >= GetOutputDocumentCount()) return nullptr;
  const auto& item = documents_[static_cast<std::size_t>(index)];
  return item ? &*item : nullptr;
}

void VornwMsgOutputControllerResponse::setError(int severity, VUString message, VUString argument) {
  severity_ = severity;
  message_ = std::move(message);
  argument_ = std::move(argument);
}

void VornwMsgOutputControllerResponse::addDocument(std::optional<OutputDocumentItem> item) {
  documents_.push_back(std::move(item));
}

}  // namespace vornwout
