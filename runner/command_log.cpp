#include "runner/command_log.h"

#include "platform/parser/hidden_text.h"
#include "platform/parser/secret_tokens.h"
#include "platform/text/encoding.h"

namespace vornwout {

std::string commandLogText(const TokenizedCommand& command, const CommandDescriptor* grammar) {
  const std::string_view source = command.source();
  const auto begin = static_cast<std::size_t>(source.data() - command.jobText().data());
  return currentToUtf8(
      hiddenText(command, secretTokens(command, grammar), begin, begin + source.size()));
}

}  // namespace vornwout
