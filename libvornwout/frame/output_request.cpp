#include "libvornwout/frame/output_request.h"

#include <string_view>
#include <utility>

#include "libvornwout/frame/constants.h"
#include "libvornwout/frame/output_commands.h"
#include "libvornwout/frame/request_counter.h"

namespace vornwout {
namespace {

constexpr std::size_t kLongestName = 64;  // bytes of the current encoding, not characters

constinit RequestCounter requestCounter;

FileRequest withName(std::string name) {
  FileRequest request;
  request.name = std::move(name);
  return request;
}

}  // namespace

int NextOutputRequestId() { return requestCounter.next(); }

OutputExchange::OutputExchange(OutputControllerCommand command, std::string name,
                               OutputDocumentMinimized minimized)
    : file_(withName(std::move(name))),
      request_(NextOutputRequestId(), command, file_.name.c_str(), "", minimized) {}

OutputExchange::OutputExchange(OutputControllerCommand command, FileRequest file)
    : file_(std::move(file)),
      request_(NextOutputRequestId(), command, file_.name.c_str(), file_.path.c_str(), file_.lock,
               file_.minimized, file_.type, file_.password.c_str(), file_.encryptPassword,
               file_.storeModel) {}

bool OutputExchange::send(OutputControllerInterface& controller) {
  if (controller.SendRequest(request_, response_)) return true;
  // A host may say back what it was told, the password included.
  const std::string_view argument = response_.GetArgumentString().view();
  const auto report = !file_.password.empty() && argument == file_.password
                          ? &OutputCommands::errorWarnSecret
                          : &OutputCommands::ErrorWarn;
  report(response_.GetMsgString(), response_.GetArgumentString(), response_.GetErrorSeverity());
  return false;
}

bool sendShortRequest(OutputControllerInterface& controller, OutputControllerCommand command,
                      const std::string& name, OutputDocumentMinimized minimized) {
  return OutputExchange(command, name, minimized).send(controller);
}

bool sendFileRequest(OutputControllerInterface& controller, OutputControllerCommand command,
                     const FileRequest& file) {
  return OutputExchange(command, file).send(controller);
}

bool checkNameLength(const std::string& name) {
  if (name.size() <= kLongestName) return true;
  OutputCommands::ErrorWarn(kNameTooLong, name.c_str(), kLevelError);
  return false;
}

}  // namespace vornwout
