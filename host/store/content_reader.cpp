#include "host/store/content_reader.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string>
#include <utility>

#include <fmt/format.h>

#include "host/store/content_limits.h"
#include "host/store/content_names.h"
#include "host/store/xml_reader.h"

namespace vornwout {
namespace {

/// Arguments within arguments; the writer's own never get near it.
constexpr int kMaxTextDepth = 32;
/// Memory is taken in advance for so many cells at most.
constexpr std::int64_t kMaxReservedCells = 100'000;
/// Table dimensions and table coordinates are counted by int.
constexpr std::int64_t kMaxCount = 1 << 30;

bool is(pugi::xml_node node, const char* name) { return std::strcmp(node.name(), name) == 0; }

[[noreturn]] void refuseChild(pugi::xml_node child) {
  refuseElement(child.parent(), fmt::format("it holds an element {}", child.name()));
}

BpFormatSpec readFormat(pugi::xml_node node, const char* name) {
  BpFormatSpec format;
  if (std::strcmp(name, "count") == 0) {
    format.type = BpFormatSpec::Type::kCount;
    return format;
  }
  format.display = parseDisplayFormat(name);
  if (!format.display) refuseElement(node, fmt::format("{} is no display format", name));
  return format;
}

CellText readCellText(pugi::xml_node node, int depth = 0);

void readComposite(pugi::xml_node node, CellText& cell, int depth) {
  if (depth >= kMaxTextDepth) refuseElement(node, "its arguments are nested too deeply");
  cell.kind = CellText::Kind::kComposite;
  for (const pugi::xml_node child : node.children()) {
    if (is(child, "template")) {
      cell.text = elementText(child);
    } else if (is(child, "argument")) {
      cell.arguments.push_back(readCellText(child, depth + 1));
    } else if (is(child, "item")) {
      cell.sublist.push_back(readCellText(child, depth + 1));
    } else {
      refuseChild(child);
    }
  }
}

/// Takes an attribute that says something about a cell's content; false for any other.
bool readCellAttribute(pugi::xml_node node, pugi::xml_attribute attribute, CellText& cell) {
  const char* name = attribute.name();
  if (std::strcmp(name, "value") == 0) {
    cell.kind = CellText::Kind::kNumber;
    cell.number = parseDouble(node, attribute.value());
  } else if (std::strcmp(name, "format") == 0) {
    cell.format = readFormat(node, attribute.value());
  } else if (std::strcmp(name, "translatable") == 0) {
    cell.translatable = parseFlag(node, attribute);
  } else if (std::strcmp(name, "list") == 0) {
    cell.hasSublist = parseFlag(node, attribute);
  } else if (std::strcmp(name, "kind") == 0) {
    cell.kind = CellText::Kind::kComposite;
  } else {
    return false;
  }
  return true;
}

/// Reads what stands in the element, once its attributes are read.
void readCellBody(pugi::xml_node node, CellText& cell, int depth) {
  if (cell.kind == CellText::Kind::kComposite) {
    readComposite(node, cell, depth);
  } else if (cell.kind == CellText::Kind::kString) {
    cell.text = elementText(node);
  }
}

CellText readCellText(pugi::xml_node node, int depth) {
  CellText cell;
  for (const pugi::xml_attribute attribute : node.attributes()) {
    readCellAttribute(node, attribute, cell);
  }
  readCellBody(node, cell, depth);
  return cell;
}

void readCategory(pugi::xml_node node, PivotDimension& dimension) {
  PivotCategory category;
  category.isGroup = is(node, "group");
  category.label = readCellText(node);
  const auto here = static_cast<std::int64_t>(dimension.categories.size());
  category.parent = static_cast<int>(integerAttribute(node, "parent", -1, -1, here - 1));
  if (category.parent >= 0 &&
      !dimension.categories[static_cast<std::size_t>(category.parent)].isGroup) {
    refuseElement(node, "its parent is no group");
  }
  const auto statistic = findStatisticKind(node.attribute("statistic").value());
  if (!statistic) refuseElement(node, "its statistic is unknown");
  category.statistic = *statistic;
  if (!category.isGroup) category.leaf = dimension.leafCount++;
  dimension.categories.push_back(std::move(category));
}

PivotDimension readDimension(pugi::xml_node node) {
  PivotDimension dimension;
  dimension.sort = static_cast<int>(integerAttribute(node, "sort", 0));
  if (const pugi::xml_attribute place = node.attribute("place")) {
    PivotPosition position;
    const auto named = indexOfName(kPlaceNames, place.value());
    position.place = named ? *named : static_cast<int>(integerAttribute(node, "place", 0));
    position.index = static_cast<int>(integerAttribute(node, "index", 1));
    position.hideLabel = flagAttribute(node, "hide-label");
    position.hideCategories = flagAttribute(node, "hide-categories");
    dimension.position = position;
  }
  for (const pugi::xml_node child : node.children()) {
    if (is(child, "category") || is(child, "group")) {
      readCategory(child, dimension);
    } else if (is(child, "label")) {
      dimension.label = readCellText(child);
    } else {
      refuseChild(child);
    }
  }
  return dimension;
}

void readCoordinates(pugi::xml_node node, const char* text, const PivotTable& table,
                     PivotCell& cell) {
  const char* end = text + std::strlen(text);
  cell.at.reserve(table.dimensions.size());
  for (const PivotDimension& dimension : table.dimensions) {
    int leaf = 0;
    const auto result = std::from_chars(text, end, leaf);
    if (result.ec != std::errc() || leaf < 0 || leaf >= dimension.leafCount) {
      refuseElement(node, "it does not stand in one category of every dimension");
    }
    cell.at.push_back(leaf);
    text = result.ptr;
    if (text != end && *text == ' ') ++text;
  }
  if (text != end) refuseElement(node, "it stands in more dimensions than the table has");
}

/// Reads the cells of one table. Cells of a table mostly have one format, which is then parsed
/// once.
class CellReader {
 public:
  explicit CellReader(PivotTable& table) : table_(table) {}

