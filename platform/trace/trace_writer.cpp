#include "platform/trace/trace_writer.h"

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <ostream>
#include <system_error>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>
#include <poll.h>
#include <unistd.h>

#include "platform/text/encoding.h"

namespace vornwout {

using Json = nlohmann::ordered_json;

/// One event; its fields stand in the order in which they are added.
class TraceLine {
 public:
  explicit TraceLine(const char* event) { object_["event"] = event; }

  TraceLine& add(const char* field, Json value) {
    object_[field] = std::move(value);
    return *this;
  }

  void writeTo(TraceWriter& writer) {
    // Texts have been made valid on their way in; replacing is for a sink that was handed others.
    writer.write(object_.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n');
  }

 private:
  Json object_ = Json::object();
};

namespace {

std::string systemError(int number) { return std::generic_category().message(number); }

std::string writeToStream(std::ostream& stream, std::string_view line) {
  errno = 0;
  stream.write(line.data(), static_cast<std::streamsize>(line.size()));
  stream.flush();
  if (stream) return {};
  return errno == 0 ? "the stream cannot be written" : systemError(errno);
}

std::string writeToFile(int fileDescriptor, std::string_view line) {
  while (!line.empty()) {
    const ssize_t written = ::write(fileDescriptor, line.data(), line.size());
    if (written >= 0) {
      line.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
      // Somebody who shares the file has made it non-blocking; a line must not be cut for that.
      pollfd writable{fileDescriptor, POLLOUT, 0};
      if (::poll(&writable, 1, -1) < 0 && errno != EINTR) return systemError(errno);
    } else if (errno != EINTR) {
      return systemError(errno);
    }
  }
  return {};
}

Json numberJson(double number) {
  constexpr double kExact = 9007199254740992.0;  // 2^53: every integer up to here is itself
  if (std::abs(number) <= kExact && number == std::trunc(number)) {
    return static_cast<std::int64_t>(number);
  }
  return number;  // one that is not finite is written as null
}

/// A label, title or value: a number where the code gave a number, otherwise the text as shown.
Json contentJson(const CellText& cell) {
  if (cell.kind == CellText::Kind::kNumber) return numberJson(cell.number);
  return renderText(cell);
}

Json contentsJson(const std::vector<CellText>& cells) {
  Json list = Json::array();
  for (const CellText& cell : cells) list.push_back(contentJson(cell));
  return list;
}

Json shownTexts(const std::vector<CellText>& cells) {
  Json list = Json::array();
  for (const CellText& cell : cells) list.push_back(renderText(cell));
  return list;
}

const char* severityName(MessageSeverity severity) {
  switch (severity) {
    case MessageSeverity::kInformation:
      return "information";
    case MessageSeverity::kWarning:
      return "warning";
    case MessageSeverity::kError:
      break;
  }
  return "error";
}

/// The labels on the way to every leaf, by the leaf's number. Groups stand before what they hold,
/// so one pass finds each node's path from its parent's.
std::vector<Json> leafPaths(const PivotDimension& dimension) {
  std::vector<Json> paths;
  std::vector<Json> leaves;
  for (const PivotCategory& category : dimension.categories) {
    Json path =
        category.parent < 0 ? Json::array() : paths[static_cast<std::size_t>(category.parent)];
    path.push_back(contentJson(category.label));
    if (!category.isGroup) leaves.push_back(path);
    paths.push_back(category.isGroup ? std::move(path) : Json());
  }
  return leaves;
}

Json positionJson(const std::optional<PivotPosition>& position) {
  if (!position) return nullptr;
  return Json::array(
      {position->place, position->index, position->hideLabel, position->hideCategories});
}

Json widthJson(const std::optional<int>& width) { return width ? Json(*width) : Json(); }

/// Only here, where there may be a hundred thousand of them, what is empty or false is left out.
Json cellJson(const PivotCell& cell, const std::vector<std::vector<Json>>& paths) {
  Json json = Json::object();
  Json& at = json["at"] = Json::array();
  for (std::size_t i = 0; i < cell.at.size(); ++i) {
    at.push_back(paths[i][static_cast<std::size_t>(cell.at[i])]);
  }
  Json value = contentJson(cell.value);
  if (value != "") json["value"] = std::move(value);
  if (!cell.notes.empty()) json["notes"] = contentsJson(cell.notes);
  if (!cell.look->textColor.empty()) json["text_color"] = cell.look->textColor;
  if (!cell.look->backgroundColor.empty()) json["background_color"] = cell.look->backgroundColor;
  if (cell.look->bold.value_or(false)) json["bold"] = true;
  return json;
}

std::string requestText(const char* text) {
  return text == nullptr ? std::string() : currentToUtf8(text);
}

}  // namespace

TraceWriter::TraceWriter(std::ostream& stream, Secrets secrets)
    : output_([&stream](std::string_view line) { return writeToStream(stream, line); }),
      secrets_(secrets) {}

TraceWriter::TraceWriter(int fileDescriptor, Secrets secrets)
    : output_(
          [fileDescriptor](std::string_view line) { return writeToFile(fileDescriptor, line); }),
      secrets_(secrets) {}

void TraceWriter::write(std::string_view line) {
  if (!failed()) error_ = output_(line);
}

void TraceWriter::enter(std::string_view entry, std::string_view command, int line) {
  TraceLine("enter").add("entry", entry).add("command", command).add("line", line).writeTo(*this);
}

void TraceWriter::leave(std::string_view entry, std::string_view command, int line) {
  TraceLine("leave").add("entry", entry).add("command", command).add("line", line).writeTo(*this);
}

void TraceWriter::unwind(std::string_view entry) {
  TraceLine("unwind").add("entry", entry).writeTo(*this);
}

void TraceWriter::request(const VornwMsgOutputControllerRequest& request) {
  TraceLine line("request");
  line.add("form", request.isLongForm() ? "long" : "short")
      .add("id", request.getId())
      .add("command", static_cast<int>(request.getCommand()))
      .add("name", requestText(request.getName()));
  if (!request.isLongForm()) {
    line.add("text", requestText(request.getText()))
        .add("minimized", static_cast<int>(request.getMinimized()));
  } else {
    std::string password = requestText(request.getPassword());
    if (!password.empty() && secrets_ == Secrets::kHidden) password = kHiddenSecret;
    line.add("path", requestText(request.getText()))
        .add("lock", static_cast<int>(request.getLock()))
        .add("minimized", static_cast<int>(request.getMinimized()))
        .add("type", static_cast<int>(request.getType()))
        .add("password", password)
        .add("encrypt_password", static_cast<int>(request.getEncryptPassword()))
        .add("store_model", static_cast<int>(request.getStoreModel()));
  }
  line.writeTo(*this);
}

void TraceWriter::modify(std::string_view xml) {
  TraceLine("modify").add("xml", Encoding::utf8()->toUtf8(xml)).writeTo(*this);
}

void TraceWriter::exportXml(std::string_view xml) {
  TraceLine("export").add("xml", Encoding::utf8()->toUtf8(xml)).writeTo(*this);
}

void TraceWriter::procedureOpened(const ProcedureRecord& procedure) {
  TraceLine("procedure").add("name", procedure.name).add("number", procedure.number).writeTo(*this);
}

void TraceWriter::parserMessage(const ParserMessageRecord& message) {
  TraceLine line("message");
  const bool isOpen = secrets_ == Secrets::kShown && message.uncovered;
  const std::string& text = isOpen ? message.uncovered->text : message.text;
  line.add("by", "parser")
      .add("operation", message.operation)
      .add("arguments", isOpen ? message.uncovered->arguments : message.arguments);
  if (!message.messageTemplate.empty()) line.add("template", message.messageTemplate);
  line.add("severity", severityName(message.severity)).add("text", text);
  if (message.place.line != 0) line.add("line", message.place.line);
  if (message.place.column != 0) line.add("column", message.place.column);
  line.writeTo(*this);
}

void TraceWriter::outputMessage(const OutputMessageRecord& record) {
  OutputMessageRecord kept = record;
  if (secrets_ == Secrets::kHidden) kept.message = withoutSecrets(record.message);
  const CellText& message = kept.message;
  const std::string shown = kept.shownText();
  const bool isNumber = message.kind == CellText::Kind::kNumber;
  TraceLine line("message");
  line.add("by", "output")
      .add("template", isNumber ? shown : message.text)
      .add("arguments", shownTexts(message.arguments));
  if (message.hasSublist) line.add("sublist", shownTexts(message.sublist));
  line.add("show", record.show).add("level", record.level).add("text", shown).writeTo(*this);
}

void TraceWriter::table(const std::shared_ptr<const PivotTable>& table) {
  TraceLine line("table");
  line.add("title", contentJson(table->title)).add("subtype", contentJson(table->subtype));
  if (table->flag) line.add("flag", *table->flag);
  std::vector<std::vector<Json>> paths;
  Json dimensions = Json::array();
  for (const PivotDimension& dimension : table->dimensions) {
    paths.push_back(leafPaths(dimension));
    dimensions.push_back(Json::object({{"label", contentJson(dimension.label)},
                                       {"sort", dimension.sort},
                                       {"position", positionJson(dimension.position)},
                                       {"categories", paths.back()}}));
  }
  Json cells = Json::array();
  for (const PivotCell& cell : table->cells) cells.push_back(cellJson(cell, paths));
  line.add("title_hidden", table->titleHidden)
      .add("min_data_column_width", widthJson(table->minDataColumnWidth))
      .add("max_data_column_width", widthJson(table->maxDataColumnWidth))
      .add("dimensions", std::move(dimensions))
      .add("cells", std::move(cells))
      .writeTo(*this);
}

void TraceWriter::note(const NoteRecord& note) {
  TraceLine("note")
      .add("number", note.number)
      .add("label", contentJson(note.label))
      .add("value", contentJson(note.value))
      .writeTo(*this);
}

void TraceWriter::logFlushed() { TraceLine("flush_log").writeTo(*this); }

}  // namespace vornwout
