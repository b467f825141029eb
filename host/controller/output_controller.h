// The embedded host's output controller: owns the open documents and answers the document commands.
//
// Entry points: SendRequest() for the commands, documentForOutput() for whoever has output to
// place, the rest to look at what is open. Documents are kept in the order of their creation;
// beside it stands the order of their last activation, whose end is the active document, so that
// closing it makes the one active before it active again. Names are unique without regard to case;
// several unnamed documents may be open. They are found through an index by their names without
// case, so that a job may open as many as it likes, and close each without looking at the others. A
// document may hold locks until it is closed: on the file that it was opened from, and on every one
// that it was saved as.
#pragma once

#include <list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/document/document.h"
#include "host/store/file_lock.h"
#include "platform/adapter/host_adapter.h"

namespace vornwout {

/// A lock of a document, and the path that it was taken for: what stands there by now may be
/// another file, which a program has put in the locked one's place.
struct DocumentLock {
  std::string path;  ///< absolute, with links followed
  FileLock lock;
};

/// An open document, where it stands among the others, and the locks on its files.
struct OpenDocument {
  OpenDocument(int number, std::string name, bool minimized)
      : document(number, std::move(name), minimized) {}

  Document document;
  std::vector<DocumentLock> locks;
  std::list<OpenDocument>::iterator self;
  std::list<OpenDocument*>::iterator inHistory;
};

class OutputController : public OutputControllerInterface {
 public:
  bool SendRequest(const VornwMsgOutputControllerRequest& request,
                   VornwMsgOutputControllerResponse& response) override;

  /// The open documents in the order of their creation.
  const std::list<OpenDocument>& documents() const { return documents_; }

  /// The document that takes output, or null when none is open.
  Document* activeDocument() { return history_.empty() ? nullptr : &history_.back()->document; }
  const Document* activeDocument() const {
    return history_.empty() ? nullptr : &history_.back()->document;
  }

  /// The open documents that a name (UTF-8) stands for: the active one for "*", all for an empty
  /// name, else the one of that name; none where there is none.
  std::vector<Document*> documentsNamed(const std::string& name);

  /// The document that takes output; makes an unnamed one when none is open.
  Document& documentForOutput();

 private:
  bool create(const VornwMsgOutputControllerRequest& request, const std::string& name,
              VornwMsgOutputControllerResponse& response);
  bool rename(const VornwMsgOutputControllerRequest& request, const std::string& name,
              VornwMsgOutputControllerResponse& response);
  bool activate(const VornwMsgOutputControllerRequest& request, const std::string& name,
                VornwMsgOutputControllerResponse& response);
  bool close(const VornwMsgOutputControllerRequest& request, const std::string& name,
             VornwMsgOutputControllerResponse& response);
  void list(VornwMsgOutputControllerResponse& response) const;
  bool openFile(const VornwMsgOutputControllerRequest& request, const std::string& name,
                VornwMsgOutputControllerResponse& response);
  bool saveFile(const VornwMsgOutputControllerRequest& request, const std::string& name,
                VornwMsgOutputControllerResponse& response);

  OpenDocument* findByName(std::string_view name) const;
  /// The open document that `name` addresses, the active one for "*"; null after reporting.
  OpenDocument* resolve(const VornwMsgOutputControllerRequest& request, const std::string& name,
                        const char* missingName, VornwMsgOutputControllerResponse& response);
  /// The open document, other than `besides`, that holds the lock on the file.
  const OpenDocument* holderOf(const std::string& path, const OpenDocument* besides) const;
  /// True when no document but `owner` has the name; reports otherwise.
  bool isFree(const VornwMsgOutputControllerRequest& request, const std::string& name,
              const OpenDocument* owner, VornwMsgOutputControllerResponse& response) const;
  OpenDocument& open(const std::string& name, bool minimized);
  void remove(const OpenDocument& document);

  std::list<OpenDocument> documents_;
  std::list<OpenDocument*> history_;
  std::unordered_map<std::string, OpenDocument*> named_;  ///< by name without case
  int created_ = 0;
};

}  // namespace vornwout
