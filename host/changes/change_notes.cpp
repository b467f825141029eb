#include "host/changes/change_notes.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/strings/full_stop.h"
#include "platform/strings/language.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

/// Whoever reads notes looks for their words and takes what stands in parentheses, so a value must
/// have neither: it would end its note, or make another one.
std::string harmless(std::string value) {
  for (char& c : value) {
    if (c == '(') c = '[';
    if (c == ')') c = ']';
  }
  for (const char* const words : {kInvalidFormat, kInvalidFont}) {
    const std::size_t blank = std::string_view(words).find(' ');
    for (std::size_t at = 0; (at = value.find(words, at)) != std::string::npos; ++at) {
      value[at + blank] = '_';
    }
  }
  return value;
}

}  // namespace

std::string chartTemplateName(std::size_t number) { return localized("chart template ^1", number); }

std::string clauseOf(std::string sentence) {
  sentence = withoutFullStop(std::move(sentence));
  // Other languages have words that begin so wherever they stand.
  if (currentLanguage() == kOriginalLanguage && !sentence.empty() && sentence[0] >= 'A' &&
      sentence[0] <= 'Z') {
    sentence[0] = static_cast<char>(sentence[0] - 'A' + 'a');
  }
  return sentence;
}

void ChangeNotes::add(const char* what, const std::string& value) {
  std::string note = std::string(what) + " (" + harmless(value) + ")";
  if (std::find(notes_.begin(), notes_.end(), note) == notes_.end()) {
    notes_.push_back(std::move(note));
  }
}

}  // namespace vornwout
