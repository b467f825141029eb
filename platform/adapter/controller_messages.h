// The request and response messages between a document command and the host's output controller.
//
// A command builds one request and one empty response, passes both to
// OutputControllerInterface::SendRequest, and reads the response. All texts are in the current
// encoding; the const char* arguments must live until the request is destroyed (they are not
// copied, for the exchange is synchronous).
#pragma once

#include <optional>
#include <vector>

#include "platform/adapter/vu_string.h"

namespace vornwout {

/// What is asked of the output controller. The values are part of the interface.
enum class OutputControllerCommand {
  kActivate = 0,
  kClose = 1,
  kDisplay = 2,
  kName = 3,
  kNew = 4,
  kOpen = 5,
  kSave = 6,
};

enum class OutputDocumentMinimized { kNo = 0, kYes = 1, kNotApplicable = 2 };
enum class OutputDocumentLock { kUnlocked = 0, kLocked = 1, kUnspecified = 2 };
enum class OutputDocumentType { kQxv = 0, kQxw = 1, kUnspecified = 2 };
enum class OutputDocumentEncryptPW { kNo = 0, kYes = 1, kNotApplicable = 2 };
enum class YesNoEnum { kNo = 0, kYes = 1 };

/// One request. The short form serves NEW, NAME, ACTIVATE, CLOSE and DISPLAY, the long form OPEN
/// and SAVE.
class VornwMsgOutputControllerRequest {
 public:
  /// Short form. `text` is the empty string in every request of this library.
  VornwMsgOutputControllerRequest(int id, OutputControllerCommand command, const char* name,
                                  const char* text, OutputDocumentMinimized minimized);

  /// Long form.
  VornwMsgOutputControllerRequest(int id, OutputControllerCommand command, const char* name,
                                  const char* path, OutputDocumentLock lock,
                                  OutputDocumentMinimized minimized, OutputDocumentType type,
                                  const char* password, OutputDocumentEncryptPW encryptPassword,
                                  YesNoEnum storeModel);

  bool isLongForm() const { return longForm_; }
  int getId() const { return id_; }
  OutputControllerCommand getCommand() const { return command_; }
  const char* getName() const { return name_; }
  /// The second text of the short form, the file path of the long form.
  const char* getText() const { return text_; }
  OutputDocumentMinimized getMinimized() const { return minimized_; }
  /// The rest is meaningful in the long form only.
  OutputDocumentLock getLock() const { return lock_; }
  OutputDocumentType getType() const { return type_; }
  const char* getPassword() const { return password_; }
  OutputDocumentEncryptPW getEncryptPassword() const { return encryptPassword_; }
  YesNoEnum getStoreModel() const { return storeModel_; }

 private:
  bool longForm_;
  int id_;
  OutputControllerCommand command_;
  const char* name_;
  const char* text_;
  OutputDocumentMinimized minimized_;
  OutputDocumentLock lock_ = OutputDocumentLock::kUnspecified;
  OutputDocumentType type_ = OutputDocumentType::kUnspecified;
  const char* password_ = "";
  OutputDocumentEncryptPW encryptPassword_ = OutputDocumentEncryptPW::kNotApplicable;
  YesNoEnum storeModel_ = YesNoEnum::kNo;
};

/// One open document in a response.
struct OutputDocumentItem {
  VUString name;  ///< empty for an unnamed document
  bool active = false;
};

/// The answer, default-constructed by the command and filled by the output controller.
class VornwMsgOutputControllerResponse {
 public:
  /// The error's level, 2 for a warning, 3 for an error; passed on as it comes.
  int GetErrorSeverity() const { return severity_; }
  /// The error's text; may hold "^1".
  const VUString& GetMsgString() const { return message_; }
  /// What "^1" stands for; may be empty.
  const VUString& GetArgumentString() const { return argument_; }

  int GetOutputDocumentCount() const { return static_cast<int>(documents_.size()); }
  /// The entry at `index`, counted from 0; null where the controller left a gap or out of range.
  const OutputDocumentItem* GetOutputDocumentItem(int index) const;

  void setError(int severity, VUString message, VUString argument);
  /// Appends an entry; an empty optional is a gap.
  void addDocument(std::optional<OutputDocumentItem> item);

 private:
  int severity_ = 0;
  VUString message_;
  VUString argument_;
  std::vector<std::optional<OutputDocumentItem>> documents_;
};

}  // namespace vornwout
