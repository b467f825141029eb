#include "runner/document_json.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>

#include <nlohmann/json.hpp>

#include "host/document/content_view.h"
#include "host/document/media_size.h"
#include "host/store/content_names.h"
#include "host/store/store_error.h"
#include "host/store/xml_writer.h"
#include "platform/adapter/progress_listener.h"
#include "platform/text/utf8.h"

namespace vornwout {
namespace {

using Json = nlohmann::ordered_json;

void addText(Json& object, const char* name, const std::string& text) {
  if (!text.empty()) object[name] = repairedUtf8(text);
}

void addFlag(Json& object, const char* name, bool value) {
  if (value) object[name] = true;
}

Json textsOf(const std::vector<CellText>& texts) {
  Json list = Json::array();
  for (const CellText& text : texts) list.push_back(repairedUtf8(renderText(text)));
  return list;
}

void addChoice(Json& object, const char* name, std::optional<bool> value) {
  if (value) object[name] = *value;
}

/// What is set in the look, as members of `object`.
void addLook(Json& object, const SharedLook& look) {
  if (look.empty()) return;
  addText(object, "textColor", look->textColor);
  addText(object, "backgroundColor", look->backgroundColor);
  addChoice(object, "bold", look->bold);
  addChoice(object, "italic", look->italic);
  addChoice(object, "underlined", look->underlined);
  addText(object, "font", look->font);
  if (look->size > 0) object["size"] = look->size;
}

/// The look as an object of its own, the member `name`.
void addLookObject(Json& object, const char* name, const SharedLook& look) {
  if (!look.empty()) addLook(object[name] = Json::object(), look);
}

Json dimensionJson(const PivotDimension& dimension) {
  Json json = {{"label", repairedUtf8(renderText(dimension.label))},
               {"place", kPlaceNames.at(static_cast<std::size_t>(dimension.place()))},
               {"index", dimension.position ? dimension.position->index : 1}};
  if (dimension.position) {
    addFlag(json, "labelHidden", dimension.position->hideLabel);
    addFlag(json, "categoriesHidden", dimension.position->hideCategories);
  }
  if (dimension.shownLeaf >= 0) json["shownLeaf"] = dimension.shownLeaf;
  Json& categories = json["categories"] = Json::array();
  for (const PivotCategory& category : dimension.categories) {
    Json entry = {{"label", repairedUtf8(renderText(category.label))}};
    if (category.parent >= 0) entry["parent"] = category.parent;
    if (category.isGroup) {
      entry["group"] = true;
    } else {
      entry["leaf"] = category.leaf;
    }
    addText(entry, "statistic", std::string(statisticKindName(category.statistic)));
    addLook(entry, category.look);
    if (category.width > 0) entry["width"] = category.width;
    categories.push_back(std::move(entry));
  }
  return json;
}

Json cellJson(const PivotCell& cell) {
  const bool isNumber = cell.value.kind == CellText::Kind::kNumber;
  Json json = {{"at", cell.at}};
  const std::string text = repairedUtf8(renderText(cell.value));
  if (isNumber) {
    // JSON has no word for a number that is not finite; it becomes null.
    json["value"] = cell.value.number;
    if (cell.value.format.display) json["format"] = displayFormatName(*cell.value.format.display);
  } else {
    json["value"] = text;
  }
  json["text"] = text;
  if (!cell.notes.empty()) json["notes"] = textsOf(cell.notes);
  addLook(json, cell.look);
  return json;
}

/// The members of a content.
struct ContentJson {
  Json operator()(const std::monostate&) const { return nullptr; }
  Json operator()(const TableContent& table) const;
  Json operator()(const LogContent& log) const {
    return {{"kind", "log"}, {"text", repairedUtf8(log.text)}};
  }
  Json operator()(const NotesContent& notes) const;
  Json operator()(const MessageContent& message) const;
  Json operator()(const TextContent& text) const;
  Json operator()(const MediaContent& media) const;
};

Json ContentJson::operator()(const TableContent& table) const {
  Json json = {{"kind", "table"}};
  addText(json, "title", renderText(table->title));
  addFlag(json, "titleHidden", table->titleHidden);
  addText(json, "subtype", renderText(table->subtype));
  addText(json, "caption", renderText(table->caption));
  addText(json, "summary", table->summary);
  addLookObject(json, "titleLook", table->titleLook);
  addLookObject(json, "captionLook", table->captionLook);
  addLookObject(json, "footnoteLook", table->footnoteLook);
  if (!table->footnotes.empty()) json["footnotes"] = textsOf(table->footnotes);
  Json& dimensions = json["dimensions"] = Json::array();
  for (const PivotDimension& dimension : table->dimensions) {
    dimensions.push_back(dimensionJson(dimension));
  }
  Json& cells = json["cells"] = Json::array();
  constexpr std::size_t kCellsBetweenReports = 4096;
  for (const PivotCell& cell : table->cells) {
    if (cells.size() % kCellsBetweenReports == 0)
      reportWithinStep(cells.size(), table->cells.size());
    cells.push_back(cellJson(cell));
  }
  return json;
}

Json ContentJson::operator()(const NotesContent& notes) const {
  Json entries = Json::array();
  for (const NoteEntry& entry : notes.entries) {
    entries.push_back({{"label", repairedUtf8(renderText(entry.label))},
                       {"value", repairedUtf8(renderText(entry.value))}});
  }
  return {{"kind", "notes"}, {"entries", std::move(entries)}};
}

Json ContentJson::operator()(const MessageContent& message) const {
  const std::string_view severity =
      kSeverityNames.at(static_cast<std::size_t>(message.severity) - 1);
  Json json = {{"kind", "message"}, {"severity", severity}, {"text", repairedUtf8(message.text)}};
  if (message.place.line > 0) json["line"] = message.place.line;
  if (message.place.column > 0) json["column"] = message.place.column;
  return json;
}

Json runJson(const TextRun& run) {
  Json json = {{"text", repairedUtf8(run.text)}};
  addFlag(json, "bold", run.style.bold);
  addFlag(json, "italic", run.style.italic);
  addFlag(json, "underlined", run.style.underlined);
  addFlag(json, "monospaced", run.style.monospaced);
  addText(json, "font", run.style.font);
  if (run.style.size > 0) json["size"] = run.style.size;
  addText(json, "color", run.style.color);
  addText(json, "link", run.link);
  return json;
}

Json ContentJson::operator()(const TextContent& text) const {
  Json paragraphs = Json::array();
  for (const TextParagraph& paragraph : text.paragraphs) {
    Json entry = {{"kind", kParagraphNames.at(static_cast<std::size_t>(paragraph.kind))}};
    if (paragraph.level > 0) entry["level"] = paragraph.level;
    if (paragraph.kind == TextParagraph::Kind::kNumbered) entry["number"] = paragraph.number;
    Json& runs = entry["runs"] = Json::array();
    for (const TextRun& run : paragraph.runs) runs.push_back(runJson(run));
    paragraphs.push_back(std::move(entry));
  }
  return {{"kind", "text"}, {"paragraphs", std::move(paragraphs)}};
}

Json ContentJson::operator()(const MediaContent& media) const {
  const std::string nothing;
  const std::string& bytes = media.bytes == nullptr ? nothing : *media.bytes;
  Json json = {
      {"kind", "media"}, {"mediaType", repairedUtf8(media.mediaType)}, {"byteCount", bytes.size()}};
  if (const auto size = naturalSize(media)) {
    json["width"] = size->width;
    json["height"] = size->height;
  }
  std::string base64;
  appendBase64(base64, bytes);
  json["base64"] = std::move(base64);
  return json;
}

Json attributesOf(const OutlineEntry& entry) {
  const DocumentObject& object = *entry.object;
  Json json = {{"number", entry.number}, {"type", objectTypeName(object.type)}};
  addText(json, "label", object.label);
  addText(json, "index", object.index);
  if (!object.command.empty()) {
    json["command"] = repairedUtf8(object.command);
    json["run"] = object.run;
  }
  addText(json, "subtype", object.subtype);
  json["visible"] = object.visible;
  if (object.size) {
    json["size"] = {{"width", object.size->width},
                    {"height", object.size->height},
                    {"unit", object.size->percent ? "percent" : "points"}};
  }
  return json;
}

class DocumentJsonWriter {
 public:
  DocumentJsonWriter(std::ostream& out, const DocumentJsonOptions& options)
      : out_(out), options_(options) {}

