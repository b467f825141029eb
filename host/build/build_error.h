// Why a document cannot be built from files: which file, where in it, what is wrong, what to do.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

#include "platform/adapter/output_sink.h"

namespace vornwout {

class BuildError : public std::runtime_error {
 public:
  /// Whose business the error is: the file's content, or how it is reached.
  enum class Kind { kMistake, kUnreadable };

  /// `file` as the user called it; an unknown place says that the file as a whole is meant. `text`
  /// and `help` are sentences in UTF-8; the help may be empty.
  BuildError(std::string file, SourcePlace place, const std::string& text, std::string help = {})
      : std::runtime_error(text), file_(std::move(file)), place_(place), help_(std::move(help)) {}

  /// A file whose content never came to be looked at.
  static BuildError unreadable(std::string file, const std::string& text, std::string help = {}) {
    BuildError error(std::move(file), {}, text, std::move(help));
    error.kind_ = Kind::kUnreadable;
    return error;
  }

  Kind kind() const { return kind_; }
  const std::string& file() const { return file_; }
  const SourcePlace& place() const { return place_; }
  std::string text() const { return what(); }
  const std::string& help() const { return help_; }

 private:
  Kind kind_ = Kind::kMistake;
  std::string file_;
  SourcePlace place_;
  std::string help_;
};

}  // namespace vornwout
