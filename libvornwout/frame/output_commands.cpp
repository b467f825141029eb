#include "libvornwout/frame/output_commands.h"

#include <string>

#include "platform/pivot/bp_procedure.h"

namespace vornwout {
namespace {

/// How every message of this library is shown.
constexpr int kShow = 2;

}  // namespace

void OutputCommands::ErrorWarn0(const char* text, int level) {
  const std::string message(text);
  BpError(BpString(message, true), kShow, level);
}

void OutputCommands::ErrorWarn(const char* text, const char* argument, int level) {
  if (argument == nullptr || *argument == '\0') return ErrorWarn0(text, level);
  BpComposite message(text, true);
  message.Add(BpString(argument, false));
  message.Finish();
  BpError(message, kShow, level);
}

}  // namespace vornwout
