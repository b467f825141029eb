#include "host/controller/output_controller.h"

#include <cstdint>
#include <utility>

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include "platform/files/document_name.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

constexpr int kErrorLevel = 3;

bool fail(VornwMsgOutputControllerResponse& response, const char* message,
          std::string_view argument = {}) {
  response.setError(kErrorLevel, message, currentEncoding().fromUtf8(argument));
  return false;
}

bool isActiveMark(std::string_view name) { return name == "*"; }

/// Names are kept in UTF-8, whatever encoding the job that gave them had, so the comparison is made
/// on code points and not with the functions for the current encoding.
bool isSameName(std::string_view left, std::string_view right) {
  const auto leftSize = static_cast<std::int64_t>(left.size());
  const auto rightSize = static_cast<std::int64_t>(right.size());
  std::int64_t i = 0;
  std::int64_t j = 0;
  while (i < leftSize && j < rightSize) {
    UChar32 a = 0;
    UChar32 b = 0;
    U8_NEXT_OR_FFFD(left.data(), i, leftSize, a);
    U8_NEXT_OR_FFFD(right.data(), j, rightSize, b);
    if (a != b && u_foldCase(a, U_FOLD_CASE_DEFAULT) != u_foldCase(b, U_FOLD_CASE_DEFAULT)) {
      return false;
    }
  }
  return i == leftSize && j == rightSize;
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
  if (isSameName(name, "ALL")) {
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
  for (const auto& document : documents_) {
    if (!document->name().empty() && isSameName(document->name(), name)) return document.get();
  }
  return nullptr;
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

Document& OutputController::open(std::string name, bool minimized) {
  documents_.push_back(std::make_unique<Document>(created_ + 1, std::move(name), minimized));
  history_.push_back(documents_.back().get());
  ++created_;
  return *documents_.back();
}

void OutputController::remove(const Document* document) {
  std::erase(history_, document);
  std::erase_if(documents_, [&](const auto& owned) { return owned.get() == document; });
}

}  // namespace vornwout
