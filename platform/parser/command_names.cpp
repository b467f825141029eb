#include "platform/parser/command_names.h"

#include <algorithm>
#include <utility>

#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

const ScopedCommandNames* innermost = nullptr;

bool wordsAre(const TokenizedCommand& command, std::size_t token, std::string_view name) {
  while (true) {
    const std::size_t blank = std::min(name.find(' '), name.size());
    if (token >= command.tokens().size()) return false;
    const Token& word = command.tokens()[token++];
    if (word.kind != TokenKind::kWord ||
        !AreStringsEqualCase(command.sourceText(word), name.substr(0, blank))) {
      return false;
    }
    if (blank == name.size()) return true;
    name.remove_prefix(blank + 1);
  }
}

}  // namespace

ScopedCommandNames::ScopedCommandNames(std::vector<std::string_view> names)
    : names_(std::move(names)), previous_(innermost) {
  innermost = this;
}

ScopedCommandNames::~ScopedCommandNames() { innermost = previous_; }

bool beginsCommandName(const TokenizedCommand& command, std::size_t token) {
  if (innermost == nullptr) return false;
  return std::any_of(innermost->names_.begin(), innermost->names_.end(),
                     [&](std::string_view name) { return wordsAre(command, token, name); });
}

}  // namespace vornwout
