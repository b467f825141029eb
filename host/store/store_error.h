// What goes wrong with a document's file: why, in words for the user, and what kind of trouble it
// is.
#pragma once

#include <stdexcept>
#include <string>

namespace vornwout {

class StoreError : public std::runtime_error {
 public:
  enum class Kind {
    kNoFile,         ///< nothing is there, or it may not be read
    kDamaged,        ///< it is no document, or not a whole one, or a hostile one
    kWrongPassword,  ///< it is encrypted, and the password does not open it
    kLocked,         ///< another process holds it
    kNotWritten,     ///< it could not be written; the old file is as it was
  };

  /// `reason` is a sentence that names the part of the file where there is one, not the file
  /// itself; never with a password in it.
  StoreError(Kind kind, const std::string& reason) : std::runtime_error(reason), kind_(kind) {}

  Kind kind() const { return kind_; }

 private:
  Kind kind_;
};

}  // namespace vornwout
