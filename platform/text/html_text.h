// Texts that were escaped for HTML, back to what they were.
#pragma once

#include <string>
#include <string_view>

namespace vornwout {

/// Replaces the five named references &amp; &lt; &gt; &quot; &apos; by their characters, each once;
/// what is none of them stays as it is.
std::string unescapedHtml(std::string_view text);

}  // namespace vornwout
