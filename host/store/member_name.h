// The rules for the names of a container's members, the same for reading and writing.
//
// A name is a relative path: components between slashes, none empty, "." or "..". It is valid UTF-8
// of 1 to 255 bytes without control characters, blanks, backslashes and colons, so that no program
// that unpacks a container can be led out of its folder, on any system. Blanks are refused because
// the zip library shows a zero byte in a name as one, and no two programs agree where such a name
// ends.
#pragma once

#include <string>
#include <string_view>

namespace vornwout {

/// What is wrong with a name, as the end of a sentence ("... has a backslash"); empty when nothing
/// is. A directory's name may end in a slash.
std::string faultOfMemberName(std::string_view name);

/// The name as an error message shows it: in quotes, shortened, whatever its bytes are.
std::string quotedMemberName(std::string_view name);

/// Equal for names that differ in case at most; the name is valid.
std::string caseFoldedName(std::string_view name);

}  // namespace vornwout
