#include "host/store/content_writer.h"

#include <algorithm>
#include <span>
#include <string>

#include "host/looks/table_look_xml.h"
#include "host/store/content_names.h"
#include "host/store/look_xml.h"
#include "platform/adapter/progress_listener.h"

namespace vornwout {
namespace {

constexpr std::size_t kCellsPerReport = 10'000;

template <typename Enum>
std::size_t indexOf(Enum value) {
  return static_cast<std::size_t>(value);
}

std::string formatName(const BpFormatSpec& format) {
  if (format.display) return displayFormatName(*format.display);
  return format.type == BpFormatSpec::Type::kCount ? "count" : "";
}

/// What a cell or a label holds, into the element that was just started.
void writeCellText(XmlWriter& xml, const CellText& cell);

void writeTextElement(XmlWriter& xml, std::string_view name, const CellText& cell) {
  xml.start(name);
  writeCellText(xml, cell);
  xml.end(name);
}

void writeCellText(XmlWriter& xml, const CellText& cell) {
  const std::string format = formatName(cell.format);
  xml.flag("translatable", cell.translatable);
  xml.optionalAttribute("format", format);
  switch (cell.kind) {
    case CellText::Kind::kNumber:
      xml.attribute("value", cell.number);
      return;
    case CellText::Kind::kString:
      xml.text(cell.secret ? std::string_view(kHiddenSecret) : std::string_view(cell.text));
      return;
    case CellText::Kind::kComposite:
      break;
  }
  xml.attribute("kind", "composite");
  xml.flag("list", cell.hasSublist);
  xml.start("template");
  xml.text(cell.secret ? std::string_view(kHiddenSecret) : std::string_view(cell.text));
  xml.end("template");
  for (const CellText& argument : cell.arguments) writeTextElement(xml, "argument", argument);
  for (const CellText& item : cell.sublist) writeTextElement(xml, "item", item);
}

/// A text with a look of its own.
void writeLookedElement(XmlWriter& xml, std::string_view name, const CellText& cell,
                        const SharedLook& look) {
  xml.start(name);
  writeLook(xml, look);
  writeCellText(xml, cell);
  xml.end(name);
}

bool isEmptyString(const CellText& cell) {
  return cell.kind == CellText::Kind::kString && cell.text.empty() && !cell.translatable &&
         cell.format == BpFormatSpec{};
}

void writeDimension(XmlWriter& xml, const PivotDimension& dimension) {
  xml.start("dimension");
  if (dimension.sort != 0) xml.attribute("sort", std::int64_t{dimension.sort});
  if (dimension.position) {
    const PivotPosition& position = *dimension.position;
    const auto place = static_cast<std::size_t>(position.place);
    if (position.place >= 0 && place < kPlaceNames.size()) {
      xml.attribute("place", kPlaceNames[place]);
    } else {
      xml.attribute("place", std::int64_t{position.place});
    }
    xml.attribute("index", std::int64_t{position.index});
    xml.flag("hide-label", position.hideLabel);
    xml.flag("hide-categories", position.hideCategories);
  }
  if (dimension.shownLeaf >= 0 && dimension.shownLeaf < dimension.leafCount) {
    xml.attribute("shown", std::int64_t{dimension.shownLeaf});
  }
  xml.newLine();
  writeTextElement(xml, "label", dimension.label);
  for (const PivotCategory& category : dimension.categories) {
    const std::string_view name = category.isGroup ? "group" : "category";
    xml.newLine();
    xml.start(name);
    if (category.parent >= 0) xml.attribute("parent", std::int64_t{category.parent});
    xml.optionalAttribute("statistic", statisticKindName(category.statistic));
    if (category.width > 0) {
      xml.attribute("width", std::int64_t{std::min(category.width, kMaxColumnWidth)});
    }
    writeLook(xml, category.look);
    writeCellText(xml, category.label);
    xml.end(name);
  }
  xml.newLine();
  xml.end("dimension");
  xml.newLine();
}

/// Writes the cells of one table. Cells of a table mostly have one format, which is then named
/// once.
class CellWriter {
 public:
  explicit CellWriter(XmlWriter& xml) : xml_(xml) {}

  void write(const PivotCell& cell) {
    xml_.start("cell");
    xml_.attribute("at", std::span<const int>(cell.at));
    writeLook(xml_, cell.look);
    // The usual cell has nothing but a value, which then needs no element of its own.
    if (!cell.notes.empty()) {
      writeTextElement(xml_, "content", cell.value);
      for (const CellText& note : cell.notes) writeTextElement(xml_, "footnote", note);
    } else if (cell.value.kind == CellText::Kind::kNumber) {
      xml_.flag("translatable", cell.value.translatable);
      writeFormat(cell.value.format);
      xml_.attribute("value", cell.value.number);
    } else {
      writeCellText(xml_, cell.value);
    }
    xml_.end("cell");
    xml_.newLine();
  }

 private:
  void writeFormat(const BpFormatSpec& format) {
    if (format != lastFormat_) {
      lastFormat_ = format;
      lastName_ = formatName(format);
    }
    xml_.optionalAttribute("format", lastName_);
  }

