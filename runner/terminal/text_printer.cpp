#include "runner/terminal/text_printer.h"

#include <algorithm>
#include <string>
#include <vector>

#include "platform/text/display_width.h"
#include "runner/terminal/color.h"
#include "runner/terminal/terminal_text.h"

namespace vornwout {
namespace {

using Kind = TextParagraph::Kind;

constexpr std::string_view kDim = "2";
constexpr int kIndent = 2;
constexpr int kCodeIndent = 4;
constexpr int kDeepest = 16;
constexpr int kNarrowest = 10;

/// A paragraph's text as it is shown, and where which style holds.
struct StyledText {
  struct Span {
    std::size_t end;
    std::string codes;
  };
  std::string text;
  std::vector<Span> spans;

  void add(const std::string& shown, const std::string& codes) {
    if (shown.empty()) return;
    text += shown;
    spans.push_back({text.size(), codes});
  }
};

std::string codesOf(const TextStyle& style, bool isHeading, ColorDepth depth) {
  std::string codes;
  const auto add = [&](const std::string& code) {
    if (!codes.empty() && !code.empty()) codes += ';';
    codes += code;
  };
  if (style.bold || isHeading) add("1");
  if (style.italic) add("3");
  if (style.underlined) add("4");
  if (const auto color = parseCellColor(style.color)) add(foregroundCode(*color, depth));
  return codes;
}

StyledText styledText(const TextParagraph& paragraph, const TerminalStyle& style) {
  StyledText result;
  for (const TextRun& run : paragraph.runs) {
    const std::string text = shownText(run.text);
    result.add(text, codesOf(run.style, paragraph.kind == Kind::kHeading, style.depth));
    const std::string link = shownLine(run.link);
    if (!link.empty() && link != text && link != "mailto:" + text) {
      result.add(" <" + link + ">", std::string(kDim));
    }
  }
  return result;
}

/// The part of a text from `start` to `end` with its styles.
std::string styledPart(const StyledText& text, std::size_t start, std::size_t end,
                       const TerminalStyle& style) {
  std::string result;
  for (const StyledText::Span& span : text.spans) {
    if (span.end <= start) continue;
    const std::size_t stop = std::min(end, span.end);
    if (stop <= start) break;
    result += withStyle(text.text.substr(start, stop - start), span.codes, style);
    start = stop;
  }
  return result;
}

/// What stands before the first line and before the others.
struct Lead {
  std::string first;
  std::string other;
};

Lead leadOf(const TextParagraph& paragraph) {
  const int level = std::clamp(paragraph.level, 1, kDeepest);
  switch (paragraph.kind) {
    case Kind::kBullet:
    case Kind::kNumbered: {
      const std::string mark = paragraph.kind == Kind::kBullet
                                   ? std::string("• ")
                                   : std::to_string(paragraph.number) + ". ";
      const std::string indent = repeated(" ", level * kIndent);
      return {indent + mark, indent + repeated(" ", displayWidth(mark))};
    }
    case Kind::kQuote: {
      const std::string bars = repeated("│ ", level);
      return {bars, bars};
    }
    case Kind::kCode:
      return {repeated(" ", kCodeIndent), repeated(" ", kCodeIndent)};
    case Kind::kHeading:
    case Kind::kPlain:
      break;
  }
  return {};
}

void printParagraph(std::ostream& out, const TextParagraph& paragraph, const TerminalStyle& style) {
  const StyledText text = styledText(paragraph, style);
  const Lead lead = leadOf(paragraph);
  const int room =
      style.width > 0 ? std::max(kNarrowest, style.width - displayWidth(lead.first)) : 0;
  std::size_t cursor = 0;
  bool isFirst = true;
  for (const std::string& line : shownLines(text.text, room)) {
    // A line is a part of the text; between two of them only blanks are left out.
    const std::size_t start = text.text.find(line, cursor);
    cursor = start + line.size();
    out << withStyle(isFirst ? lead.first : lead.other, kDim, style)
        << styledPart(text, start, cursor, style) << '\n';
    isFirst = false;
  }
}

bool isListItem(const TextParagraph& paragraph) {
  return paragraph.kind == Kind::kBullet || paragraph.kind == Kind::kNumbered;
}

}  // namespace

void printTextContent(std::ostream& out, const TextContent& text, const TerminalStyle& style) {
  const TextParagraph* before = nullptr;
  for (const TextParagraph& paragraph : text.paragraphs) {
    if (before != nullptr && !(isListItem(*before) && isListItem(paragraph))) out << '\n';
    printParagraph(out, paragraph, style);
    before = &paragraph;
  }
}

}  // namespace vornwout
