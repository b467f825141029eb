// A text of paragraphs as HTML: headings, nested lists and quotes, code, and styled runs.
//
// Paragraphs stand one behind the other and only say how deep they are; lists and quotes are opened
// and closed here so that they nest as HTML wants it. A link that goes where no reader should be
// sent is shown as its text.
#pragma once

#include "host/document/object_content.h"
#include "host/export/html/html_writer.h"

namespace vornwout {

/// `headingLevel` is the level at which the text's topmost headings stand, from 1, whatever level
/// they have in the text; the others follow without a gap, and none is deeper than 6.
void writeHtmlText(HtmlWriter& html, const TextContent& text, int headingLevel);

}  // namespace vornwout