  bool write(const std::vector<OutlineEntry>& entries);

 private:
  std::string dumped(const Json& json) const {
    return json.dump(-1, ' ', options_.isAsciiOnly, Json::error_handler_t::replace);
  }
  void addContent(Json& json, const DocumentObject& object);

  std::ostream& out_;
  const DocumentJsonOptions& options_;
  bool isWhole_ = true;
};

void DocumentJsonWriter::addContent(Json& json, const DocumentObject& object) {
  try {
    const ContentView content(object.content);
    if (std::holds_alternative<std::monostate>(*content)) return;
    json["content"] = std::visit(ContentJson(), *content);
  } catch (const StoreError& error) {
    json["error"] = error.what();
    isWhole_ = false;
  }
}

bool DocumentJsonWriter::write(const std::vector<OutlineEntry>& entries) {
  out_ << "{\"file\":" << dumped(repairedUtf8(options_.file)) << ",\"objects\":[";
  int depth = entries.empty() ? 0 : entries.front().depth;
  const int top = depth;
  bool isFirst = true;
  const std::string progress = showingText(options_.file);
  std::uint64_t done = 0;
  for (const OutlineEntry& entry : entries) {
    if (!out_) break;
    const ProgressStep step(progress, done, entries.size());
    reportProgress(progress, done++, entries.size());
    // Objects that hold others stay open until something comes that stands beside them.
    for (; depth > entry.depth; --depth) out_ << "]}";
    if (!isFirst) out_ << ',';
    Json json = attributesOf(entry);
    if (options_.hasContents) addContent(json, *entry.object);
    std::string line = dumped(json);
    isFirst = !entry.object->children.empty();
    if (isFirst) {
      line.pop_back();
      line += ",\"objects\":[";
      ++depth;
    }
    out_ << '\n' << line;
  }
  for (; depth > top; --depth) out_ << "]}";
  out_ << "\n]}\n";
  reportProgress(progress, entries.size(), entries.size());
  return isWhole_;
}

}  // namespace

std::string showingText(const std::string& file) {
  return "Showing " + repairedUtf8(file.substr(file.rfind('/') + 1));
}

bool writeDocumentJson(std::ostream& out, const std::vector<OutlineEntry>& entries,
                       const DocumentJsonOptions& options) {
  return DocumentJsonWriter(out, options).write(entries);
}

}  // namespace vornwout
