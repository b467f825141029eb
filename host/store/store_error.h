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
  StoreError(Kind kind, const std::string& reason) : StoreError(kind, reason, reason) {}
  /// `detail` is what the reason says behind the part's name, for those who say otherwise where it
  /// is.
  StoreError(Kind kind, const std::string& reason, std::string detail)
      : std::runtime_error(reason), kind_(kind), detail_(std::move(detail)) {}

  Kind kind() const { return kind_; }
  const std::string& detail() const { return detail_; }

 private:
  Kind kind_;
  std::string detail_;
};

}  // namespace vornwout
