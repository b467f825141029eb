// `vornwout show`: a document's outline and what its objects hold, on a terminal or for other
// programs.
//
// Only objects that are looked at are read, one at a time. One that cannot be read says so in its
// place, the rest is shown, and the status tells of it.
#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>

#include "host/document/document.h"
#include "runner/terminal/style.h"

namespace vornwout {

/// Columns that a width is at most.
inline constexpr int kWidestShown = 10'000;

struct ShowOptions {
  std::string file;
  bool outline = false;                ///< the outline alone
  std::optional<std::int64_t> object;  ///< this object alone, with what stands below it
  bool raw = false;                    ///< the bytes of a chart or model
  bool json = false;
  bool noPager = false;
  std::string passwordFile;  ///< empty for none
  int width = 0;             ///< columns; 0 for those of the terminal
  std::string color = "auto";
};

/// Opens the file and shows it on standard output; the exit status.
int runShow(const ShowOptions& options);

/// Shows a document. What the options ask of it that it has not is told on standard error. Returns
/// the exit status; a failure of writing is left in the state of `out`.
int showDocument(std::ostream& out, const Document& document, const ShowOptions& options,
                 const TerminalStyle& style, bool isTerminal);

}  // namespace vornwout
