#include "libvornwout/frame/output_commands.h"

#include <string>

#include "libvornwout/frame/constants.h"
#include "platform/pivot/bp_procedure.h"

namespace vornwout {
namespace {

void reportWithArgument(const char* text, const BpString& argument, int level) {
  BpComposite message(text, true);
  message.Add(argument);
  message.Finish();
  BpError(message, kShowMessage, level);
}

}  // namespace

void OutputCommands::ErrorWarn0(const char* text, int level) {
  const std::string message(text);
  BpError(BpString(message, true), kShowMessage, level);
}

void OutputCommands::ErrorWarn(const char* text, const char* argument, int level) {
  if (argument == nullptr || *argument == '\0') return ErrorWarn0(text, level);
  reportWithArgument(text, BpString(argument, false), level);
}

void OutputCommands::errorWarnAlways(const char* text, const std::string& argument, int level,
                                     bool translatable) {
  reportWithArgument(text, BpString(argument, translatable), level);
}

void OutputCommands::errorWarnSecret(const char* text, const char* argument, int level) {
  reportWithArgument(text, BpString::secret(argument), level);
}

}  // namespace vornwout
