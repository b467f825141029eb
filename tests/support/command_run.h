// Runs an entry point on the text of one command, as the command processor would, and keeps what it
// sent and said.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/adapter/host_adapter.h"
#include "platform/adapter/output_sink.h"
#include "platform/parser/current_command.h"
#include "platform/parser/tokenizer.h"

namespace vornwout {

/// A copy of a request's fields, which outlive the request.
struct SentRequest {
  bool longForm = false;
  int id = 0;
  OutputControllerCommand command{};
  std::string name;
  std::string text;
  OutputDocumentMinimized minimized{};
  OutputDocumentLock lock{};
  OutputDocumentType type{};
  std::string password;
  OutputDocumentEncryptPW encryptPassword{};
  YesNoEnum storeModel{};

  static SentRequest of(const VornwMsgOutputControllerRequest& request) {
    return {request.isLongForm(),   request.getId(),
            request.getCommand(),   request.getName(),
            request.getText(),      request.getMinimized(),
            request.getLock(),      request.getType(),
            request.getPassword(),  request.getEncryptPassword(),
            request.getStoreModel()};
  }
};

/// A host whose answers a test sets.
class FakeHost : public HostAdapter, public OutputControllerInterface {
 public:
  bool IsPathExpansionSuppressed() override { return pathExpansionSuppressed; }
  OutputControllerInterface* GetOutputController() override {
    if (whenControllerAsked) whenControllerAsked();
    return hasController ? this : nullptr;
  }
  std::string ExportOutput(const std::string& xml) override {
    exportDocuments.push_back(xml);
    if (whenExported) whenExported();
    return exportAnswer;
  }
  std::string ModifyOutput(const std::string& xml) override {
    modifyDocuments.push_back(xml);
    if (whenModified) whenModified();
    return modifyAnswer;
  }

  bool SendRequest(const VornwMsgOutputControllerRequest& request,
                   VornwMsgOutputControllerResponse& response) override {
    requests.push_back(SentRequest::of(request));
    if (whenAsked) whenAsked();
    response = answer;
    return succeeds;
  }

  bool hasController = true;
  bool pathExpansionSuppressed = false;
  bool succeeds = true;
  VornwMsgOutputControllerResponse answer;
  std::function<void()> whenControllerAsked;
  std::function<void()> whenAsked;
  std::vector<SentRequest> requests;
  std::string modifyAnswer;
  std::function<void()> whenModified;  ///< may throw
  std::vector<std::string> modifyDocuments;
  std::string exportAnswer;
  std::function<void()> whenExported;  ///< may throw
  std::vector<std::string> exportDocuments;
};

/// What one run of an entry point produced, in order and by kind.
class CommandRun : public OutputSink {
 public:
  /// Nothing has run yet; run() follows, once or more often.
  CommandRun() = default;
  CommandRun(void (*entry)(), const std::string& text, HostAdapter* host) {
    run(entry, text, host);
  }

  /// Runs `entry` on `text`, a whole command with its name of two words. `host` may be null. What
  /// the entry throws passes on; what was seen before is kept.
  void run(void (*entry)(), const std::string& text, HostAdapter* host) {
    Tokenizer tokenizer(text);
    TokenizedCommand command;
    if (!tokenizer.next(command)) throw std::invalid_argument("no command in: " + text);
    const SinkRegistration sink(*this);
    const AdapterRegistration adapter(host);
    const CurrentCommand current(command, 2);
    entry();
  }

  void procedureOpened(const ProcedureRecord& record) override {
    events.push_back("open " + record.name + " " + std::to_string(record.number));
  }
  void procedureClosed(const ProcedureRecord& record) override {
    events.push_back("close " + record.name);
  }
  void logFlushed() override { events.push_back("flush"); }
  void parserMessage(const ParserMessageRecord& record) override {
    events.push_back("parser " + std::string(record.operation));
    parserMessages.push_back(record);
  }
  void outputMessage(const OutputMessageRecord& record) override {
    events.push_back("output " + renderText(record.message));
    outputMessages.push_back(record);
  }
  void table(const std::shared_ptr<const PivotTable>& finished) override {
    events.push_back("table " + renderText(finished->title));
    tables.push_back(finished);
  }

  void note(const NoteRecord& record) override {
    events.push_back("note " + renderText(record.label));
  }

  /// "WrongValueType(NAME, )" for every message of the parser.
  std::vector<std::string> parserCalls() const {
    std::vector<std::string> calls;
    for (const ParserMessageRecord& message : parserMessages) {
      std::string call(message.operation);
      call += '(';
      for (std::size_t i = 0; i < message.arguments.size(); ++i) {
        if (i > 0) call += ", ";
        call += message.arguments[i];
      }
      calls.push_back(call + ")");
    }
    return calls;
  }

  /// "Output name x is too long. (3)" for every message in the output, with its level.
  std::vector<std::string> outputTexts() const {
    std::vector<std::string> texts;
    for (const OutputMessageRecord& record : outputMessages) {
      texts.push_back(renderText(record.message) + " (" + std::to_string(record.level) + ")");
    }
    return texts;
  }

  std::vector<std::string> events;
  std::vector<ParserMessageRecord> parserMessages;
  std::vector<OutputMessageRecord> outputMessages;
  std::vector<std::shared_ptr<const PivotTable>> tables;
};

}  // namespace vornwout
