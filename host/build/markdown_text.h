// Makes a text of styled paragraphs from Markdown (CommonMark).
//
// Entry point: textFromMarkdown(). Every construct is kept in the closest form that texts have: raw
// HTML as the plain text that it is, an image as its alternative text, a thematic break as an empty
// paragraph. The parser is cmark, which takes any input.
#pragma once

#include <string_view>

#include "host/document/object_content.h"

namespace vornwout {

/// `markdown` is UTF-8; line ends of all kinds. Links keep only addresses of the web and of mail.
TextContent textFromMarkdown(std::string_view markdown);

/// Text as it stands: a paragraph per line.
TextContent textFromPlain(std::string_view text);

}  // namespace vornwout
