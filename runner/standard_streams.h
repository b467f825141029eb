// The program's standard streams: what holds when it starts, and how it closes with them.
//
// A program may be started with descriptors 0 to 2 closed. The next file that it opened would take
// such a number, and what is written for a reader would land in that file. And a reader that has
// seen enough, as `head` has, ends a writer by a signal unless that is ignored. Here the signal
// waits: no command is cut in two, and a trace is whole up to the last one. Then the program ends
// as any other filter does, by that very signal.
#pragma once

#include <string_view>

namespace vornwout {

/// Opens the null device on every closed standard descriptor and turns a reader's end into a
/// failure of writing. Called before any file is opened. Reading from a standard input that was
/// closed fails.
void prepareStandardStreams();

/// True once something could not be written to standard output because its reader has left.
bool readerHasLeft();

/// Brings standard output to its end. Returns `status`, or the status for a file that cannot be
/// written when not all of it arrived, which is told on standard error. Where the reader of a pipe
/// has left it does not return: the signal that waited ends the program, unless whoever started it
/// asked for that signal to be ignored.
int finishStandardOutput(int status);

/// Tells on standard error why the program does not do what was asked of it, one sentence in UTF-8
/// that may hold foreign text; returns the status for wrong usage.
int refuse(std::string_view text);

}  // namespace vornwout
