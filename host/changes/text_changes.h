// Changes texts of a document as TEXTS of OUTPUT MODIFY asks for.
//
// Each changeText() returns whether anything changed, so the same change a second time returns
// false.
#pragma once

#include "host/changes/change_notes.h"
#include "host/changes/font_check.h"
#include "host/changes/modify_request.h"
#include "host/document/object_content.h"

namespace vornwout {

/// A new text replaces all paragraphs by plain ones, one for each of its lines, in the style that
/// the first run had; a line break at its end makes no further one. Font, size, colour and style go
/// to every run. A font that `isFont` does not know is noted and not used.
bool changeText(TextContent& text, const TextChange& change, ChangeNotes& notes,
                const FontCheck& isFont);

/// A log's text has no style of its own: only the text is replaced.
bool changeText(LogContent& log, const TextChange& change);

/// Likewise; the severity and the place stay.
bool changeText(MessageContent& message, const TextChange& change);

}  // namespace vornwout
