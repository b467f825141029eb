#include "libvornwout/frame/command_frame.h"

#include "libvornwout/frame/constants.h"
#include "libvornwout/frame/output_commands.h"
#include "platform/adapter/output_sink.h"

namespace vornwout {
namespace {

/// What every entry passes as its procedure's number.
constexpr int kProcedureNumber = 2;

OutputControllerInterface* outputController() {
  HostAdapter* adapter = GetAdapter();
  return adapter == nullptr ? nullptr : adapter->GetOutputController();
}

CommandDescriptor descriptorFor(const CommandNames& names) {
  if (names.titledDescriptor) return CommandDescriptor(names.command, names.procedure);
  return CommandDescriptor(names.command);
}

void makeMessages(const CommandNames& names, std::optional<ParserMessage>& messages) {
  messages.emplace();
  messages->SetCommandName(names.command);
  messages->SetProcedureTitle(names.procedureTitle);
}

}  // namespace

CommandFrame::CommandFrame(const CommandNames& names)
    : names_(names),
      procedure_(names.procedure, kProcedureNumber),
      controller_(names.asksController ? outputController() : nullptr),
      descriptor_(descriptorFor(names)) {
  if (names.procedureTitle != nullptr && !names.messagesLast) makeMessages(names, messages_);
}

bool CommandFrame::parse() {
  tokens_.emplace(true);
  parser_.emplace(*tokens_, spec_, descriptor_);
  if (names_.messagesLast) makeMessages(names_, lateMessages_);
  const int errors = parser_->getCommandSpecifications();
  // At once, so that the parser's messages are in the log before anything else is produced.
  bp_flushlog_();
  return errors == 0;
}

bool CommandFrame::parseForController() {
  if (!parse()) return false;
  if (controller_ != nullptr) return true;
  OutputCommands::ErrorWarn(kNotImplemented, names_.command, kLevelError);
  return false;
}

}  // namespace vornwout
