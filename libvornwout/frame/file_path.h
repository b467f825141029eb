// The path of a file as it goes to the output controller.
#pragma once

#include <string>

namespace vornwout {

/// Rewrites a path in place: a relative one becomes absolute unless the host suppresses that, and
/// every "/" becomes a backslash, which is what the controller's messages carry on every system.
void NormalizeOutputFilePath(std::string& path);

}  // namespace vornwout
