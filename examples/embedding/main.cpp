// A host of one's own in one page: it registers an adapter, runs two commands, and prints what the
// commands asked for and what they showed.
#include <iostream>
#include <string>

#include <vornwout/entry_points.h>

#include "platform/adapter/host_adapter.h"
#include "platform/adapter/output_sink.h"
#include "platform/parser/current_command.h"
#include "platform/parser/tokenizer.h"

using namespace vornwout;

namespace {

class Host : public HostAdapter, public OutputControllerInterface {
 public:
  bool IsPathExpansionSuppressed() override { return false; }
  OutputControllerInterface* GetOutputController() override { return this; }
  std::string ExportOutput(const std::string&) override { return ""; }
  std::string ModifyOutput(const std::string&) override { return ""; }

  bool SendRequest(const VornwMsgOutputControllerRequest& request,
                   VornwMsgOutputControllerResponse& response) override {
    std::cout << "request " << request.getId() << ": command "
              << static_cast<int>(request.getCommand()) << " for \"" << request.getName() << "\"\n";
    response.addDocument(OutputDocumentItem{"report", true});
    return true;
  }
};

class Sink : public OutputSink {
 public:
  void table(const std::shared_ptr<const PivotTable>& table) override {
    std::cout << "table: " << renderText(table->title) << ", " << table->cells.size() << " cell\n";
  }
  void parserMessage(const ParserMessageRecord& message) override {
    std::cout << "message: " << message.text << "\n";
  }
};

void run(const std::string& text, void (*entry)()) {
  Tokenizer tokenizer(text);
  TokenizedCommand command;
  while (tokenizer.next(command)) {
    const CurrentCommand current(command, 2);
    entry();
  }
}

}  // namespace

int main() {
  Host host;
  Sink sink;
  const AdapterRegistration adapter(&host);
  const SinkRegistration registration(sink);
  run("OUTPUT NEW NAME=report.", outnew_);
  run("OUTPUT DISPLAY.", outdisp_);
  run("OUTPUT NEW NAEM=report.", outnew_);
}
