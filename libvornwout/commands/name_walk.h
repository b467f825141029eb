// The walk over the free token list of OUTPUT NAME and OUTPUT ACTIVATE.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/adapter/controller_messages.h"
#include "platform/parser/command_spec.h"

namespace vornwout {

/// What the walk found.
struct NamedDocument {
  std::string name;
  OutputDocumentMinimized minimized = OutputDocumentMinimized::kNo;
};

/// How a token that is no keyword is taken.
enum class BareNames {
  kWithEqualsSign,  ///< OUTPUT NAME: "=" and a name count as a bare name, save at the end
  kPlain,           ///< OUTPUT ACTIVATE: every token is a name
};

/// Reads NAME = name, MINIMIZED = value and a bare name; empty when the list has another shape. The
/// keyword form replaces an earlier name, a bare name behind any name is refused.
std::optional<NamedDocument> walkNameTokens(const std::vector<TokenInfoObj>& tokens,
                                            BareNames rule);

/// The same for the whole content of a command's main subcommand; nothing given is an empty name.
std::optional<NamedDocument> readNamedDocument(const CommandSpec& spec, BareNames rule);

}  // namespace vornwout
