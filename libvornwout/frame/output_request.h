// The exchange with the host's output controller: request numbers, the request, and what a failing
// response says.
#pragma once

#include <string>

#include "platform/adapter/host_adapter.h"

namespace vornwout {

/// The number of the next request: 1, 2, ... up to 2000000000, then 1 again. Process-wide, the one
/// thing that outlives a command.
int NextOutputRequestId();

/// The values of a long request, of OUTPUT OPEN and OUTPUT SAVE.
struct FileRequest {
  std::string name;
  std::string path;
  OutputDocumentLock lock = OutputDocumentLock::kUnspecified;
  OutputDocumentMinimized minimized = OutputDocumentMinimized::kNotApplicable;
  OutputDocumentType type = OutputDocumentType::kUnspecified;
  std::string password;
  OutputDocumentEncryptPW encryptPassword = OutputDocumentEncryptPW::kNotApplicable;
  YesNoEnum storeModel = YesNoEnum::kNo;
};

/// One exchange, made when all checks have passed and used once.
///
/// The members stand in the order of the exchange: the texts that the request points into, the
/// request with its number, the response. They go in reverse.
class OutputExchange {
 public:
  OutputExchange(OutputControllerCommand command, std::string name,
                 OutputDocumentMinimized minimized);
  OutputExchange(OutputControllerCommand command, FileRequest file);
  OutputExchange(const OutputExchange&) = delete;
  OutputExchange& operator=(const OutputExchange&) = delete;

  /// Sends the request; on failure reports the response's message and returns false.
  bool send(OutputControllerInterface& controller);
  /// What the controller answered.
  const VornwMsgOutputControllerResponse& response() const { return response_; }

 private:
  FileRequest file_;
  VornwMsgOutputControllerRequest request_;
  VornwMsgOutputControllerResponse response_;
};

/// An exchange for commands that have nothing to read from the response.
bool sendShortRequest(OutputControllerInterface& controller, OutputControllerCommand command,
                      const std::string& name, OutputDocumentMinimized minimized);

/// The same with a long request.
bool sendFileRequest(OutputControllerInterface& controller, OutputControllerCommand command,
                     const FileRequest& file);

/// False after reporting that a document name is longer than 64 bytes.
bool checkNameLength(const std::string& name);

}  // namespace vornwout
