// What an object of an output document holds: a table, a text, a chart, a log, notes or a message.
//
// Contents are values; a table and the bytes of a medium are shared, because nobody changes them
// where they are. All texts are UTF-8.
#pragma once

#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "platform/adapter/output_sink.h"
#include "platform/pivot/cell_text.h"
#include "platform/pivot/pivot_table.h"

namespace vornwout {

/// The source text of a command.
struct LogContent {
  std::string text;
  friend bool operator==(const LogContent&, const LogContent&) = default;
};

struct NoteEntry {
  CellText label;
  CellText value;
  friend bool operator==(const NoteEntry&, const NoteEntry&) = default;
};

/// What a procedure notes about itself, in the order in which it was noted.
struct NotesContent {
  std::vector<NoteEntry> entries;
  friend bool operator==(const NotesContent&, const NotesContent&) = default;
};

/// A warning or an error as it is shown.
struct MessageContent {
  MessageSeverity severity = MessageSeverity::kError;
  std::string text;
  SourcePlace place;
  friend bool operator==(const MessageContent&, const MessageContent&) = default;
};

/// How a run of text looks; what is empty or 0 is left to whoever shows it.
struct TextStyle {
  bool bold = false;
  bool italic = false;
  bool underlined = false;
  bool monospaced = false;
  std::string font;   ///< a family's name
  double size = 0;    ///< points
  std::string color;  ///< "#rrggbb"
  friend bool operator==(const TextStyle&, const TextStyle&) = default;
};

struct TextRun {
  std::string text;
  TextStyle style;
  std::string link;  ///< where a link goes; empty for none
  friend bool operator==(const TextRun&, const TextRun&) = default;
};

struct TextParagraph {
  enum class Kind { kPlain, kHeading, kBullet, kNumbered, kQuote, kCode };
  Kind kind = Kind::kPlain;
  int level = 0;   ///< of a heading 1 to 6; how deep a list item or a quote stands, from 1
  int number = 0;  ///< of an item of a numbered list
  std::vector<TextRun> runs;
  friend bool operator==(const TextParagraph&, const TextParagraph&) = default;
};

/// A text of paragraphs, each of styled runs.
struct TextContent {
  std::vector<TextParagraph> paragraphs;
  friend bool operator==(const TextContent&, const TextContent&) = default;
};

/// A chart, or a model that another program made: bytes of a media type.
struct MediaContent {
  std::string mediaType;  ///< "image/svg+xml", "image/png"; of a model whatever it came as
  std::shared_ptr<const std::string> bytes;
  friend bool operator==(const MediaContent& a, const MediaContent& b) {
    return a.mediaType == b.mediaType &&
           (a.bytes == b.bytes || (a.bytes && b.bytes && *a.bytes == *b.bytes));
  }
};

/// Never null.
using TableContent = std::shared_ptr<const PivotTable>;

/// Headings have no content of their own.
using ObjectContent = std::variant<std::monostate, TableContent, LogContent, NotesContent,
                                   MessageContent, TextContent, MediaContent>;

/// Whether two contents are the same, a table by its cells and not by its address.
bool sameContent(const ObjectContent& a, const ObjectContent& b);

}  // namespace vornwout
