// The encoding that the system's locale names, for files that other programs of the user read.
//
// Entry point: localeEncoding().
#pragma once

#include <memory>

#include "platform/text/encoding.h"

namespace vornwout {

/// The encoding of the locale that the environment names, installed or not. UTF-8 where it names
/// none: a locale without an encoding of its own ("C", "POSIX") says nothing about the characters
/// that a user has, and an encoding that is unknown here cannot be written.
std::shared_ptr<const Encoding> localeEncoding();

}  // namespace vornwout
