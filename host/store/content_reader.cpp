#include "host/store/content_reader.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "host/looks/table_look_xml.h"
#include "host/store/content_limits.h"
#include "host/store/content_names.h"
#include "host/store/look_xml.h"
#include "host/store/xml_reader.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

/// Arguments within arguments; the writer's own never get near it.
constexpr int kMaxTextDepth = 32;
/// Memory is taken in advance for so many cells at most.
constexpr std::int64_t kMaxReservedCells = 100'000;
/// Table dimensions and table coordinates are counted by int.
constexpr std::int64_t kMaxCount = 1 << 30;

/// Compares byte by byte: the names are short, mostly differ in their first letter, and are asked
/// for millions of times.
template <std::size_t N>
bool equals(const char* text, const char (&wanted)[N]) {
  for (std::size_t i = 0; i < N; ++i) {
    if (text[i] != wanted[i]) return false;
  }
  return true;
}

template <std::size_t N>
bool is(pugi::xml_node node, const char (&name)[N]) {
  return equals(node.name(), name);
}

CellText readCellText(pugi::xml_node node, int depth = 0);

void refuseSecond(pugi::xml_node node) {
  if (node.previous_sibling(node.name())) refuseElement(node, localized("it stands twice"));
}

/// Takes an element that may stand once.
void readOnce(pugi::xml_node node, CellText& text) {
  refuseSecond(node);
  text = readCellText(node);
}

BpFormatSpec readFormat(pugi::xml_node node, const char* name) {
  BpFormatSpec format;
  if (std::strcmp(name, "count") == 0) {
    format.type = BpFormatSpec::Type::kCount;
    return format;
  }
  format.display = parseDisplayFormat(name);
  if (!format.display) refuseElement(node, localized("^1 is no display format", name));
  return format;
}

