// `vornwout password`: turns a password into the encrypted form that a job file may hold.
#pragma once

#include <string>

namespace vornwout {

/// What the help of the subcommand says.
std::string passwordExplanation();

/// Reads a password, from a terminal twice and without showing it, and prints its encrypted form.
/// Returns the exit status.
int runPasswordCommand();

}  // namespace vornwout
