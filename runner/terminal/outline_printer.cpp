#include "runner/terminal/outline_printer.h"

#include <algorithm>
#include <functional>
#include <string>

#include <fmt/format.h>

#include "platform/strings/localized.h"
#include "platform/text/display_width.h"
#include "runner/terminal/color.h"
#include "runner/terminal/terminal_text.h"

namespace vornwout {
namespace {

constexpr std::string_view kBold = "1";
constexpr std::string_view kDim = "2";
constexpr int kShortestLabel = 12;
constexpr int kWidestLabel = 60;
// More than the room that a label can have: beside it stands a tree of at most 256 headings.
constexpr int kMostColumns = 1000;

struct Line {
  std::string tree;
  std::string label;
  std::string facts;
};

/// The lines that lead from the headings above an entry to it. `isOpen` tells for each depth
/// whether something follows there.
std::string treeOf(const std::vector<bool>& isOpen, bool isLast) {
  std::string tree;
  for (const bool open : isOpen) tree += open ? "│  " : "   ";
  return tree + (isLast ? "└─ " : "├─ ");
}

Line lineOf(const OutlineEntry& entry, const std::vector<bool>& isOpen) {
  const DocumentObject& object = *entry.object;
  Line line;
  line.tree = treeOf(isOpen, entry.isLast);
  line.label = shownStart(object.index.empty() ? object.label : object.index + " " + object.label,
                          kMostColumns);
  if (line.label.empty()) line.label = localized("(no label)");
  line.facts = localized(objectTypeName(object.type));
  if (!object.command.empty()) {
    line.facts += fmt::format(", {} {}", shownStart(object.command, kMostColumns), object.run);
  }
  if (!object.visible) line.facts += ", " + localized("hidden");
  return line;
}

/// Calls `visit(entry, line)` for every entry. The lines are made anew each time, for those of a
/// large outline would take more memory than the document.
void forEachLine(const std::vector<OutlineEntry>& entries,
                 const std::function<void(const OutlineEntry&, const Line&)>& visit) {
  std::vector<bool> isOpen;
  const int top = entries.front().depth;
  for (const OutlineEntry& entry : entries) {
    isOpen.resize(static_cast<std::size_t>(std::max(0, entry.depth - top)));
    visit(entry, lineOf(entry, isOpen));
    isOpen.push_back(!entry.isLast);
  }
}

}  // namespace

void printOutline(std::ostream& out, const std::vector<OutlineEntry>& entries,
                  const TerminalStyle& style) {
  if (entries.empty()) return;
  int widestLeft = 0;
  int widestFacts = 0;
  forEachLine(entries, [&](const OutlineEntry&, const Line& line) {
    widestLeft = std::max(
        widestLeft, displayWidth(line.tree) + std::min(kWidestLabel, displayWidth(line.label)));
    widestFacts = std::max(widestFacts, displayWidth(line.facts));
  });
  const auto digits = static_cast<int>(std::to_string(entries.back().number).size());
  const int left = style.width > 0
                       ? std::min(widestLeft, style.width - digits - 1 - 2 - widestFacts)
                       : widestLeft;
  forEachLine(entries, [&](const OutlineEntry& entry, const Line& line) {
    const std::string number = fmt::format("{:>{}} ", entry.number, digits);
    const int room = std::max(kShortestLabel, left - displayWidth(line.tree));
    const std::string label = cutLine(line.label, room);
    const bool isHeading = entry.object->type == ObjectType::kHeading;
    const int gap = std::max(0, left - displayWidth(line.tree) - displayWidth(label)) + 2;
    const std::string_view labelCodes = isHeading ? kBold : std::string_view();
    out << withStyle(number, kDim, style) << withStyle(line.tree, kDim, style)
        << withStyle(label, entry.isShown ? labelCodes : kDim, style) << repeated(" ", gap);
    // What is left of a narrow terminal.
    const int taken = digits + 1 + displayWidth(line.tree) + displayWidth(label) + gap;
    const std::string facts =
        style.width > 0 ? cutLine(line.facts, style.width - taken) : line.facts;
    out << withStyle(facts, kDim, style) << '\n';
  });
}

}  // namespace vornwout
