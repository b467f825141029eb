// Long texts inside a sentence: the middle gives way, so that both ends can be recognised.
#pragma once

#include <string>
#include <string_view>

namespace vornwout {

/// Columns that a value in a sentence may take.
inline constexpr int kMostValueColumns = 80;

/// The UTF-8 text itself where it takes at most `columns`, at least 80; otherwise its two ends, in
/// 80 columns, with the number of characters left out between them: "abc … 1999930 characters …
/// xyz". The cost of a long text is that of counting its characters.
std::string shortenedText(std::string_view utf8, int columns = kMostValueColumns);

/// The UTF-8 text itself where it takes at most `columns`, at least 1; otherwise its beginning with
/// "…", which together take no more.
std::string textHead(std::string_view utf8, int columns);

}  // namespace vornwout
