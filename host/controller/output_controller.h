// The embedded host's output controller: owns the open documents and answers the document commands.
//
// Entry points: SendRequest() for the commands, documentForOutput() for whoever has output to
// place, the rest to look at what is open. Documents are kept in the order of their creation;
// beside it stands the order of their last activation, whose end is the active document, so that
// closing it makes the one active before it active again. Names are unique without regard to case;
// several unnamed documents may be open. They are found through an index by their names without
// case, so that a job may open as many as it likes.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/document/document.h"
#include "platform/adapter/host_adapter.h"

namespace vornwout {

class OutputController : public OutputControllerInterface {
 public:
  bool SendRequest(const VornwMsgOutputControllerRequest& request,
                   VornwMsgOutputControllerResponse& response) override;

  /// The open documents in the order of their creation.
  const std::vector<std::unique_ptr<Document>>& documents() const { return documents_; }

  /// The document that takes output, or null when none is open.
  Document* activeDocument() { return history_.empty() ? nullptr : history_.back(); }
  const Document* activeDocument() const { return history_.empty() ? nullptr : history_.back(); }

  /// The document that takes output; makes an unnamed one when none is open.
  Document& documentForOutput();

 private:
  bool create(const VornwMsgOutputControllerRequest& request, const std::string& name,
              VornwMsgOutputControllerResponse& response);
  bool rename(const VornwMsgOutputControllerRequest& request, const std::string& name,
              VornwMsgOutputControllerResponse& response);
  bool activate(const std::string& name, OutputDocumentMinimized minimized,
                VornwMsgOutputControllerResponse& response);
  bool close(const std::string& name, VornwMsgOutputControllerResponse& response);
  void list(VornwMsgOutputControllerResponse& response) const;

  Document* findByName(std::string_view name) const;
  /// The open document that `name` addresses, the active one for "*"; null after reporting.
  Document* resolve(const std::string& name, const char* missingName,
                    VornwMsgOutputControllerResponse& response);
  /// True when no document but `owner` has the name; reports otherwise.
  bool isFree(const std::string& name, const Document* owner,
              VornwMsgOutputControllerResponse& response) const;
  Document& open(const std::string& name, bool minimized);
  void remove(const Document* document);

  std::vector<std::unique_ptr<Document>> documents_;
  std::vector<Document*> history_;
  std::unordered_map<std::string, Document*> named_;  ///< by name without case
  int created_ = 0;
};

}  // namespace vornwout
