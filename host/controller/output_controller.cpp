#include "host/controller/output_controller.h"

#include <cstdint>

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include "platform/files/document_name.h"
#include "platform/text/encoding.h"
#include "platform/text/utf8.h"

namespace vornwout {
namespace {

constexpr int kErrorLevel = 3;

bool fail(VornwMsgOutputControllerResponse& response, const char* message,
          std::string_view argument = {}) {
  response.setError(kErrorLevel, message, currentEncoding().fromUtf8(argument));
  return false;
}

bool isActiveMark(std::string_view name) { return name == "*"; }

/// A name with its case folded away: equal for names that are the same. Names are kept in UTF-8,
/// whatever encoding the job that gave them had, so the work is done on code points and not with
/// the functions for the current encoding.
std::string foldedName(std::string_view name) {
  const auto size = static_cast<std::int64_t>(name.size());
  std::string folded;
  folded.reserve(name.size());
  for (std::int64_t i = 0; i < size;) {
    UChar32 codePoint = 0;
    U8_NEXT_OR_FFFD(name.data(), i, size, codePoint);
    const UChar32 lower = u_foldCase(codePoint, U_FOLD_CASE_DEFAULT);
    appendUtf8(folded, static_cast<char32_t>(lower));
  }
  return folded;
}

std::string requestedName(const VornwMsgOutputControllerRequest& request) {
  return request.getName() == nullptr ? std::string() : currentToUtf8(request.getName());
}

/// Looks at the name as it came: converted, a byte that is not valid would have become a letter.
bool isValidName(const VornwMsgOutputControllerRequest& request,
                 VornwMsgOutputControllerResponse& response) {
  // "*" is refused here too, because it starts with no letter. A document named ALL is accepted: it
  // can be closed only together with all others.
  if (ValidateVORNNameCheckLastChar(request.getName()) == 0) return true;
  return fail(response,
              "^1 is not a valid name for an output document: a name starts with a letter, goes on "
              "with letters, digits and the characters . _ $ # @, and does not end with a period.",
              requestedName(request));
}

}  // namespace

bool OutputController::SendRequest(const VornwMsgOutputControllerRequest& request,
                                   VornwMsgOutputControllerResponse& response) {
  const std::string name = requestedName(request);
  switch (request.getCommand()) {
    case OutputControllerCommand::kNew:
      return create(request, name, response);
    case OutputControllerCommand::kName:
      return rename(request, name, response);
    case OutputControllerCommand::kActivate:
      return activate(name, request.getMinimized(), response);
    case OutputControllerCommand::kClose:
      return close(name, response);
    case OutputControllerCommand::kDisplay:
      list(response);
      return true;
    case OutputControllerCommand::kOpen:
      return fail(response, "This version keeps documents in memory only: ^1 is not available.",
                  "OUTPUT OPEN");
    case OutputControllerCommand::kSave:
      return fail(response, "This version keeps documents in memory only: ^1 is not available.",
                  "OUTPUT SAVE");
  }
  return fail(response, "The request's command ^1 is unknown.",
              std::to_string(static_cast<int>(request.getCommand())));
}

Document& OutputController::documentForOutput() {
  Document* active = activeDocument();
  return active != nullptr ? *active : open({}, false);
}

bool OutputController::create(const VornwMsgOutputControllerRequest& request,
                              const std::string& name, VornwMsgOutputControllerResponse& response) {
  if (!name.empty() && !(isValidName(request, response) && isFree(name, nullptr, response))) {
    return false;
  }
  open(name, request.getMinimized() == OutputDocumentMinimized::kYes);
  return true;
}

bool OutputController::rename(const VornwMsgOutputControllerRequest& request,
                              const std::string& name, VornwMsgOutputControllerResponse& response) {
  if (name.empty()) {
    return fail(response, "OUTPUT NAME needs a name for the active output document.");
  }
  if (!isValidName(request, response) || !isFree(name, activeDocument(), response)) return false;
  Document& document = documentForOutput();
  // The new name first: when there is no memory for it, the document keeps the old one.
  named_[foldedName(name)] = &document;
  if (const std::string old = foldedName(document.name()); old != foldedName(name)) {
    named_.erase(old);
  }
  document.setName(name);
  if (request.getMinimized() == OutputDocumentMinimized::kYes) document.setMinimized(true);
  return true;
}

bool OutputController::activate(const std::string& name, OutputDocumentMinimized minimized,
                                VornwMsgOutputControllerResponse& response) {
  Document* document = resolve(
      name, "OUTPUT ACTIVATE needs the name of an open output document, or * for the active one.",
      response);
  if (document == nullptr) return false;
  std::erase(history_, document);
  history_.push_back(document);
  if (minimized != OutputDocumentMinimized::kNotApplicable) {
    document->setMinimized(minimized == OutputDocumentMinimized::kYes);
  }
  return true;
}

bool OutputController::close(const std::string& name, VornwMsgOutputControllerResponse& response) {
  if (foldedName(name) == foldedName("ALL")) {
    named_.clear();
    history_.clear();
    documents_.clear();
    return true;
  }
  const Document* document = resolve(
      name,
      "OUTPUT CLOSE needs the name of an open output document, * for the active one, or ALL "
      "for all of them.",
      response);
  if (document == nullptr) return false;
  remove(document);
  return true;
}

void OutputController::list(VornwMsgOutputControllerResponse& response) const {
  for (const auto& document : documents_) {
    response.addDocument(OutputDocumentItem{currentEncoding().fromUtf8(document->name()),
                                            document.get() == activeDocument()});
  }
}

Document* OutputController::findByName(std::string_view name) const {
  const auto found = named_.find(foldedName(name));
  return found == named_.end() ? nullptr : found->second;
}

Document* OutputController::resolve(const std::string& name, const char* missingName,
                                    VornwMsgOutputControllerResponse& response) {
  if (name.empty()) {
    fail(response, missingName);
    return nullptr;
  }
  if (isActiveMark(name)) {
    if (history_.empty()) fail(response, "No output documents are open.");
    return activeDocument();
  }
  Document* document = findByName(name);
  if (document == nullptr) fail(response, "There is no open output document named ^1.", name);
  return document;
}

bool OutputController::isFree(const std::string& name, const Document* owner,
                              VornwMsgOutputControllerResponse& response) const {
  const Document* other = findByName(name);
  if (other == nullptr || other == owner) return true;
  return fail(response, "An open output document is already named ^1.", name);
}

Document& OutputController::open(const std::string& name, bool minimized) {
  documents_.push_back(std::make_unique<Document>(created_ + 1, name, minimized));
  history_.push_back(documents_.back().get());
  if (!name.empty()) named_[foldedName(name)] = documents_.back().get();
  ++created_;
  return *documents_.back();
}

void OutputController::remove(const Document* document) {
  named_.erase(foldedName(document->name()));
  std::erase(history_, document);
  std::erase_if(documents_, [&](const auto& owned) { return owned.get() == document; });
}

}  // namespace vornwout
