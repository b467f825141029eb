// Which font families the system has: isFontInstalled().
//
// Fontconfig knows, and takes some milliseconds to load, so it is loaded when a command first names
// a font and not with the program. Where it is not installed nobody can tell, and every font is
// taken to be there.
#pragma once

#include <string>

namespace vornwout {

/// `family` is UTF-8; case and blanks do not count, as Fontconfig has it. The generic families
/// (serif, sans-serif, monospace and the like) are always there.
bool isFontInstalled(const std::string& family);

}  // namespace vornwout
