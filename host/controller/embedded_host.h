// The host that is built in: documents in memory, filled by an output sink.
//
// Whoever runs commands registers the host with AdapterRegistration and its sink with
// SinkRegistration, and calls setCommandLog() before each command. The sink comes before those that
// ask for the active document, so that the document exists when they do.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/changes/modify_request.h"
#include "host/controller/document_sink.h"
#include "host/controller/output_controller.h"
#include "platform/adapter/host_adapter.h"

namespace vornwout {

class EmbeddedHost : public HostAdapter {
 public:
  EmbeddedHost() : sink_(controller_) {}
  EmbeddedHost(const EmbeddedHost&) = delete;
  EmbeddedHost& operator=(const EmbeddedHost&) = delete;

  bool IsPathExpansionSuppressed() override { return false; }
  OutputControllerInterface* GetOutputController() override { return &controller_; }
  /// Makes the files that the export document asks for. Returns the response; throws
  /// std::runtime_error with the reason for what the response has no code for.
  std::string ExportOutput(const std::string& exportXml) override;
  /// Changes the documents that the modify document names, all of them or none. Returns the counts
  /// and notes; throws std::runtime_error with the reason when it cannot be carried out.
  std::string ModifyOutput(const std::string& modifyXml) override;

  OutputSink& sink() { return sink_; }

  /// Tells the name (upper case) and the source text of the command that comes next, in UTF-8.
  void setCommandLog(std::string commandName, std::string sourceText);

  /// The open documents in the order of their creation.
  std::vector<const Document*> documents() const;
  /// The document that takes output, or null when none is open.
  const Document* activeDocument() const { return controller_.activeDocument(); }
  /// What to call the active document before a reader: its name, or a number for an unnamed one.
  /// Nothing when no document is open or an unnamed one is the only one.
  std::optional<std::string> activeDocumentLabel() const;

 private:
  std::string modify(const ModifyRequest& request);

  OutputController controller_;
  DocumentSink sink_;
};

}  // namespace vornwout
