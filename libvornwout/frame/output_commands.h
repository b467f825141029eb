// OutputCommands: errors and warnings that are no syntax errors, written into the command's output.
#pragma once

#include <string>

namespace vornwout {

/// Reports messages as annotations of the current procedure. Texts are in the current encoding.
class OutputCommands {
 public:
  /// Reports a message that has no argument.
  static void ErrorWarn0(const char* text, int level);
  /// Reports a message with one argument for "^1". A null or empty argument leaves "^1" as it is.
  static void ErrorWarn(const char* text, const char* argument, int level);
  /// The same, but an empty argument takes the place of "^1". An argument that is `translatable` is
  /// the system's own text.
  static void errorWarnAlways(const char* text, const std::string& argument, int level,
                              bool translatable = false);
  /// The same with an argument that no terminal, trace or document gets to see.
  static void errorWarnSecret(const char* text, const char* argument, int level);
};

}  // namespace vornwout
