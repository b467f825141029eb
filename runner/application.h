// The program's command line.
#pragma once

namespace vornwout {

/// Runs the program; the exit status.
int runApplication(int argc, char** argv);

}  // namespace vornwout