void readComposite(pugi::xml_node node, CellText& cell, int depth) {
  if (depth >= kMaxTextDepth) refuseElement(node, localized("its arguments are nested too deeply"));
  cell.kind = CellText::Kind::kComposite;
  for (const pugi::xml_node child : node.children()) {
    if (is(child, "template")) {
      if (child.previous_sibling("template")) refuseElement(child, localized("it stands twice"));
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
    if (std::strcmp(attribute.value(), "composite") != 0) {
      refuseElement(node, localized("its kind is unknown"));
    }
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
  } else {
    for (const pugi::xml_node child : node.children()) refuseChild(child);
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

/// `levels` has how deep each category stands, from 0.
void readCategory(pugi::xml_node node, PivotDimension& dimension, LookReader& looks,
                  std::vector<int>& levels) {
  PivotCategory category;
  category.isGroup = is(node, "group");
  category.label = readCellText(node);
  const auto here = static_cast<std::int64_t>(dimension.categories.size());
  category.parent = static_cast<int>(integerAttribute(node, "parent", -1, -1, here - 1));
  if (category.parent >= 0 &&
      !dimension.categories[static_cast<std::size_t>(category.parent)].isGroup) {
    refuseElement(node, localized("its parent is no group"));
  }
  levels.push_back(category.parent < 0 ? 0 : levels[static_cast<std::size_t>(category.parent)] + 1);
  if (levels.back() > kMaxGroupDepth) {
    refuseElement(node, localized("it stands in more than 100 groups"));
  }
  const auto statistic = findStatisticKind(node.attribute("statistic").value());
  if (!statistic) refuseElement(node, localized("its statistic is unknown"));
  category.statistic = *statistic;
  category.look = looks.read(node);
  category.width = static_cast<int>(integerAttribute(node, "width", 0, 0, kMaxColumnWidth));
  if (!category.isGroup) category.leaf = dimension.leafCount++;
  dimension.categories.push_back(std::move(category));
}

PivotDimension readDimension(pugi::xml_node node, LookReader& looks) {
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
  std::vector<int> levels;
  for (const pugi::xml_node child : node.children()) {
    if (is(child, "category") || is(child, "group")) {
      readCategory(child, dimension, looks, levels);
    } else if (is(child, "label")) {
      readOnce(child, dimension.label);
    } else {
      refuseChild(child);
    }
  }
  // Without leaves every number is out of bounds.
  dimension.shownLeaf =
      static_cast<int>(integerAttribute(node, "shown", -1, 0, dimension.leafCount - 1));
  return dimension;
}

const char* pastBlanks(const char* text) {
  while (*text == ' ' || *text == '\t' || *text == '\n' || *text == '\r') ++text;
  return text;
}

void readCoordinates(pugi::xml_node node, const char* text, const PivotTable& table,
                     PivotCell& cell) {
  const char* end = text + std::strlen(text);
  cell.at.reserve(table.dimensions.size());
  text = pastBlanks(text);
  for (const PivotDimension& dimension : table.dimensions) {
    int leaf = 0;
    const auto result = std::from_chars(text, end, leaf);
    if (result.ec != std::errc() || *text == '-' || leaf >= dimension.leafCount) {
      refuseElement(node, localized("it does not stand in one category of every dimension"));
    }
    cell.at.push_back(leaf);
    text = pastBlanks(result.ptr);
  }
  if (text != end)
    refuseElement(node, localized("it stands in more dimensions than the table has"));
}

/// Reads the cells of one table. Cells of a table mostly have one format, which is then parsed
/// once, and mostly stand in order, which shows that no place has two.
class CellReader {
 public:
  CellReader(PivotTable& table, LookReader& looks) : table_(table), looks_(looks) {}

  void read(pugi::xml_node node) {
    PivotCell& cell = table_.cells.emplace_back();
    const char* coordinates = "";
    for (pugi::xml_attribute attribute = node.first_attribute(); attribute;
         attribute = attribute.next_attribute()) {
      // The three that nearly every cell has come first.
      const char* const name = attribute.name();
      if (equals(name, "at")) {
        coordinates = attribute.value();
      } else if (equals(name, "value")) {
        cell.value.kind = CellText::Kind::kNumber;
        cell.value.number = parseDouble(node, attribute.value());
      } else if (equals(name, "format")) {
        cell.value.format = format(node, attribute.value());
      } else if (!readCellAttribute(node, attribute, cell.value)) {
        looks_.note(attribute);
      }
    }
    cell.look = looks_.look(node);
    readCoordinates(node, coordinates, table_, cell);
    readBody(node, cell);
    compareWithPrevious(node);
  }

  /// Refuses cells that have one place, once all are read.
  void checkPlaces(pugi::xml_node table) const {
    if (inOrder_) return;
    bool isRepeated = false;
    if (mayFillOneNumber()) {
      std::vector<std::uint64_t> places;
      places.reserve(table_.cells.size());
      for (const PivotCell& cell : table_.cells) places.push_back(placeNumber(cell.at));
      std::sort(places.begin(), places.end());
      isRepeated = std::adjacent_find(places.begin(), places.end()) != places.end();
    } else {
      std::vector<const CellCoordinates*> places;
      places.reserve(table_.cells.size());
      for (const PivotCell& cell : table_.cells) places.push_back(&cell.at);
      std::sort(places.begin(), places.end(), [](const auto* a, const auto* b) {
        return std::lexicographical_compare(a->begin(), a->end(), b->begin(), b->end());
      });
      isRepeated =
          std::adjacent_find(places.begin(), places.end(),
                             [](const auto* a, const auto* b) { return *a == *b; }) != places.end();
    }
    if (isRepeated) refuseElement(table, localized("two cells stand in one place"));
  }

 private:
  void compareWithPrevious(pugi::xml_node node) {
    if (!inOrder_ || table_.cells.size() < 2) return;
    const CellCoordinates& here = table_.cells.back().at;
    const CellCoordinates& previous = table_.cells[table_.cells.size() - 2].at;
    const auto [a, b] = std::mismatch(previous.begin(), previous.end(), here.begin());
    if (a == previous.end())
      refuseElement(node.parent(), localized("two cells stand in one place"));
    inOrder_ = *a < *b;
  }

  /// Whether all places of the table can be counted by 64 bits.
  bool mayFillOneNumber() const {
    std::uint64_t places = 1;
    for (const PivotDimension& dimension : table_.dimensions) {
      const auto leaves = static_cast<std::uint64_t>(dimension.leafCount);
      if (leaves != 0 && places > std::numeric_limits<std::uint64_t>::max() / leaves) return false;
      places *= leaves;
    }
    return true;
  }

  std::uint64_t placeNumber(const CellCoordinates& at) const {
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < at.size(); ++i) {
      number = number * static_cast<std::uint64_t>(table_.dimensions[i].leafCount) +
               static_cast<std::uint64_t>(at[i]);
    }
    return number;
  }

  BpFormatSpec format(pugi::xml_node node, const char* name) {
    if (lastName_ == nullptr || std::strcmp(lastName_, name) != 0) {
      lastFormat_ = readFormat(node, name);
      lastName_ = name;
    }
    return lastFormat_;
  }

  static void readBody(pugi::xml_node node, PivotCell& cell) {
    const pugi::xml_node first = node.first_child();
    if (!first) return;
    if (!is(first, "content")) {
      readCellBody(node, cell.value, 0);
      return;
    }
    if (cell.value.kind != CellText::Kind::kString) {
      refuseElement(node, localized("it has a value beside its content"));
    }
    cell.value = readCellText(first);
    for (pugi::xml_node note = first.next_sibling(); note; note = note.next_sibling()) {
      if (is(note, "footnote")) {
        cell.notes.push_back(readCellText(note));
      } else {
        refuseChild(note);
      }
    }
  }

  PivotTable& table_;
  LookReader& looks_;
  const char* lastName_ = nullptr;  ///< lies in the part that is being read
  BpFormatSpec lastFormat_;
  bool inOrder_ = true;
};

std::optional<int> readWidth(pugi::xml_node node, const char* name) {
  if (!node.attribute(name)) return std::nullopt;
  return static_cast<int>(integerAttribute(node, name, 0));
}

TableLook readTableLook(pugi::xml_node node) {
  std::ostringstream xml;
  for (const pugi::xml_node child : node.children()) child.print(xml, "", pugi::format_raw);
  try {
    return parseTableLook(xml.str());
  } catch (const LookError& error) {
    refuseElement(node, error.what());
  }
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
  LookReader looks;
  CellReader cells(*table, looks);
  for (const pugi::xml_node child : node.children()) {
    if (is(child, "cell")) {
      cells.read(child);
    } else if (is(child, "dimension")) {
      // Cells know their dimensions by number, so these come first.
      if (!table->cells.empty()) refuseElement(node, localized("a dimension stands behind a cell"));
      if (table->dimensions.size() == kMaxDimensions) {
        refuseElement(node, localized("it holds more than 1,000 dimensions"));
      }
      table->dimensions.push_back(readDimension(child, looks));
    } else if (is(child, "title")) {
      readOnce(child, table->title);
      table->titleLook = looks.read(child);
    } else if (is(child, "subtype")) {
      readOnce(child, table->subtype);
    } else if (is(child, "caption")) {
      readOnce(child, table->caption);
      table->captionLook = looks.read(child);
    } else if (is(child, "summary")) {
      refuseSecond(child);
      table->summary = elementText(child);
    } else if (is(child, "footnote-look")) {
      refuseSecond(child);
      for (const pugi::xml_node part : child.children()) refuseChild(part);
      table->footnoteLook = looks.read(child);
    } else if (is(child, "table-look")) {
      refuseSecond(child);
      table->tableLook = Shared<TableLook>(readTableLook(child));
    } else if (is(child, "footnote")) {
      table->footnotes.push_back(readCellText(child));
    } else {
      refuseChild(child);
    }
  }
  cells.checkPlaces(node);
  return table;
}

NotesContent readNotes(pugi::xml_node node) {
  NotesContent notes;
  for (const pugi::xml_node child : node.children()) {
    if (!is(child, "note")) {
      refuseChild(child);
      continue;
    }
    NoteEntry& entry = notes.entries.emplace_back();
    for (const pugi::xml_node part : child.children()) {
      if (is(part, "label")) {
        readOnce(part, entry.label);
      } else if (is(part, "value")) {
        readOnce(part, entry.value);
      } else {
        refuseChild(part);
      }
    }
  }
  return notes;
}

MessageContent readMessage(pugi::xml_node node) {
  MessageContent message;
  const auto severity = indexOfName(kSeverityNames, node.attribute("severity").value());
  if (!severity) refuseElement(node, localized("its severity is unknown"));
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
    if (!is(child, "paragraph")) {
      refuseChild(child);
      continue;
    }
    TextParagraph& paragraph = text.paragraphs.emplace_back();
    if (const pugi::xml_attribute kind = child.attribute("kind")) {
      const auto named = indexOfName(kParagraphNames, kind.value());
      if (!named) refuseElement(child, localized("its kind is unknown"));
      paragraph.kind = static_cast<TextParagraph::Kind>(*named);
    }
    paragraph.level = static_cast<int>(integerAttribute(child, "level", 0, 0, kMaxCount));
    paragraph.number = static_cast<int>(integerAttribute(child, "number", 0));
    for (const pugi::xml_node run : child.children()) {
      if (is(run, "run")) {
        paragraph.runs.push_back(readRun(run));
      } else {
        refuseChild(run);
      }
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

ObjectContent readAnyContent(pugi::xml_node element) {
  if (is(element, "table")) return readTable(element);
  if (is(element, "log")) return LogContent{elementText(element)};
  if (is(element, "notes")) return readNotes(element);
  if (is(element, "message")) return readMessage(element);
  if (is(element, "text")) return readText(element);
  if (is(element, "media")) return readMedia(element);
  refuseElement(element, localized("no content has this name"));
}

}  // namespace

ObjectContent readContent(pugi::xml_node element, std::size_t partSize) {
  checkElementCounts(element, partSize);
  ObjectContent content = readAnyContent(element);
  checkTextGrowth(element, content);
  return content;
}

}  // namespace vornwout
