// The values that OUTPUT OPEN and OUTPUT SAVE read in the same way: the file and the password.
#pragma once

#include <optional>
#include <string>

#include "platform/message/parser_message.h"
#include "platform/parser/command_spec.h"

namespace vornwout {

/// Reads a file specification that must be quoted: file handles are replaced and the path is made
/// what the output controller is sent. Nothing after reporting a value that is no quoted text.
std::optional<std::string> readDocumentPath(const ParamObj& file, const ParserMessage& messages);

/// The keyword of a password.
ParamDescriptor passwordDescriptor();

/// Reads a quoted password; the keyword NONE, as every unquoted word, leaves it empty.
std::string readPassword(const ParamObj& password);

}  // namespace vornwout
