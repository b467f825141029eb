#include "runner/terminal/diagnostics.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "platform/strings/localized.h"
#include "platform/text/display_width.h"
#include "platform/text/utf8.h"
#include "runner/terminal/color.h"
#include "runner/terminal/terminal_text.h"

namespace vornwout {
namespace {

constexpr int kIndent = 2;
constexpr int kTabStop = 8;
constexpr int kNarrowestExcerpt = 10;
constexpr int kLongestSource = 1'000'000'000;
constexpr int kWidestExcerpt = 240;  // a line of a megabyte helps nobody

struct SeverityLook {
  const char* word;
  const char* codes;
};

SeverityLook lookOf(MessageSeverity severity) {
  switch (severity) {
    case MessageSeverity::kInformation:
      return {"note", "1;36"};
    case MessageSeverity::kWarning:
      return {"warning", "1;33"};
    case MessageSeverity::kError:
      break;
  }
  return {"error", "1;31"};
}

/// What a terminal draws in one place: a character with the marks that belong to it.
struct Cluster {
  std::string text;
  int characters = 1;
  int column = 0;
  int width = 0;
};

/// A stretch of a source line, with what was left away on both sides.
struct Excerpt {
  std::vector<Cluster> clusters;
  int width = 0;
  bool isCutBefore = false;
  bool isCutAfter = false;
};

int availableColumns(const TerminalStyle& style) {
  return style.width > 0 ? std::clamp(style.width - kIndent, kNarrowestExcerpt, kWidestExcerpt)
                         : kWidestExcerpt;
}

std::size_t characterBytes(std::string_view text) {
  return static_cast<std::size_t>(std::max(1, validUtf8Length(text)));
}

/// Columns [column, end) of an excerpt, as the caret line marks them.
struct Mark {
  int column = 0;
  int end = 0;
};

/// The part of `line` within `reach` characters of the character `caret`, which becomes its number
/// inside the part. What is farther away is never shown, so it is not worth measuring.
std::string_view nearCaret(std::string_view line, int reach, int& caret, Excerpt& excerpt) {
  std::size_t start = 0;
  std::size_t position = 0;
  int character = 0;
  int kept = 0;
  while (position < line.size() && character < caret + reach) {
    if (character >= caret - reach) {
      if (kept++ == 0) start = position;
    }
    position += characterBytes(line.substr(position));
    ++character;
  }
  excerpt.isCutBefore = excerpt.isCutBefore || start > 0;
  excerpt.isCutAfter = excerpt.isCutAfter || position < line.size();
  caret = std::min(caret, character) - (character - kept);
  return line.substr(start, position - start);
}

/// Adds a cluster that the terminal shows as `text`, a tab up to the next tab stop.
void addCluster(Excerpt& excerpt, std::string_view text, int characters, int width) {
  Cluster cluster;
  cluster.characters = characters;
  cluster.column = excerpt.width;
  cluster.text = text;
  cluster.width = width;
  if (text == "\t") {
    cluster.width = kTabStop - excerpt.width % kTabStop;
    cluster.text = repeated(" ", cluster.width);
  }
  excerpt.width += cluster.width;
  excerpt.clusters.push_back(std::move(cluster));
}

/// Measures the clusters of a part of a line.
void measure(std::string_view part, Excerpt& excerpt) {
  const auto isPlain = [](char c) { return (c >= ' ' && c <= '~') || c == '\t'; };
  if (std::all_of(part.begin(), part.end(), isPlain)) {
    // Nearly every line: one column each, and the text library need not be asked.
    excerpt.clusters.reserve(part.size());
    for (std::size_t i = 0; i < part.size(); ++i) addCluster(excerpt, part.substr(i, 1), 1, 1);
    return;
  }
  // Sanitizing replaces characters one for one, so both texts are walked side by side.
  const std::string shown = sanitizeForTerminal(part);
  std::size_t original = 0;
  forEachCluster(shown, [&](std::string_view cluster, int width) {
    const bool isTab = part[original] == '\t';
    int characters = 0;
    for (std::size_t i = 0; i < cluster.size(); i += characterBytes(cluster.substr(i))) {
      original += characterBytes(part.substr(original));
      ++characters;
    }
    addCluster(excerpt, isTab ? "\t" : cluster, characters, width);
  });
}

/// Where the characters [caret, caret + length) stand; behind the end of the line when they do.
Mark markOf(const Excerpt& excerpt, int caret, int length) {
  Mark mark{excerpt.width, excerpt.width + 1};
  bool isFound = false;
  int character = 0;
  for (const Cluster& cluster : excerpt.clusters) {
    const int next = character + cluster.characters;
    if (!isFound && caret < next) {
      mark = {cluster.column, cluster.column + 1};
      isFound = true;
    }
    if (isFound && length > 0 && character < caret + length) {
      mark.end = std::max(mark.end, cluster.column + cluster.width);
    }
    character = next;
  }
  return mark;
}

/// Drops clusters at the ends until the excerpt with its marks of omission fits, keeping the caret
/// about a third from the left where the line goes on to its right.
std::string cutToWidth(Excerpt& excerpt, Mark& mark, int available) {
  const int needed = std::max(excerpt.width, mark.column + 1);
  int from = 0;
  if (needed + (excerpt.isCutBefore ? 1 : 0) + (excerpt.isCutAfter ? 1 : 0) > available) {
    from = std::clamp(mark.column - available / 3, 0, std::max(0, needed + 2 - available));
  }
  std::string line;
  int width = 0;
  std::size_t first = 0;
  while (first < excerpt.clusters.size() && excerpt.clusters[first].column < from) ++first;
  int shift = first < excerpt.clusters.size() ? excerpt.clusters[first].column : excerpt.width;
  if (first > 0 || excerpt.isCutBefore) {
    line = "…";
    width = 1;
    --shift;
  }
  std::size_t i = first;
  for (; i < excerpt.clusters.size(); ++i) {
    const bool isLast = i + 1 == excerpt.clusters.size() && !excerpt.isCutAfter;
    if (width + excerpt.clusters[i].width + (isLast ? 0 : 1) > available) break;
    line += excerpt.clusters[i].text;
    width += excerpt.clusters[i].width;
  }
  if (i < excerpt.clusters.size() || excerpt.isCutAfter) {
    line += "…";
    ++width;
  }
  mark.column -= shift;
  mark.end = std::max(mark.column + 1, std::min(mark.end - shift, width));
  return line;
}

void printExcerpt(std::ostream& out, const Diagnostic& diagnostic, const char* codes,
                  const TerminalStyle& style) {
  std::string_view source = diagnostic.sourceLine->text;
  while (!source.empty() && (source.back() == '\r' || source.back() == '\n')) {
    source.remove_suffix(1);
  }
  // A place behind the end of the line is its end; no line is longer than an int can count.
  const int bytes = static_cast<int>(std::min<std::size_t>(source.size(), kLongestSource));
  int caret = std::clamp(diagnostic.place.column - diagnostic.sourceLine->column, 0, bytes);
  Excerpt excerpt;
  excerpt.isCutBefore = diagnostic.sourceLine->isCutBefore;
  excerpt.isCutAfter = diagnostic.sourceLine->isCutAfter;
  measure(nearCaret(source, excerptReach(style), caret, excerpt), excerpt);
  Mark mark = markOf(excerpt, caret, std::clamp(diagnostic.length, 0, bytes));
  const std::string line = cutToWidth(excerpt, mark, availableColumns(style));
  const std::string indent = repeated(" ", kIndent);
  out << indent << line << '\n';
  if (diagnostic.place.column < 1) return;
  const std::string caretText = "^" + repeated("~", mark.end - mark.column - 1);
  out << indent << repeated(" ", mark.column) << withStyle(caretText, codes, style) << '\n';
}

}  // namespace

// Twice the columns, because a character with its marks may be several that take one column.
int excerptReach(const TerminalStyle& style) { return 2 * availableColumns(style); }

void printDiagnostic(std::ostream& out, const Diagnostic& diagnostic, const TerminalStyle& style) {
  const SeverityLook look = lookOf(diagnostic.severity);
  std::string place = shownLine(diagnostic.file);
  if (diagnostic.place.line > 0) {
    place += ":" + std::to_string(diagnostic.place.line);
    if (diagnostic.place.column > 0) place += ":" + std::to_string(diagnostic.place.column);
  }
  out << withStyle(place + ":", "1", style) << ' '
      << withStyle(std::string(look.word) + ":", look.codes, style) << ' '
      << shownLine(diagnostic.text) << '\n';
  if (diagnostic.place.line > 0 && diagnostic.sourceLine) {
    printExcerpt(out, diagnostic, look.codes, style);
  }
  if (!diagnostic.help.empty()) {
    out << repeated(" ", kIndent)
        << withStyle(localized("help") + ": " + shownLine(diagnostic.help), "2", style) << '\n';
  }
}

}  // namespace vornwout
