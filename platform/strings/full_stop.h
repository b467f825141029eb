// Sentences that go on behind other words.
#pragma once

#include <string>
#include <string_view>

namespace vornwout {

/// A sentence in UTF-8 without its full stop, whichever its language has.
inline std::string withoutFullStop(std::string sentence) {
  for (const std::string_view stop : {"。", "."}) {
    if (sentence.ends_with(stop)) sentence.resize(sentence.size() - stop.size());
  }
  return sentence;
}

}  // namespace vornwout
