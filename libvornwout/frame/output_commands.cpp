#include "libvornwout/frame/output_commands.h"

#include <string>

#include "platform/pivot/bp_procedure.h"

namespace vornwout {
namespace {

/// How every message of this library is shown.
constexpr int kShow = 2;

void reportWithArgument(const char* text, const BpString& argument, int level) {
  BpComposite message(text, true);
  message.Add(argument);
  message.Finish();
  BpError(message, kShow, level);
}

}  // namespace

void OutputCommands::ErrorWarn0(const char* text, int level) {
  const std::string message(text);
  BpError(BpString(message, true), kShow, level);
}

void OutputCommands::ErrorWarn(const char* text, const char* argument, int level) {
  if (argument == nullptr || *argument == '\0') return ErrorWarn0(text, level);
  reportWithArgument(text, BpString(argument, false), level);
}

void OutputCommands::errorWarnSecret(const char* text, const char* argument, int level) {
  reportWithArgument(text, BpString::secret(argument), level);
}

}  // namespace vornwout
