// Changes texts of a document as TEXTS of OUTPUT MODIFY asks for.
//
// TextChanger::apply() returns whether anything changed, so the same change a second time returns
// false.
#pragma once

#include <string>

#include "host/changes/change_notes.h"
#include "host/changes/font_check.h"
#include "host/changes/modify_request.h"
#include "host/document/object_content.h"

namespace vornwout {

class TextChanger {
 public:
  /// Keeps a reference to `change`. A font that `isFont` does not know is noted and not used.
  TextChanger(const TextChange& change, ChangeNotes& notes, const FontCheck& isFont);

  /// A new text replaces all paragraphs, one for each of its lines, in the style that the first run
  /// had; a line break at its end makes no further one. The first one stays the heading, or
  /// whatever else, that it was; the others are plain. Font, size, colour and style go to every
  /// run.
  bool apply(TextContent& text) const;

 private:
  const TextChange& change_;
  std::string font_;  ///< empty when it is to stay
};

}  // namespace vornwout
