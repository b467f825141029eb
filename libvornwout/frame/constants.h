// The texts that the document commands share: names, titles, keywords, values and messages.
#pragma once

#include "platform/strings/localized.h"

namespace vornwout {

inline constexpr const char* kOutputDocument = localizable("Output Document");

inline constexpr const char* kKeywordFile = "FILE";
inline constexpr const char* kKeywordOutfile = "OUTFILE";
inline constexpr const char* kKeywordName = "NAME";
inline constexpr const char* kKeywordLock = "LOCK";
inline constexpr const char* kKeywordType = "TYPE";
inline constexpr const char* kKeywordStoreModel = "STOREMODEL";
inline constexpr const char* kPassprotect = "PASSPROTECT";
inline constexpr const char* kKeywordPassword = "PASSWORD";
inline constexpr const char* kKeywordEncryptedPw = "ENCRYPTEDPW";
inline constexpr const char* kKeywordMinimized = "MINIMIZED";

inline constexpr const char* kYes = "YES";
inline constexpr const char* kNo = "NO";
inline constexpr const char* kViewer = "VIEWER";
inline constexpr const char* kDraft = "DRAFT";
inline constexpr const char* kQxv = "QXV";
inline constexpr const char* kQxw = "QXW";

inline constexpr const char* kNotImplemented = localizable("^1 currently not implemented.");
inline constexpr const char* kNameTooLong = localizable("Output name ^1 is too long.");
inline constexpr const char* kNoDocumentsOpen = localizable("No output documents are open.");
inline constexpr const char* kPasswordEmpty =
    localizable("Failed to save document. Empty passwords are not allowed.");
inline constexpr const char* kPasswordTooLong =
    localizable("Failed to save document. Passwords longer than 10 bytes are not allowed. '^1'");

/// How every message in the output is shown, and its levels.
inline constexpr int kShowMessage = 2;
inline constexpr int kLevelWarning = 2;
inline constexpr int kLevelError = 3;

/// Arguments of BpDimension::Position and of the sort order that every table here uses.
inline constexpr int kPlaceRows = 0;
inline constexpr int kFirstInPlace = 1;
inline constexpr int kSortAsMade = 2;

}  // namespace vornwout
