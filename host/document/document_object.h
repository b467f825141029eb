// An object of an output document: a heading, a log, a table, notes or a message.
//
// Objects are values that own what stands below them; only headings have children. A table is
// shared because the builder hands the same finished table to every sink and nobody changes it
// afterwards. All texts are UTF-8.
#pragma once

#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "platform/adapter/output_sink.h"
#include "platform/pivot/cell_text.h"
#include "platform/pivot/pivot_table.h"

namespace vornwout {

/// What an object is to the commands that select objects.
enum class ObjectType {
  kTable,
  kChart,
  kText,
  kLog,
  kWarning,
  kNotes,
  kPageTitle,
  kModel,
  kTree,
  kHeading,
  kOther,
  kUnknown,
};

/// The source text of a command.
struct LogContent {
  std::string text;
};

struct NoteEntry {
  CellText label;
  CellText value;
};

/// What a procedure notes about itself, in the order in which it was noted.
struct NotesContent {
  std::vector<NoteEntry> entries;
};

/// A warning or an error as it is shown.
struct MessageContent {
  MessageSeverity severity = MessageSeverity::kError;
  std::string text;
  SourcePlace place;
};

using TableContent = std::shared_ptr<const PivotTable>;

/// Headings have no content of their own.
using ObjectContent =
    std::variant<std::monostate, TableContent, LogContent, NotesContent, MessageContent>;

struct DocumentObject {
  ObjectType type = ObjectType::kUnknown;
  std::string command;  ///< upper-case name of the command that produced it
  int run = 0;          ///< which run of that command in its document, from 1
  std::string subtype;
  std::string label;  ///< the text in the outline
  bool visible = true;
  ObjectContent content;
  std::vector<DocumentObject> children;  ///< of a heading
};

}  // namespace vornwout
