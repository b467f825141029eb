// Passwords that a file or a person gives, so that none stands on a command line, where every
// process sees it.
#pragma once

#include <string>
#include <variant>

namespace vornwout {

/// Why there is no password; a sentence that names the file.
struct PasswordFileError {
  std::string text;
};

enum class PasswordUse {
  kOpen,  ///< it opens what there is: a wrong one shows by itself
  kNew,   ///< it protects something new, so a person types it twice
};

/// The first line of the file `path`, without its line end; "-" is standard input. More than that
/// line, an empty one, one longer than 4096 bytes or one with a zero byte is an error: whoever
/// wrote it meant something else. Where standard input is a terminal, it is asked for there, and
/// not shown.
std::variant<std::string, PasswordFileError> readPasswordFile(const std::string& path,
                                                              PasswordUse use);

}  // namespace vornwout
