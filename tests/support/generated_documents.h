// Makes documents at random, of everything that an object may hold, for tests that want any
// document.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <utility>

#include "host/document/document.h"
#include "tests/support/png_picture.h"

namespace vornwout {

/// The same seed gives the same document, on every system.
class DocumentGenerator {
 public:
  explicit DocumentGenerator(unsigned int seed) : random_(seed) {}

  std::unique_ptr<Document> document(int objects) {
    auto document = std::make_unique<Document>(1, "", false);
    while (objects > 0) {
      DocumentObject heading;
      fill(heading, ObjectType::kHeading);
      heading.run = document->beginRun(heading.command);
      const int below = std::min(objects, upTo(6));
      for (int i = 0; i < below; ++i) heading.children.push_back(object(2));
      objects -= below + 1;
      document->append(std::move(heading));
    }
    return document;
  }

  DocumentObject object(int depth = 0) {
    DocumentObject object;
    const int kind = upTo(8);
    if (kind == 8 && depth > 0) {
      fill(object, ObjectType::kHeading);
      for (int i = upTo(3); i > 0; --i) object.children.push_back(this->object(depth - 1));
      return object;
    }
    static constexpr ObjectType kTypes[] = {
        ObjectType::kTable, ObjectType::kChart,     ObjectType::kText,
        ObjectType::kLog,   ObjectType::kWarning,   ObjectType::kNotes,
        ObjectType::kModel, ObjectType::kPageTitle, ObjectType::kOther};
    const ObjectType type = kTypes[kind];
    fill(object, type);
    object.content = content(type);
    return object;
  }

  ObjectContent content(ObjectType type) {
    switch (type) {
      case ObjectType::kTable:
        return std::make_shared<const PivotTable>(table());
      case ObjectType::kChart:
        if (chance()) return MediaContent{"image/svg+xml", svg()};
        return MediaContent{"image/png", std::make_shared<const std::string>(pngPicture(*media()))};
      case ObjectType::kModel:
        return MediaContent{"application/xml", media()};
      case ObjectType::kText:
      case ObjectType::kPageTitle:
        return styledText();
      case ObjectType::kLog:
        return LogContent{text()};
      case ObjectType::kWarning:
        return MessageContent{
            static_cast<MessageSeverity>(1 + upTo(2)), text(), {upTo(9), upTo(9)}};
      case ObjectType::kNotes: {
        NotesContent notes;
        for (int i = upTo(4); i > 0; --i) notes.entries.push_back({cellText(), cellText()});
        return notes;
      }
      default:
        return LogContent{text()};
    }
  }

  PivotTable table() {
    PivotTable table;
    table.title = cellText();
    table.subtype = cellText();
    if (chance()) table.caption = cellText();
    if (chance()) table.summary = text();
    table.titleLook = look();
    table.captionLook = look();
    table.footnoteLook = look();
    if (chance()) table.tableLook = tableLook();
    for (int i = upTo(2); i > 0; --i) table.footnotes.push_back(cellText());
    if (chance()) table.flag = chance();
    table.titleHidden = chance();
    if (chance()) table.minDataColumnWidth = upTo(100);
    if (chance()) table.maxDataColumnWidth = upTo(500);
    for (int i = 1 + upTo(2); i > 0; --i) table.dimensions.push_back(dimension());
    for (int i = upTo(20); i > 0; --i) addCell(table);
    return table;
  }

  /// Any text, also of characters that have a meaning to XML or no place in it.
  std::string text() {
    static const char* const kPieces[] = {"a",  "Ünïcödé", "日本", " ",           "  ",   "\n",
                                          "\t", "\r\n",    "<b>",  "&amp;",       "\"",   "]]>",
                                          "^1", "'",       "\x01", "\xFF",        "\xC3", "x=y;",
                                          "--", "🎉",       "\x7f", "\xEF\xBF\xBE"};
    std::string text;
    // Most texts are harmless; a rare one is not.
    const int last = upTo(5) == 0 ? 21 : 3;
    for (int i = upTo(6); i > 0; --i) text += kPieces[upTo(last)];
    return text;
  }

  /// From 0 to `last`.
  int upTo(int last) { return static_cast<int>(random_() % (static_cast<unsigned int>(last) + 1)); }
  bool chance() { return upTo(1) == 0; }

 private:
  void fill(DocumentObject& object, ObjectType type) {
    object.type = type;
    object.command = chance() ? "OUTPUT COMMENT" : text();
    object.run = upTo(3);
    object.subtype = text();
    object.label = text();
    object.visible = chance();
    if (chance()) object.size = ObjectSize{upTo(100) / 4.0, upTo(100) / 3.0, chance()};
    if (chance()) object.index = text();
  }

  CellText cellText(int depth = 2) {
    CellText cell;
    cell.translatable = chance();
    if (chance()) cell.format = format();
    switch (upTo(depth > 0 ? 3 : 1)) {
      case 0:
        cell.kind = CellText::Kind::kNumber;
        cell.number = number();
        break;
      case 3:
        cell.kind = CellText::Kind::kComposite;
        cell.text = text();
        for (int i = upTo(2); i > 0; --i) cell.arguments.push_back(cellText(depth - 1));
        cell.hasSublist = chance();
        for (int i = cell.hasSublist ? upTo(2) : 0; i > 0; --i) {
          cell.sublist.push_back(cellText(depth - 1));
        }
        break;
      default:
        cell.text = text();
    }
    return cell;
  }

