#include "runner/command_log.h"

#include "platform/parser/secret_tokens.h"
#include "platform/pivot/cell_text.h"
#include "platform/text/encoding.h"

namespace vornwout {

std::string commandLogText(const TokenizedCommand& command, const CommandDescriptor* grammar) {
  const std::vector<Token>& tokens = command.tokens();
  const std::string_view source = command.source();
  if (tokens.empty()) return currentToUtf8(source);
  const std::vector<bool> secret = secretTokens(command, grammar);
  const std::size_t sourceBegin = tokens.front().offset;
  std::string text;
  std::size_t copied = 0;  // of the source
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (!secret[i]) continue;
    const std::size_t begin = tokens[i].offset - sourceBegin;
    text += currentToUtf8(source.substr(copied, begin - copied)) + kHiddenSecret;
    copied = begin + tokens[i].length;
  }
  return text + currentToUtf8(source.substr(copied));
}

}  // namespace vornwout
