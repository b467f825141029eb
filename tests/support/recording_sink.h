// A sink that keeps everything it is given, and the order of it all.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/adapter/output_sink.h"

namespace vornwout {

class RecordingSink : public OutputSink {
 public:
  void procedureOpened(const ProcedureRecord& procedure) override {
    events.push_back("open " + procedure.name);
    procedures.push_back(procedure);
  }
  void procedureClosed(const ProcedureRecord& procedure) override {
    events.push_back("close " + procedure.name);
  }
  void parserMessage(const ParserMessageRecord& message) override {
    events.push_back("parser " + std::string(message.operation));
    parserMessages.push_back(message);
  }
  void outputMessage(const OutputMessageRecord& message) override {
    events.push_back("message " + renderText(message.message));
    messages.push_back(message);
  }
  void table(const std::shared_ptr<const PivotTable>& table) override {
    events.push_back("table " + renderText(table->title));
    tables.push_back(table);
  }
  void note(const NoteRecord& note) override {
    events.push_back("note " + renderText(note.label));
    notes.push_back(note);
  }

  std::vector<std::string> events;
  std::vector<ProcedureRecord> procedures;
  std::vector<ParserMessageRecord> parserMessages;
  std::vector<OutputMessageRecord> messages;
  std::vector<std::shared_ptr<const PivotTable>> tables;
  std::vector<NoteRecord> notes;

 private:
  SinkRegistration registration_{*this};
};

}  // namespace vornwout
