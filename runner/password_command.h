// `vornwout password`: turns a password into the encrypted form that a job file may hold.
#pragma once

#include <CLI/CLI.hpp>

namespace vornwout {

void addPasswordCommand(CLI::App& application);

/// Reads a password, from a terminal twice and without showing it, and prints its encrypted form.
/// Returns the exit status.
int runPasswordCommand();

}  // namespace vornwout