  double number() {
    static constexpr double kNumbers[] = {0,    -0.0,  1,       -1.5,   0.1,  1e300, -5e-324,
                                          3e20, 12345, 1.0 / 3, 2.5e-7, 1e15, 100};
    const int choice = upTo(16);
    if (choice == 16) return std::numeric_limits<double>::infinity();
    return choice < 13 ? kNumbers[choice] : static_cast<double>(random_()) / 7;
  }

  BpFormatSpec format() {
    BpFormatSpec format;
    if (chance()) {
      format.type = BpFormatSpec::Type::kCount;
    } else {
      static const char* const kFormats[] = {"F8.2", "COMMA10", "DATE11", "PCT5.1", "A20"};
      format.display = parseDisplayFormat(kFormats[upTo(4)]);
    }
    return format;
  }

  PivotDimension dimension() {
    PivotDimension dimension;
    dimension.label = cellText();
    dimension.sort = upTo(2);
    if (chance()) dimension.position = PivotPosition{upTo(4), 1 + upTo(2), chance(), chance()};
    int group = -1;
    for (int i = 1 + upTo(5); i > 0; --i) {
      const bool isGroup = upTo(3) == 0;
      const int here = static_cast<int>(dimension.categories.size());
      dimension.categories.push_back(
          {cellText(), chance() ? group : -1, isGroup, isGroup ? -1 : dimension.leafCount++,
           static_cast<StatisticKind>(upTo(7)), look(), chance() ? upTo(2000) : 0});
      if (isGroup) group = here;
    }
    if (chance() && dimension.leafCount > 0) dimension.shownLeaf = upTo(dimension.leafCount - 1);
    return dimension;
  }

  std::optional<bool> choice() {
    const int value = upTo(2);
    return value == 2 ? std::nullopt : std::optional(value == 1);
  }

  Shared<TableLook> tableLook() {
    TableLook look;
    look.name = "Generated";
    look.banding.fill = chance() ? "#f0f4fa" : "";
    AreaLook& area = look.areas[static_cast<std::size_t>(upTo(kLookAreaCount - 1))];
    area.text.bold = chance();
    area.text.size = 1 + upTo(30);
    area.borders.bottom = {LookLineStyle::kDashed, 1.5, "#102030"};
    area.margins.left = upTo(12);
    return Shared<TableLook>(look);
  }

  SharedLook look() {
    TextLook look;
    if (chance()) return look;
    if (chance()) look.textColor = "#80ff00";
    if (upTo(4) == 0) look.backgroundColor = text();
    look.bold = choice();
    look.italic = choice();
    look.underlined = choice();
    if (upTo(4) == 0) look.font = text();
    if (chance()) look.size = (1 + upTo(1999)) / 2.0;
    return look;
  }

  void addCell(PivotTable& table) {
    PivotCell cell;
    for (const PivotDimension& dimension : table.dimensions) {
      if (dimension.leafCount == 0) return;
      cell.at.push_back(upTo(dimension.leafCount - 1));
    }
    for (const PivotCell& other : table.cells) {
      if (other.at == cell.at) return;
    }
    cell.value = cellText();
    for (int i = upTo(8) == 0 ? 2 : 0; i > 0; --i) cell.notes.push_back(cellText());
    // Cells that follow each other often look alike.
    cell.look = !table.cells.empty() && chance() ? table.cells.back().look : look();
    table.cells.push_back(std::move(cell));
  }

  TextContent styledText() {
    TextContent content;
    for (int i = upTo(4); i > 0; --i) {
      TextParagraph& paragraph = content.paragraphs.emplace_back();
      paragraph.kind = static_cast<TextParagraph::Kind>(upTo(5));
      paragraph.level = upTo(3);
      paragraph.number = upTo(3);
      for (int k = upTo(3); k > 0; --k) {
        TextStyle style;
        style.bold = chance();
        style.italic = chance();
        style.underlined = chance();
        style.monospaced = chance();
        if (chance()) style.font = "DejaVu Sans";
        if (chance()) style.size = upTo(40) / 2.0;
        if (chance()) style.color = "#102030";
        paragraph.runs.push_back({text(), std::move(style), chance() ? text() : ""});
      }
    }
    return content;
  }

  std::shared_ptr<const std::string> media() {
    std::string bytes(static_cast<std::size_t>(upTo(300)), '\0');
    for (char& byte : bytes) byte = static_cast<char>(random_());
    return std::make_shared<const std::string>(std::move(bytes));
  }

  /// A chart that stays byte for byte what it is when it is read.
  std::shared_ptr<const std::string> svg() {
    return std::make_shared<const std::string>(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + std::to_string(upTo(1000)) + "\"/>");
  }

  std::mt19937 random_;
};

}  // namespace vornwout
