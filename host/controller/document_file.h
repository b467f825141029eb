// What a request says about a document's file, as the store wants it: path, passwords, messages.
//
// A command sends paths with backslashes between their parts, on every system; here they become the
// system's own. Which is why a name with a backslash in it cannot be reached by a command.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "host/document/document.h"
#include "host/store/file_lock.h"
#include "host/store/store_error.h"
#include "platform/adapter/controller_messages.h"
#include "platform/strings/localized.h"

namespace vornwout {

inline constexpr const char* kLockedByAnother =
    localizable("The file ^1 is locked by another process.");

/// The system's path of a request's, which is in the current encoding.
std::string documentPath(const char* text);

/// The lock for a document that is opened locked; throws StoreError of the kind kLocked where
/// another process has it. Nothing for a file that this process may not write: nobody who can do no
/// more than it could replace that.
std::optional<FileLock> lockToOpen(const std::string& path);

/// Opens a document with the password as it stands, then with what it stands for if it is the
/// encrypted form of one. Throws StoreError.
std::unique_ptr<Document> openWithPassword(const std::string& path, const std::string& password);

/// The readable password of a save; throws StoreError when it should be in its encrypted form and
/// is not.
std::string passwordToSave(const VornwMsgOutputControllerRequest& request);

/// A message for the user, in which "^1" stands for the path. `path` is the system's.
std::string openingFailed(const StoreError& error, const std::string& path);
std::string savingFailed(const StoreError& error, const std::string& path);

}  // namespace vornwout
