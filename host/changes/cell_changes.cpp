#include "host/changes/cell_changes.h"

#include <functional>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/changes/usable_values.h"

namespace vornwout {
namespace {

struct LookHash {
  std::size_t operator()(const TextLook& look) const {
    std::size_t hash = std::hash<double>()(look.size);
    const auto mix = [&](std::size_t part) { hash = hash * 1099511628211U + part; };
    for (const std::string* text : {&look.textColor, &look.backgroundColor, &look.font}) {
      mix(std::hash<std::string_view>()(*text));
    }
    for (const std::optional<bool>& flag : {look.bold, look.italic, look.underlined}) {
      mix(flag ? (*flag ? 2U : 1U) : 0U);
    }
    return hash;
  }
};

/// Changes looks; one that it met before becomes what that became.
class LookChanger {
 public:
  /// `font` is empty when it is to stay.
  LookChanger(const CellsChange& change, const std::string& font) : change_(change), font_(font) {}

  bool apply(SharedLook& look) {
    // Cells that follow each other mostly share their look.
    if (last_ == nullptr || &look.get() != &lastLook_.get()) {
      lastLook_ = look;
      const auto [known, isNew] = known_.try_emplace(look.get());
      if (isNew) {
        known->second.look = SharedLook(changed(look.get()));
        known->second.isOther = known->second.look != look;
      }
      last_ = &known->second;
    }
    if (!last_->isOther) return false;
    look = last_->look;
    return true;
  }

 private:
  struct Outcome {
    SharedLook look;
    bool isOther = false;
  };

  TextLook changed(const TextLook& old) const {
    TextLook look;
    if (!change_.revertsToDefault) look = old;
    if (!change_.textColor.empty()) look.textColor = change_.textColor;
    if (!change_.backgroundColor.empty()) look.backgroundColor = change_.backgroundColor;
    if (change_.bold) look.bold = change_.bold;
    if (change_.italic) look.italic = change_.italic;
    if (change_.underline) look.underlined = change_.underline;
    if (!font_.empty()) look.font = font_;
    if (change_.fontSize > 0) look.size = change_.fontSize;
    return look;
  }

  const CellsChange& change_;
  const std::string& font_;
  std::unordered_map<TextLook, Outcome, LookHash> known_;
  SharedLook lastLook_;  ///< keeps its address from being used again
  const Outcome* last_ = nullptr;
};

/// The changes in one table.
class TableCells {
 public:
  TableCells(PivotTable& table, const CellsChange& change, std::optional<DisplayFormat> format,
             const std::string& font)
      : table_(table), change_(change), format_(format), looks_(change, font) {
    if (change.replacement) {
      replacement_ = CellText();
      replacement_->text = *change.replacement;
    } else if (change.replacementValue == kEmptyReplacement) {
      replacement_ = CellText();
    } else if (change.replacementValue) {
      number_ = change.replacementValue;
    }
  }

  bool change(const CellSelection& selection);

 private:
  bool applyTo(CellText& text) const;
  bool applyTo(CellText& text, SharedLook& look) {
    const bool isOtherText = applyTo(text);
    return looks_.apply(look) || isOtherText;
  }
  bool applyToFootnotes();
  bool setWidth(PivotCategory& leaf) const;

  PivotTable& table_;
  const CellsChange& change_;
  std::optional<DisplayFormat> format_;
  std::optional<CellText> replacement_;
  std::optional<double> number_;
  LookChanger looks_;
};

bool isSameNumber(double a, double b) { return a == b || (a != a && b != b); }

bool TableCells::applyTo(CellText& text) const {
  bool isOther = false;
  if (replacement_ && text != *replacement_) {
    text = *replacement_;
    isOther = true;
  }
  if (number_ && (text.kind != CellText::Kind::kNumber || text.secret ||
                  !isSameNumber(text.number, *number_))) {
    const BpFormatSpec kept = text.kind == CellText::Kind::kNumber ? text.format : BpFormatSpec();
    text = CellText();
    text.kind = CellText::Kind::kNumber;
    text.number = *number_;
    text.format = kept;
    isOther = true;
  }
  if (format_ && text.kind == CellText::Kind::kNumber && text.format.display != format_) {
    text.format.display = format_;
    isOther = true;
  }
  return isOther;
}

bool TableCells::applyToFootnotes() {
  bool isOther = looks_.apply(table_.footnoteLook);
  if (!replacement_ && !number_ && !format_) return isOther;
  for (CellText& note : table_.footnotes) isOther = applyTo(note) || isOther;
  for (PivotCell& cell : table_.cells) {
    if (cell.notes.empty()) continue;
    for (CellText& note : cell.notes.edit()) isOther = applyTo(note) || isOther;
  }
  return isOther;
}

bool TableCells::setWidth(PivotCategory& leaf) const {
  int width = change_.revertsToDefault ? 0 : leaf.width;
  if (change_.columnWidth > 0) width = change_.columnWidth;
  return std::exchange(leaf.width, width) != width;
}

bool TableCells::change(const CellSelection& selection) {
  bool isOther = false;
  const auto category = [&](const CellSelection::Label& label) -> PivotCategory& {
    return table_.dimensions[label.dimension].categories[label.category];
  };
  for (const std::uint32_t index : selection.cells) {
    PivotCell& cell = table_.cells[index];
    isOther = applyTo(cell.value, cell.look) || isOther;
  }
  for (const CellSelection::Label& label : selection.labels) {
    isOther = applyTo(category(label).label, category(label).look) || isOther;
  }
  for (const CellSelection::Label& column : selection.columns) {
    isOther = setWidth(category(column)) || isOther;
  }
  if (selection.title) {
    isOther = applyTo(table_.title, table_.titleLook) || isOther;
    // Who says what a title is wants to see it.
    const bool isReplaced = replacement_ || number_;
    if (isReplaced) isOther = std::exchange(table_.titleHidden, false) || isOther;
  }
  if (selection.caption) isOther = applyTo(table_.caption, table_.captionLook) || isOther;
  if (selection.footnotes) isOther = applyToFootnotes() || isOther;
  return isOther;
}

}  // namespace

CellsChanger::CellsChanger(const CellsChange& change, ChangeNotes& notes, const FontCheck& isFont)
    : change_(change),
      selector_(change),
      format_(usableFormat(change.format, notes)),
      font_(usableFont(change.font, notes, isFont)) {}

bool CellsChanger::apply(PivotTable& table) const {
  return TableCells(table, change_, format_, font_).change(selector_.select(table));
}

}  // namespace vornwout
