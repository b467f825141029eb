// Holds XML documents against one of the schemas in docs/ with a program that is not ours.
#pragma once

#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/scratch_directory.h"

namespace vornwout {

class SchemaCheck {
 public:
  /// `schema` is the name of a file in docs/.
  explicit SchemaCheck(const std::string& schema)
      : command_("cd " + folder_.path() + " && xmllint --noout --schema " VORN_SOURCE_DIR "/docs/" +
                 schema) {}

  /// What the schema has against a document; empty when it is valid.
  std::string refusal(const std::string& xml) const { return refusal(std::vector{xml}); }

  /// What the schema has against any of some documents, all held against it at once.
  std::string refusal(const std::vector<std::string>& documents) const {
    std::string files;
    for (std::size_t i = 0; i < documents.size(); ++i) {
      const std::string name = std::to_string(i) + ".xml";
      folder_.write(name, documents[i]);
      files += " " + name;
    }
    const int status = std::system((command_ + files + " >log 2>&1").c_str());
    if (status == 0) return {};
    const std::string log = folder_.read("log").substr(0, kShownBytes);
    // "not found" of the shell, or xmllint's own "cannot load the schema", are not for a document.
    const int code = WEXITSTATUS(status);
    if (code != kNotWellFormed && code != kNotValid && code != kNotValidOrWellFormed) {
      ADD_FAILURE() << "xmllint, of the package libxml2-utils, gave " << code << ": " << log;
    }
    return "not valid: " + log;
  }

 private:
  static constexpr std::size_t kShownBytes = 4000;
  // What xmllint ends with.
  static constexpr int kNotWellFormed = 1;
  static constexpr int kNotValidOrWellFormed = 3;
  static constexpr int kNotValid = 4;

  ScratchDirectory folder_;
  std::string command_;
};

}  // namespace vornwout
