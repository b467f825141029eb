// What a modify document asks for, as values; docs/modify-document.md has the document itself.
//
// All texts are UTF-8 with their escapes resolved. A number that was not given is empty, a text
// that was not given too. Nothing here has been compared with any document yet.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/document/document_object.h"

namespace vornwout {

/// The types of objects, by the number of ObjectType.
using ObjectTypes = std::array<bool, kObjectTypeCount>;

struct CommandCondition {
  std::string name;  ///< empty for any command
  bool isLast = false;
  int run = 0;  ///< 0 for any
};

struct LabelCondition {
  enum class Match { kExact, kBegins, kEnds, kContains };
  Match match = Match::kExact;
  std::string text;
};

/// Conditions of one kind are alternatives; different kinds must all hold.
struct ObjectConditions {
  bool visibleOnly = false;
  std::vector<CommandCondition> commands;
  std::vector<std::string> subtypes;
  std::vector<LabelCondition> labels;
  /// From 1 among the objects that all the others leave; 0 for the last one.
  std::vector<int> instances;
};

struct IndexChange {
  enum class Style { kNumber, kLetter, kCapitalLetter, kRoman, kCapitalRoman };
  Style style = Style::kNumber;
  int start = 1;
};

struct GraphChange {
  std::string styleSheet;                   ///< a name; empty for none
  std::vector<std::string> chartTemplates;  ///< contents
};

struct PropertiesChange {
  std::optional<bool> visible;  ///< nothing for "as is", too
  std::optional<std::string> label;
  std::optional<double> width;          ///< points
  std::optional<double> height;         ///< points
  std::optional<double> widthPercent;   ///< of the present one
  std::optional<double> heightPercent;  ///< of the present one
};

/// A dimension in the layers and one of its categories, each by label or by position.
struct LayerChoice {
  std::optional<std::string> layer;
  int layerPosition = 0;  ///< from 1; 0 for all, -1 for none
  std::optional<std::string> category;
  int categoryPosition = 0;  ///< from 1; 0 for the last, -1 for none
};

struct SortChange {
  std::optional<std::string> label;  ///< of the column
  int position = -1;                 ///< of the column, from 1; -1 for none
  bool isAscending = true;
};

struct TableChange {
  std::optional<std::string> title;
  std::optional<std::string> summary;
  bool transposes = false;
  std::optional<SortChange> sort;
  std::string format;
  bool usesDefaultLook = false;
  std::vector<LayerChoice> layers;
  std::string look;  ///< XML of a table look, empty for none
};

struct CellsChange {
  // Which cells.
  bool correlation = false;
  bool count = false;
  bool mean = false;
  bool median = false;
  bool percent = false;
  bool residual = false;
  bool significance = false;
  bool body = false;
  bool headers = false;
  bool footnotes = false;
  bool title = false;
  bool caption = false;
  /// What stands between ";"; where a label of the table holds that sign, neighbours are one.
  std::vector<std::string> labels;
  std::vector<int> positions;
  enum class Dimension { kBoth, kColumns, kRows };
  Dimension dimension = Dimension::kBoth;
  /// "all", "missing", "top(n)", "bottom(n)" or an expression; several are alternatives.
  std::vector<std::string> conditions;

  // What is done to them.
  std::string applyTo;  ///< CELL, COLUMN, ROW, COLUMNDATA, ROWDATA, COLUMNHEADER, ROWHEADER, empty
  bool revertsToDefault = false;
  std::optional<bool> bold;
  std::optional<bool> italic;
  std::optional<bool> underline;
  int columnWidth = 0;          ///< points, 0 for none
  double fontSize = 0;          ///< points, 0 for none
  std::string textColor;        ///< "#rrggbb", empty for none
  std::string backgroundColor;  ///< likewise
  std::string format;           ///< a display format's name
  std::string font;
  std::optional<std::string> replacement;
  std::optional<double> replacementValue;
};

struct TextChange {
  std::optional<std::string> text;
  std::string font;
  double fontSize = 0;  ///< points, 0 for none
  std::optional<bool> bold;
  std::optional<bool> italic;
  std::optional<bool> underline;
  std::string color;  ///< "#rrggbb", empty for none
};

/// One group of the command.
struct ModifyEvent {
  ObjectTypes types{};
  ObjectConditions conditions;
  std::optional<IndexChange> index;
  bool deletes = false;
  std::optional<GraphChange> graph;
  std::optional<PropertiesChange> properties;
  std::optional<TableChange> table;
  std::vector<CellsChange> cells;
  std::optional<TextChange> text;
};

struct ModifyRequest {
  std::string documentName;  ///< "*" for the active one, empty for all open ones
  std::vector<ModifyEvent> events;
};

}  // namespace vornwout
