#include "libvornwout/modify/modify_result.h"

#include <cstdlib>

namespace vornwout {
namespace {

/// Finds the next occurrence of a text at or behind a place that only grows. It remembers what it
/// found, so that many questions about a long text cost one pass over it.
class NextOf {
 public:
  NextOf(const std::string& text, std::string_view wanted) : text_(text), wanted_(wanted) {}

  std::size_t from(std::size_t at) {
    if (found_ != std::string::npos && (!searched_ || found_ < at)) {
      found_ = text_.find(wanted_, at);
      searched_ = true;
    }
    return found_;
  }

 private:
  const std::string& text_;
  std::string_view wanted_;
  std::size_t found_ = 0;
  bool searched_ = false;
};

/// What stands in the first parentheses behind every occurrence of a note.
std::vector<std::string> notedValues(const std::string& text, std::string_view note) {
  std::vector<std::string> values;
  NextOf notes(text, note);
  NextOf opening(text, "(");
  NextOf closing(text, ")");
  for (std::size_t at = notes.from(0); at != std::string::npos; at = notes.from(at + 1)) {
    const std::size_t open = opening.from(at);
    if (open == std::string::npos) break;
    const std::size_t close = closing.from(open);
    if (close == std::string::npos) break;
    values.push_back(text.substr(open + 1, close - open - 1));
  }
  return values;
}

/// The number before the first comma of what is left, which is taken off.
long takeCount(std::string& rest) {
  const std::size_t comma = rest.find(',');
  const long count = std::strtol(rest.substr(0, comma).c_str(), nullptr, 10);
  rest.erase(0, comma == std::string::npos ? rest.size() : comma + 1);
  return count;
}

}  // namespace

ModifyResult readModifyResult(const std::string& text) {
  ModifyResult result;
  result.invalidFormats = notedValues(text, "Invalid format");
  result.invalidFonts = notedValues(text, "Invalid font");
  const std::size_t open = text.find('(');
  const std::size_t close = text.find(')');
  if (open == std::string::npos || close == std::string::npos || close < open + 2) return result;
  result.hasCounts = true;
  std::string counts = text.substr(open + 1, close - open - 1);
  result.selected = takeCount(counts);
  result.modified = takeCount(counts);
  result.deleted = takeCount(counts);
  return result;
}

}  // namespace vornwout
