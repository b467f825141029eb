// A text of paragraphs on a terminal: wrapped to its width, with bold and italic runs, headings,
// lists and quotes.
#pragma once

#include <ostream>

#include "host/document/object_content.h"
#include "runner/terminal/style.h"

namespace vornwout {

/// Writes the text, every line ended; a failure is left in the stream's state. Where a link leads
/// stands behind it in angle brackets, unless its text says so already.
void printTextContent(std::ostream& out, const TextContent& text, const TerminalStyle& style);

}  // namespace vornwout