  XmlWriter& xml_;
  BpFormatSpec lastFormat_;
  std::string lastName_;
};

void writeTable(XmlWriter& xml, std::uint64_t id, const PivotTable& table) {
  xml.start("table");
  xml.attribute("object", static_cast<std::int64_t>(id));
  if (table.flag) xml.attribute("flag", *table.flag ? "true" : "false");
  xml.flag("hide-title", table.titleHidden);
  if (table.minDataColumnWidth) {
    xml.attribute("min-column-width", std::int64_t{*table.minDataColumnWidth});
  }
  if (table.maxDataColumnWidth) {
    xml.attribute("max-column-width", std::int64_t{*table.maxDataColumnWidth});
  }
  // So that a reader can take the memory at once.
  xml.attribute("cells", static_cast<std::int64_t>(table.cells.size()));
  xml.newLine();
  writeLookedElement(xml, "title", table.title, table.titleLook);
  writeTextElement(xml, "subtype", table.subtype);
  if (!isEmptyString(table.caption) || !table.captionLook.empty()) {
    writeLookedElement(xml, "caption", table.caption, table.captionLook);
  }
  if (!table.summary.empty()) {
    xml.start("summary");
    xml.text(table.summary);
    xml.end("summary");
  }
  if (!table.footnoteLook.empty()) {
    xml.start("footnote-look");
    writeLook(xml, table.footnoteLook);
    xml.end("footnote-look");
  }
  if (!table.tableLook.empty()) {
    const std::string file = writeTableLook(table.tableLook.get());
    xml.start("table-look");
    // Without its declaration.
    xml.raw(std::string_view(file).substr(file.find("<tableProperties")));
    xml.end("table-look");
  }
  for (const CellText& note : table.footnotes) writeTextElement(xml, "footnote", note);
  xml.newLine();
  for (const PivotDimension& dimension : table.dimensions) writeDimension(xml, dimension);
  CellWriter cells(xml);
  for (std::size_t i = 0; i < table.cells.size(); ++i) {
    if (i % kCellsPerReport == kCellsPerReport - 1) reportWithinStep(i, table.cells.size());
    cells.write(table.cells[i]);
  }
  xml.end("table");
}

void writeParagraph(XmlWriter& xml, const TextParagraph& paragraph) {
  xml.newLine();
  xml.start("paragraph");
  if (paragraph.kind != TextParagraph::Kind::kPlain) {
    xml.attribute("kind", kParagraphNames[indexOf(paragraph.kind)]);
  }
  if (paragraph.level != 0) xml.attribute("level", std::int64_t{paragraph.level});
  if (paragraph.number != 0) xml.attribute("number", std::int64_t{paragraph.number});
  for (const TextRun& run : paragraph.runs) {
    xml.start("run");
    xml.flag("bold", run.style.bold);
    xml.flag("italic", run.style.italic);
    xml.flag("underlined", run.style.underlined);
    xml.flag("monospaced", run.style.monospaced);
    xml.optionalAttribute("font", run.style.font);
    if (run.style.size != 0) xml.attribute("size", run.style.size);
    xml.optionalAttribute("color", run.style.color);
    xml.optionalAttribute("link", run.link);
    xml.text(run.text);
    xml.end("run");
  }
  xml.end("paragraph");
}

/// Starts the element of a content with the number of its object.
void startObject(XmlWriter& xml, std::string_view name, std::uint64_t id) {
  xml.start(name);
  xml.attribute("object", static_cast<std::int64_t>(id));
}

struct ContentWriter {
  XmlWriter& xml;
  std::uint64_t id;

  void operator()(const std::monostate&) const {}

  void operator()(const TableContent& table) const { writeTable(xml, id, *table); }

  void operator()(const LogContent& log) const {
    startObject(xml, "log", id);
    xml.text(log.text);
    xml.end("log");
  }

  void operator()(const NotesContent& notes) const {
    startObject(xml, "notes", id);
    for (const NoteEntry& entry : notes.entries) {
      xml.newLine();
      xml.start("note");
      writeTextElement(xml, "label", entry.label);
      writeTextElement(xml, "value", entry.value);
      xml.end("note");
    }
    xml.end("notes");
  }

  void operator()(const MessageContent& message) const {
    startObject(xml, "message", id);
    xml.attribute("severity", kSeverityNames[indexOf(message.severity) - 1]);
    if (message.place.line != 0) xml.attribute("line", std::int64_t{message.place.line});
    if (message.place.column != 0) xml.attribute("column", std::int64_t{message.place.column});
    xml.text(message.text);
    xml.end("message");
  }

  void operator()(const TextContent& text) const {
    startObject(xml, "text", id);
    for (const TextParagraph& paragraph : text.paragraphs) writeParagraph(xml, paragraph);
    xml.end("text");
  }

  void operator()(const MediaContent& media) const {
    startObject(xml, "media", id);
    xml.attribute("type", media.mediaType);
    if (media.bytes != nullptr) xml.bytes(*media.bytes);
    xml.end("media");
  }
};

}  // namespace

void writeContent(XmlWriter& xml, std::uint64_t id, const ObjectContent& content) {
  std::visit(ContentWriter{xml, id}, content);
}

}  // namespace vornwout
