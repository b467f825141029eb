// Loads a module of this system: a library that most runs never need and no start should pay for.
//
// Modules stand in the directory of the platform's own library, wherever that was put, and are
// looked for nowhere else. They are never closed, for what they keep serves the whole process.
//
// Entry point: moduleFunction().
#pragma once

#include <stdexcept>

namespace vornwout {

/// What the loader said, in one line.
class ModuleError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The address of a function that the module `file`, the name of a file without a directory, shows.
/// Throws ModuleError where the module, one of the libraries that it needs, or the function is
/// missing.
void* moduleFunction(const char* file, const char* function);

}  // namespace vornwout
