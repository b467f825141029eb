// The program's standard streams: what holds when it starts, and how it closes with them.
//
// A program may be started with descriptors 0 to 2 closed. The next file that it opened would take
// such a number, and what is written for a reader would land in that file. And a reader that has
// seen enough, as `head` has, ends a writer by a signal unless that is ignored; a run is not ended,
// for what its commands do to documents and files does not hang on who watches.
#pragma once

#include <string_view>

namespace vornwout {

/// Opens the null device on every closed standard descriptor and turns a reader's end into a
/// failure of writing. Called before any file is opened. Reading from a standard input that was
/// closed fails.
void prepareStandardStreams();

/// Brings standard output to its end. Returns `status`, or the status for a file that cannot be
/// written when not all of it arrived. That is told on standard error, unless the reader of a pipe
/// has left: it knows.
int finishStandardOutput(int status);

/// Tells on standard error why the program does not do what was asked of it, one sentence in UTF-8
/// that may hold foreign text; returns the status for wrong usage.
int refuse(std::string_view text);

}  // namespace vornwout