  void read(pugi::xml_node node) {
    PivotCell& cell = table_.cells.emplace_back();
    const char* coordinates = "";
    for (pugi::xml_attribute attribute = node.first_attribute(); attribute;
         attribute = attribute.next_attribute()) {
      // The three that nearly every cell has come first.
      const std::string_view name = attribute.name();
      if (name == "at") {
        coordinates = attribute.value();
      } else if (name == "value") {
        cell.value.kind = CellText::Kind::kNumber;
        cell.value.number = parseDouble(node, attribute.value());
      } else if (name == "format") {
        cell.value.format = format(node, attribute.value());
      } else if (!readCellAttribute(node, attribute, cell.value)) {
        readLook(node, attribute, cell);
      }
    }
    readCoordinates(node, coordinates, table_, cell);
    readBody(node, cell);
  }

 private:
  BpFormatSpec format(pugi::xml_node node, const char* name) {
    if (lastName_ == nullptr || std::strcmp(lastName_, name) != 0) {
      lastFormat_ = readFormat(node, name);
      lastName_ = name;
    }
    return lastFormat_;
  }

  static void readLook(pugi::xml_node node, pugi::xml_attribute attribute, PivotCell& cell) {
    const std::string_view name = attribute.name();
    if (name == "bold") {
      cell.bold = parseFlag(node, attribute);
    } else if (name.starts_with("color")) {
      cell.textColor = textAttribute(node, "color");
    } else if (name.starts_with("background")) {
      cell.backgroundColor = textAttribute(node, "background");
    }
  }

  static void readBody(pugi::xml_node node, PivotCell& cell) {
    const pugi::xml_node first = node.first_child();
    if (!first) return;
    if (!is(first, "content")) {
      readCellBody(node, cell.value, 0);
      return;
    }
    cell.value = readCellText(first);
    for (pugi::xml_node note = first.next_sibling(); note; note = note.next_sibling()) {
      if (!is(note, "footnote")) refuseChild(note);
      cell.notes.push_back(readCellText(note));
    }
  }

