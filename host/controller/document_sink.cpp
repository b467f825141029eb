#include "host/controller/document_sink.h"

#include <algorithm>
#include <utility>

#include "platform/pivot/localized_content.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

std::string asciiUpper(std::string text) {
  for (char& c : text) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return text;
}

const char* severityLabel(MessageSeverity severity) {
  switch (severity) {
    case MessageSeverity::kInformation:
      return localizable("Information");
    case MessageSeverity::kWarning:
      return localizable("Warning");
    case MessageSeverity::kError:
      break;
  }
  return localizable("Error");
}

DocumentObject makeObject(ObjectType type, std::string command, int run, std::string label,
                          ObjectContent content) {
  DocumentObject object;
  object.type = type;
  object.command = std::move(command);
  object.run = run;
  object.label = std::move(label);
  object.content = std::move(content);
  return object;
}

DocumentObject& addBelow(DocumentObject& heading, ObjectType type, std::string label,
                         ObjectContent content) {
  heading.children.push_back(
      makeObject(type, heading.command, heading.run, std::move(label), std::move(content)));
  return heading.children.back();
}

}  // namespace

void DocumentSink::setCommandLog(std::string commandName, std::string sourceText) {
  if (procedures_.empty()) placeLogAlone();
  command_ = std::move(commandName);
  pendingLog_ = std::move(sourceText);
  outside_ = {};
  runs_.clear();
}

void DocumentSink::objectsRemoved(int documentNumber, const std::vector<std::size_t>& positions) {
  const auto adjust = [&](Procedure& procedure) {
    std::erase_if(procedure.headings, [&](Heading& heading) {
      if (heading.documentNumber != documentNumber) return false;
      const auto before = std::lower_bound(positions.begin(), positions.end(), heading.position);
      // Output that still comes gets a heading of its own.
      if (before != positions.end() && *before == heading.position) return true;
      heading.position -= static_cast<std::size_t>(before - positions.begin());
      return false;
    });
  };
  for (Procedure& procedure : procedures_) adjust(procedure);
  adjust(outside_);
}

void DocumentSink::procedureOpened(const ProcedureRecord& procedure) {
  // Without a command's name every outermost procedure counts as a run of its own.
  if (procedures_.empty() && command_.empty()) runs_.clear();
  procedures_.push_back({procedure.name, {}});
}

void DocumentSink::procedureClosed(const ProcedureRecord&) {
  // A sink that was registered inside a procedure sees the end of one whose start it never saw.
  if (procedures_.empty()) return;
  if (procedures_.size() == 1) placeLogAlone();
  procedures_.pop_back();
}

void DocumentSink::parserMessage(const ParserMessageRecord& message) {
  addMessage({message.severity, message.briefText(), message.place});
}

void DocumentSink::outputMessage(const OutputMessageRecord& message) {
  OutputMessageRecord kept = message;
  kept.message = withoutSecrets(message.message);
  addMessage({kept.severity(), kept.briefText(), {}});
}

void DocumentSink::table(const std::shared_ptr<const PivotTable>& original) {
  const std::shared_ptr<const PivotTable> table = localizedTable(original);
  DocumentObject& object =
      addBelow(headingForOutput(), ObjectType::kTable, renderText(table->title), table);
  object.subtype = renderText(table->subtype);
}

void DocumentSink::note(const NoteRecord& note) {
  DocumentObject& heading = headingForOutput();
  std::vector<DocumentObject>& children = heading.children;
  // One notes object per heading, behind the log, whatever was produced before the first note.
  auto place = children.begin();
  if (place != children.end() && place->type == ObjectType::kLog) ++place;
  if (place == children.end() || place->type != ObjectType::kNotes) {
    place = children.insert(place, makeObject(ObjectType::kNotes, heading.command, heading.run,
                                              localized("Notes"), NotesContent{}));
  }
  std::get<NotesContent>(place->content.change())
      .entries.push_back({localizedContent(note.label), localizedContent(note.value)});
}

void DocumentSink::addMessage(MessageContent content) {
  std::string label = localized(severityLabel(content.severity));
  addBelow(headingForOutput(), ObjectType::kWarning, std::move(label), std::move(content));
}

DocumentObject& DocumentSink::headingForOutput() {
  Document& document = controller_.documentForOutput();
  Procedure& procedure = procedures_.empty() ? outside_ : procedures_.back();
  for (const Heading& heading : procedure.headings) {
    if (heading.documentNumber == document.number()) return document.at(heading.position);
  }
  std::string command = commandName(procedure);
  const int run = runIn(document, command);
  std::string label = procedure.name;
  if (label.empty()) label = command.empty() ? localized("Messages") : command;
  DocumentObject heading =
      makeObject(ObjectType::kHeading, std::move(command), run, std::move(label), {});
  if (!pendingLog_.empty()) {
    addBelow(heading, ObjectType::kLog, localized("Log"),
             LogContent{std::exchange(pendingLog_, {})});
  }
  const std::size_t position = document.append(std::move(heading));
  procedure.headings.push_back({document.number(), position});
  return document.at(position);
}

void DocumentSink::placeLogAlone() {
  std::string log = std::exchange(pendingLog_, {});
  Document* document = controller_.activeDocument();
  if (log.empty() || document == nullptr) return;
  std::string command = commandName(procedures_.empty() ? outside_ : procedures_.front());
  const int run = runIn(*document, command);
  document->append(makeObject(ObjectType::kLog, std::move(command), run, localized("Log"),
                              LogContent{std::move(log)}));
}

int DocumentSink::runIn(Document& document, const std::string& command) {
  const auto known = std::find_if(runs_.begin(), runs_.end(), [&](const Run& run) {
    return run.documentNumber == document.number();
  });
  if (known != runs_.end()) return known->run;
  const int run = document.beginRun(command);
  runs_.push_back({document.number(), run});
  return run;
}

std::string DocumentSink::commandName(const Procedure& procedure) const {
  return command_.empty() ? asciiUpper(procedure.name) : command_;
}

}  // namespace vornwout
