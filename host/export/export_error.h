// Why an export cannot be made, as the response numbers it.
#pragma once

#include <stdexcept>
#include <string>

namespace vornwout {

/// The error codes of a response; docs/export-documents.md has them all.
enum class ExportErrorCode {
  kNoDocument = 1,
  kNoSuchDocument = 2,
  kEmptyDocument = 3,
  kNothingVisible = 4,
  kNoGraphics = 5,
  kInvalidFileName = 6,
  kInvalidRootName = 7,
};

class ExportError : public std::runtime_error {
 public:
  ExportError(ExportErrorCode code, const std::string& what)
      : std::runtime_error(what), code_(code) {}
  ExportErrorCode code() const { return code_; }

 private:
  ExportErrorCode code_;
};

}  // namespace vornwout
