// Passwords that a file gives, so that none stands on a command line, where every process sees it.
#pragma once

#include <string>
#include <variant>

namespace vornwout {

/// Why a password file gives no password; a sentence that names the file.
struct PasswordFileError {
  std::string text;
};

/// The first line of the file `path`, without its line end; "-" is standard input. More than that
/// line, an empty one, one longer than 4096 bytes or one with a zero byte is an error: whoever
/// wrote it meant something else.
std::variant<std::string, PasswordFileError> readPasswordFile(const std::string& path);

}  // namespace vornwout
