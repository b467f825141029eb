// What Ctrl-C and its like do to a save: the temporary file goes with the program.
//
// Entry point: removeFilesOnEndingSignals(). The signals then take their course, so that whoever
// started the program sees what ended it.
#pragma once

namespace vornwout {

/// From now on SIGINT, SIGTERM and SIGHUP remove the temporaries of saves before they end the
/// program. Those that whoever started the program ignores stay ignored.
void removeFilesOnEndingSignals();

}  // namespace vornwout
