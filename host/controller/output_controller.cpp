#include "host/controller/output_controller.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include "host/controller/document_file.h"
#include "host/store/document_store.h"
#include "host/store/store_error.h"
#include "platform/files/document_name.h"
#include "platform/pivot/bp_procedure.h"
#include "platform/strings/localized.h"
#include "platform/text/encoding.h"
#include "platform/text/utf8.h"

namespace vornwout {
namespace {

constexpr int kErrorLevel = 3;
constexpr const char* kNoneOpen = localizable("No output documents are open.");

/// Fails with the request's own name as the argument, in the bytes that the user wrote: one that is
/// not valid would not survive the way to UTF-8 and back.
bool failForName(const VornwMsgOutputControllerRequest& request,
                 VornwMsgOutputControllerResponse& response, const char* message) {
  response.setError(kErrorLevel, message, request.getName());
  return false;
}

bool fail(VornwMsgOutputControllerResponse& response, std::string_view message,
          std::string_view argument = {}) {
  response.setError(kErrorLevel, currentEncoding().fromUtf8(message),
                    currentEncoding().fromUtf8(argument));
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

/// The lock of the document on the file that stands at the path now.
std::vector<DocumentLock>::const_iterator lockOn(const OpenDocument& opened,
                                                 const std::string& path) {
  return std::find_if(opened.locks.begin(), opened.locks.end(),
                      [&](const DocumentLock& held) { return held.lock.holds(path); });
}

/// The path as it is remembered beside a lock.
std::string lockedPath(const std::string& path) {
  std::error_code failure;
  std::string whole = std::filesystem::weakly_canonical(path, failure).string();
  return failure ? path : whole;
}

/// A response has room for what failed only, so this goes into the output. "^1" stands for the
/// path.
void warn(const std::string& text, const std::string& path) {
  constexpr int kShow = 2;
  constexpr int kWarningLevel = 2;
  BpComposite message(currentEncoding().fromUtf8(text), true);
  message.Add(BpString(currentEncoding().fromUtf8(path), false));
  message.Finish();
  BpError(message, kShow, kWarningLevel);
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
  return failForName(
      request, response,
      localizable("^1 is not a valid name for an output document: a name starts with a letter, "
                  "goes on with "
                  "letters, digits and the characters . _ $ # @, and does not end with a period."));
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
      return activate(request, name, response);
    case OutputControllerCommand::kClose:
      return close(request, name, response);
    case OutputControllerCommand::kDisplay:
      list(response);
      return true;
    case OutputControllerCommand::kOpen:
      return openFile(request, name, response);
    case OutputControllerCommand::kSave:
      return saveFile(request, name, response);
  }
  return fail(response, localizable("The request's command ^1 is unknown."),
              std::to_string(static_cast<int>(request.getCommand())));
}

Document& OutputController::documentForOutput() {
  Document* active = activeDocument();
  return active != nullptr ? *active : open({}, false).document;
}

bool OutputController::create(const VornwMsgOutputControllerRequest& request,
                              const std::string& name, VornwMsgOutputControllerResponse& response) {
  if (!name.empty() &&
      !(isValidName(request, response) && isFree(request, name, nullptr, response))) {
    return false;
  }
  open(name, request.getMinimized() == OutputDocumentMinimized::kYes);
  return true;
}

bool OutputController::rename(const VornwMsgOutputControllerRequest& request,
                              const std::string& name, VornwMsgOutputControllerResponse& response) {
  if (name.empty()) {
    return fail(response, localizable("OUTPUT NAME needs a name for the active output document."));
  }
  OpenDocument* active = history_.empty() ? nullptr : history_.back();
  if (!isValidName(request, response) || !isFree(request, name, active, response)) return false;
  OpenDocument& opened = active != nullptr ? *active : open({}, false);
  Document& document = opened.document;
  // The new name first: when there is no memory for it, the document keeps the old one.
  named_[foldedName(name)] = &opened;
  if (const std::string old = foldedName(document.name()); old != foldedName(name)) {
    named_.erase(old);
  }
  document.setName(name);
  if (request.getMinimized() == OutputDocumentMinimized::kYes) document.setMinimized(true);
  return true;
}

bool OutputController::activate(const VornwMsgOutputControllerRequest& request,
                                const std::string& name,
                                VornwMsgOutputControllerResponse& response) {
  OpenDocument* opened = resolve(
      request, name,
      localizable(
          "OUTPUT ACTIVATE needs the name of an open output document, or * for the active one."),
      response);
  if (opened == nullptr) return false;
  history_.splice(history_.end(), history_, opened->inHistory);
  if (request.getMinimized() != OutputDocumentMinimized::kNotApplicable) {
    opened->document.setMinimized(request.getMinimized() == OutputDocumentMinimized::kYes);
  }
  return true;
}

bool OutputController::close(const VornwMsgOutputControllerRequest& request,
                             const std::string& name, VornwMsgOutputControllerResponse& response) {
  if (foldedName(name) == foldedName("ALL")) {
    named_.clear();
    history_.clear();
    documents_.clear();
    return true;
  }
  const OpenDocument* opened = resolve(
      request, name,
      localizable(
          "OUTPUT CLOSE needs the name of an open output document, * for the active one, or ALL "
          "for all of them."),
      response);
  if (opened == nullptr) return false;
  remove(*opened);
  return true;
}

void OutputController::list(VornwMsgOutputControllerResponse& response) const {
  for (const OpenDocument& opened : documents_) {
    response.addDocument(OutputDocumentItem{currentEncoding().fromUtf8(opened.document.name()),
                                            &opened == history_.back()});
  }
}

std::vector<Document*> OutputController::documentsNamed(const std::string& name) {
  std::vector<Document*> named;
  if (name.empty()) {
    for (OpenDocument& opened : documents_) named.push_back(&opened.document);
  } else if (name == "*") {
    if (Document* active = activeDocument()) named.push_back(active);
  } else if (OpenDocument* opened = findByName(name)) {
    named.push_back(&opened->document);
  }
  return named;
}

OpenDocument* OutputController::findByName(std::string_view name) const {
  const auto found = named_.find(foldedName(name));
  return found == named_.end() ? nullptr : found->second;
}

OpenDocument* OutputController::resolve(const VornwMsgOutputControllerRequest& request,
                                        const std::string& name, const char* missingName,
                                        VornwMsgOutputControllerResponse& response) {
  if (name.empty()) {
    fail(response, missingName);
    return nullptr;
  }
  if (isActiveMark(name)) {
    if (history_.empty()) fail(response, kNoneOpen);
    return history_.empty() ? nullptr : history_.back();
  }
  OpenDocument* document = findByName(name);
  if (document == nullptr) {
    failForName(request, response, localizable("There is no open output document named ^1."));
  }
  return document;
}

bool OutputController::isFree(const VornwMsgOutputControllerRequest& request,
                              const std::string& name, const OpenDocument* owner,
                              VornwMsgOutputControllerResponse& response) const {
  const OpenDocument* other = findByName(name);
  if (other == nullptr || other == owner) return true;
  return failForName(request, response,
                     localizable("An open output document is already named ^1."));
}

OpenDocument& OutputController::open(const std::string& name, bool minimized) {
  OpenDocument& opened = documents_.emplace_back(created_ + 1, name, minimized);
  opened.self = std::prev(documents_.end());
  history_.push_back(&opened);
  opened.inHistory = std::prev(history_.end());
  if (!name.empty()) named_[foldedName(name)] = &opened;
  ++created_;
  return opened;
}

void OutputController::remove(const OpenDocument& document) {
  named_.erase(foldedName(document.document.name()));
  history_.erase(document.inHistory);
  documents_.erase(document.self);
}

const OpenDocument* OutputController::holderOf(const std::string& path,
                                               const OpenDocument* besides) const {
  for (const OpenDocument& opened : documents_) {
    if (&opened != besides && lockOn(opened, path) != opened.locks.end()) return &opened;
  }
  return nullptr;
}

bool OutputController::openFile(const VornwMsgOutputControllerRequest& request,
                                const std::string& name,
                                VornwMsgOutputControllerResponse& response) {
  if (!name.empty() &&
      !(isValidName(request, response) && isFree(request, name, nullptr, response))) {
    return false;
  }
  const std::string path = documentPath(request.getText());
  try {
    std::optional<FileLock> lock;
    if (request.getLock() == OutputDocumentLock::kLocked) {
      if (holderOf(path, nullptr) != nullptr) {
        return fail(response,
                    localizable("The file ^1 is already open as an output document, and locked."),
                    path);
      }
      lock = lockToOpen(path);
    }
    const std::unique_ptr<Document> read = openWithPassword(path, request.getPassword());
    OpenDocument& opened = open(name, request.getMinimized() == OutputDocumentMinimized::kYes);
    opened.document.setContents(std::move(read->root()), read->runs());
    opened.document.setWasEncrypted(read->wasEncrypted());
    if (lock) opened.locks.push_back({lockedPath(path), std::move(*lock)});
    return true;
  } catch (const StoreError& error) {
    return fail(response, openingFailed(error, path), path);
  }
}

bool OutputController::saveFile(const VornwMsgOutputControllerRequest& request,
                                const std::string& name,
                                VornwMsgOutputControllerResponse& response) {
  OpenDocument* opened = resolve(request, name.empty() ? "*" : name, "", response);
  if (opened == nullptr) return false;
  const std::string path = documentPath(request.getText());
  try {
    const auto held = lockOn(*opened, path);
    const FileLock* own = held != opened->locks.end() ? &held->lock : nullptr;
    if (holderOf(path, opened) != nullptr) {
      return fail(response,
                  localizable("The file ^1 is open as another output document, and locked."), path);
    }
    SaveOptions options;
    options.type = request.getType() == OutputDocumentType::kUnspecified
                       ? documentFileType(path)
                       : static_cast<DocumentFileType>(request.getType());
    options.password = passwordToSave(request);
    options.storeModels = request.getStoreModel() == YesNoEnum::kYes;
    // Whether another process has it is found out by the save, which then keeps others off.
    options.ownLock = own;
    const std::string whole = lockedPath(path);
    SavedFile saved = saveDocument(opened->document, path, options);
    // The lock on the old file guards nothing any more, so one that was held goes on to the new,
    // also where a program had replaced that file meanwhile. The locks on the document's other
    // files stay: it is open from there too.
    const auto replaced = [&](const DocumentLock& one) {
      return &one.lock == own || one.path == whole;
    };
    const auto kept = std::remove_if(opened->locks.begin(), opened->locks.end(), replaced);
    const bool wasHeld = kept != opened->locks.end();
    opened->locks.erase(kept, opened->locks.end());
    const bool shallLock = request.getLock() == OutputDocumentLock::kLocked ||
                           (request.getLock() == OutputDocumentLock::kUnspecified && wasHeld);
    if (shallLock && saved.lock) opened->locks.push_back({whole, std::move(*saved.lock)});
    if (shallLock && !saved.lock) {
      warn(localizable("^1 was saved, but is not locked, because its file system has no locks."),
           path);
    }
    if (!saved.warning.empty()) {
      warn(localized("The output document ^1 was saved. ^2", "^1", saved.warning), path);
    }
    if (!options.password.empty()) {
      opened->document.setWasEncrypted(true);
    } else if (opened->document.wasEncrypted()) {
      warn(localizable(
               "The output document was encrypted when it was opened or saved before; ^1 is not. "
               "/PASSPROTECT encrypts it."),
           path);
    }
    return true;
  } catch (const StoreError& error) {
    return fail(response, savingFailed(error, path), path);
  }
}

}  // namespace vornwout
