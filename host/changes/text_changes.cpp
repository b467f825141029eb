#include "host/changes/text_changes.h"

#include <string_view>
#include <utility>
#include <vector>

#include "host/changes/replace_value.h"
#include "host/changes/usable_values.h"

namespace vornwout {
namespace {

/// The lines of a text, which end with "\n", "\r\n" or "\r"; at least one.
std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  for (;;) {
    const std::size_t end = text.find_first_of("\r\n");
    lines.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return lines;
    text.remove_prefix(text.substr(end).starts_with("\r\n") ? end + 2 : end + 1);
    if (text.empty()) return lines;
  }
}

TextStyle firstStyle(const TextContent& text) {
  for (const TextParagraph& paragraph : text.paragraphs) {
    if (!paragraph.runs.empty()) return paragraph.runs.front().style;
  }
  return {};
}

/// Plain paragraphs behind the first one, which stays what it was; also for empty lines a run: a
/// later change finds its style there.
TextContent newText(std::string_view text, const TextContent& old) {
  const TextStyle style = firstStyle(old);
  TextContent content;
  for (const std::string_view line : linesOf(text)) {
    content.paragraphs.emplace_back().runs.push_back({std::string(line), style, ""});
  }
  if (!old.paragraphs.empty()) {
    TextParagraph& first = content.paragraphs.front();
    first.kind = old.paragraphs.front().kind;
    first.level = old.paragraphs.front().level;
    first.number = old.paragraphs.front().number;
  }
  return content;
}

bool changeStyle(TextStyle& style, const TextChange& change, const std::string& font) {
  bool changed = false;
  if (!font.empty()) changed |= replaceValue(style.font, font);
  if (change.fontSize > 0) changed |= replaceValue(style.size, change.fontSize);
  if (change.bold) changed |= replaceValue(style.bold, *change.bold);
  if (change.italic) changed |= replaceValue(style.italic, *change.italic);
  if (change.underline) changed |= replaceValue(style.underlined, *change.underline);
  if (!change.color.empty()) changed |= replaceValue(style.color, change.color);
  return changed;
}

}  // namespace

TextChanger::TextChanger(const TextChange& change, ChangeNotes& notes, const FontCheck& isFont)
    : change_(change), font_(usableFont(change.font, notes, isFont)) {}

bool TextChanger::apply(TextContent& text) const {
  bool changed = false;
  if (change_.text) changed |= replaceValue(text, newText(*change_.text, text));
  for (TextParagraph& paragraph : text.paragraphs) {
    for (TextRun& run : paragraph.runs) changed |= changeStyle(run.style, change_, font_);
  }
  return changed;
}

}  // namespace vornwout
