// Where the string-table bundles of a language are, told by where those of the current one are.
#pragma once

#include <string>
#include <string_view>

namespace vornwout {

/// The directory that holds the languages' directories: the string-table location, cut at its last
/// "/" or backslash and then at its last "/". The first cut takes the location's trailing
/// separator, and both are always made: a location without one loses its last two components.
std::string bundleDirectory(std::string_view stringTableLocation);

/// The path of a language's bundle. The separators behind the directory are backslashes, whatever
/// those of the directory are; who opens the file takes either.
std::string bundlePath(std::string_view directory, std::string_view language,
                       std::string_view name);

}  // namespace vornwout
