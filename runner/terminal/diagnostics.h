// Messages as a compiler shows them: place, severity and text, then the source line with a caret.
//
//   job.qxs:3:12: error: text
//     OUTPUT NEW NAEM=a.
//                ^~~~
//
// The caret stands below the right column of the terminal whatever precedes it: tabs go to the next
// multiple of eight, and characters count by the columns they take. A line that is too wide is cut
// around the caret. Nothing of the text, the line or the file's name reaches the terminal
// unsanitized. The cost is that of the part that is shown, not of the line.
#pragma once

#include <optional>
#include <ostream>
#include <string>

#include "platform/adapter/output_sink.h"
#include "runner/terminal/style.h"

namespace vornwout {

/// A line of a job, or what is needed of a long one.
struct SourceLine {
  std::string text;          ///< without its line end
  int column = 1;            ///< of the first character of the text
  bool isCutBefore = false;  ///< the line begins before the text
  bool isCutAfter = false;   ///< the line goes on behind the text
};

/// A message with what is known of its place. All texts are UTF-8.
struct Diagnostic {
  std::string file;
  SourcePlace place;
  int length = 0;  ///< characters of the offender, 0 when unknown
  MessageSeverity severity = MessageSeverity::kError;
  std::string text;
  std::string help;  ///< what the user can do about it, may be empty
  std::optional<SourceLine> sourceLine;
};

/// How many characters before and behind the caret may be shown in that style; what is farther away
/// need not be in a SourceLine.
int excerptReach(const TerminalStyle& style);

/// Writes the message to `out`; a failure is left in the stream's state.
void printDiagnostic(std::ostream& out, const Diagnostic& diagnostic, const TerminalStyle& style);

}  // namespace vornwout
