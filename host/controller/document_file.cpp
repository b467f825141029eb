#include "host/controller/document_file.h"

#include <algorithm>

#include <unistd.h>

#include "host/store/document_store.h"
#include "host/store/password_form.h"
#include "platform/files/file_specification.h"
#include "platform/files/path_context.h"
#include "platform/strings/localized.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

/// The password of an encrypted form, when the user has a key; nothing otherwise. Throws StoreError
/// where the key cannot be used, and for a form that was made with another one.
std::optional<Secret> decrypted(const std::string& form) {
  const std::string key = defaultPasswordKeyPath();
  // Only what makes encrypted forms may make a key.
  if (access(key.c_str(), F_OK) != 0) return std::nullopt;
  std::optional<Secret> meant = decryptPassword(PasswordKey::loadOrCreate(key), form);
  if (meant && !isTypeablePassword(meant->view())) {
    throw StoreError(StoreError::Kind::kWrongPassword,
                     localized("This form was not made with this user's key (^1).", key));
  }
  return meant;
}

/// What a text that opens nothing as it stands means as an encrypted form; nothing without a key.
/// Throws StoreError, which says first that the password is wrong: the text may be no form at all.
std::optional<Secret> meantByWrong(const std::string& text, const StoreError& wrong) {
  try {
    return decrypted(text);
  } catch (const StoreError& error) {
    throw StoreError(StoreError::Kind::kWrongPassword,
                     localized("^1 If it is an encrypted form: ^2", wrong.what(), error.what()));
  }
}

bool looksEncrypted(const std::string& password) {
  return !password.empty() && password.size() % 2 == 0 &&
         password.find_first_not_of("0123456789ABCDEFabcdef") == std::string::npos;
}

/// A sentence behind a blank where the path may have been meant to start with a file handle.
std::string handleHint(const StoreError& error, const std::string& path) {
  const bool isAboutThePath =
      error.kind() == StoreError::Kind::kNoFile || error.kind() == StoreError::Kind::kNotWritten;
  const std::string handle =
      isAboutThePath ? handleInOtherCase(fromNativePath(path)) : std::string();
  if (handle.empty()) return {};
  return " " +
         localized("There is a file handle ^1; case matters in its name.", currentToUtf8(handle));
}

}  // namespace

std::string documentPath(const char* text) {
  std::string path = toNativePath(text);
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

std::optional<FileLock> lockToOpen(const std::string& path) {
  // What cannot be read is said better by whoever then tries to read it.
  if (access(path.c_str(), R_OK) != 0 || access(path.c_str(), W_OK) != 0) return std::nullopt;
  std::optional<FileLock> lock;
  try {
    lock = FileLock::tryLock(path);
  } catch (const StoreError& error) {
    if (error.kind() != StoreError::Kind::kNotWritten) throw;
    throw StoreError(error.kind(), localized("^1 LOCK=NO opens it.", error.what()));
  }
  if (!lock)
    throw StoreError(StoreError::Kind::kLocked, localized("Another process has locked it."));
  return lock;
}

std::unique_ptr<Document> openWithPassword(const std::string& path, const std::string& password) {
  const std::string plain = currentToUtf8(password);
  try {
    return openDocument(path, OpenOptions{plain});
  } catch (const StoreError& error) {
    if (error.kind() != StoreError::Kind::kWrongPassword || !looksEncrypted(plain)) throw;
    const std::optional<Secret> meant = meantByWrong(plain, error);
    if (!meant) throw;
    return openDocument(path, OpenOptions{std::string(meant->view())});
  }
}

std::string passwordToSave(const VornwMsgOutputControllerRequest& request) {
  std::string password = currentToUtf8(request.getPassword());
  if (request.getEncryptPassword() != OutputDocumentEncryptPW::kYes) return password;
  // Who asks for an encrypted form wants protection: without a password there would be none.
  if (password.empty()) {
    throw StoreError(StoreError::Kind::kNotWritten, localized("ENCRYPTEDPW needs PASSWORD."));
  }
  if (!looksEncrypted(password)) {
    throw StoreError(
        StoreError::Kind::kNotWritten,
        localized("Its password is not in the encrypted form that vornwout password makes."));
  }
  const std::optional<Secret> meant = decrypted(password);
  if (!meant) {
    throw StoreError(StoreError::Kind::kNotWritten,
                     "This user has no key for encrypted passwords; vornwout password makes one, "
                     "and the encrypted form that goes with it.");
  }
  return std::string(meant->view());
}

std::string openingFailed(const StoreError& error, const std::string& path) {
  if (error.kind() == StoreError::Kind::kLocked) return kLockedByAnother;
  // The path comes into the place of "^1" where the answer is shown.
  return localized("The output document ^1 was not opened. ^2^3", "^1", error.what(),
                   handleHint(error, path));
}

std::string savingFailed(const StoreError& error, const std::string& path) {
  if (error.kind() == StoreError::Kind::kLocked) return kLockedByAnother;
  return localized("The output document ^1 was not saved. ^2^3", "^1", error.what(),
                   handleHint(error, path));
}

}  // namespace vornwout
