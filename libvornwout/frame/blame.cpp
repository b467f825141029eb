#include "libvornwout/frame/blame.h"

#include "platform/parser/current_command.h"

namespace vornwout {

void blame(const Token* token) {
  if (CurrentCommand* current = CurrentCommand::current()) current->noteRead(token);
}

void blame(const TokenInfoObj& token) { blame(&token.token()); }

}  // namespace vornwout