  PivotTable& table_;
  const char* lastName_ = nullptr;  ///< lies in the part that is being read
  BpFormatSpec lastFormat_;
};

std::optional<int> readWidth(pugi::xml_node node, const char* name) {
  if (!node.attribute(name)) return std::nullopt;
  return static_cast<int>(integerAttribute(node, name, 0));
}

TableContent readTable(pugi::xml_node node) {
  auto table = std::make_shared<PivotTable>();
  if (node.attribute("flag")) table->flag = flagAttribute(node, "flag");
  table->titleHidden = flagAttribute(node, "hide-title");
  table->minDataColumnWidth = readWidth(node, "min-column-width");
  table->maxDataColumnWidth = readWidth(node, "max-column-width");
  // Only for the memory that it saves, so a wrong number does no harm.
  table->cells.reserve(static_cast<std::size_t>(
      std::min<std::int64_t>(kMaxReservedCells, integerAttribute(node, "cells", 0, 0))));
  CellReader cells(*table);
  for (const pugi::xml_node child : node.children()) {
    if (is(child, "cell")) {
      cells.read(child);
    } else if (is(child, "dimension")) {
      // Cells know their dimensions by number, so these come first.
      if (!table->cells.empty()) refuseElement(node, "a dimension stands behind a cell");
      table->dimensions.push_back(readDimension(child));
    } else if (is(child, "title")) {
      table->title = readCellText(child);
    } else if (is(child, "subtype")) {
      table->subtype = readCellText(child);
    } else if (is(child, "caption")) {
      table->caption = readCellText(child);
    } else if (is(child, "footnote")) {
      table->footnotes.push_back(readCellText(child));
    } else {
      refuseChild(child);
    }
  }
  return table;
}

NotesContent readNotes(pugi::xml_node node) {
  NotesContent notes;
  for (const pugi::xml_node child : node.children()) {
    if (!is(child, "note")) refuseChild(child);
    notes.entries.push_back(
        {readCellText(child.child("label")), readCellText(child.child("value"))});
  }
  return notes;
}

MessageContent readMessage(pugi::xml_node node) {
  MessageContent message;
  const auto severity = indexOfName(kSeverityNames, node.attribute("severity").value());
  if (!severity) refuseElement(node, "its severity is unknown");
  message.severity = static_cast<MessageSeverity>(*severity + 1);
  message.text = elementText(node);
  message.place.line = static_cast<int>(integerAttribute(node, "line", 0, 0));
  message.place.column = static_cast<int>(integerAttribute(node, "column", 0, 0));
  return message;
}

TextRun readRun(pugi::xml_node node) {
  TextRun run;
  run.text = elementText(node);
  run.style.bold = flagAttribute(node, "bold");
  run.style.italic = flagAttribute(node, "italic");
  run.style.underlined = flagAttribute(node, "underlined");
  run.style.monospaced = flagAttribute(node, "monospaced");
  run.style.font = textAttribute(node, "font");
  if (const pugi::xml_attribute size = node.attribute("size")) {
    run.style.size = parseDouble(node, size.value());
  }
  run.style.color = textAttribute(node, "color");
  run.link = textAttribute(node, "link");
  return run;
}

TextContent readText(pugi::xml_node node) {
  TextContent text;
  for (const pugi::xml_node child : node.children()) {
    if (!is(child, "paragraph")) refuseChild(child);
    TextParagraph& paragraph = text.paragraphs.emplace_back();
    if (const pugi::xml_attribute kind = child.attribute("kind")) {
      const auto named = indexOfName(kParagraphNames, kind.value());
      if (!named) refuseElement(child, "its kind is unknown");
      paragraph.kind = static_cast<TextParagraph::Kind>(*named);
    }
    paragraph.level = static_cast<int>(integerAttribute(child, "level", 0, 0, kMaxCount));
    paragraph.number = static_cast<int>(integerAttribute(child, "number", 0));
    for (const pugi::xml_node run : child.children()) {
      if (!is(run, "run")) refuseChild(run);
      paragraph.runs.push_back(readRun(run));
    }
  }
  return text;
}

MediaContent readMedia(pugi::xml_node node) {
  MediaContent media;
  media.mediaType = textAttribute(node, "type");
  media.bytes = std::make_shared<const std::string>(elementText(node));
  return media;
}

}  // namespace

ObjectContent readContent(pugi::xml_node element) {
  checkTextElements(element);
  if (is(element, "table")) return readTable(element);
  if (is(element, "log")) return LogContent{elementText(element)};
  if (is(element, "notes")) return readNotes(element);
  if (is(element, "message")) return readMessage(element);
  if (is(element, "text")) return readText(element);
  if (is(element, "media")) return readMedia(element);
  refuseElement(element, "no content has this name");
}

}  // namespace vornwout
