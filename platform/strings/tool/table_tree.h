// All string tables of a folder: languages.txt and <language>/<module>.txt, held against each
// other.
//
// English is what the others are compared with. A key that only another language has is a mistake
// everywhere; one that is missing is a mistake in a language that calls itself complete. A text has
// the placeholders "^1" to "^9" of its English text, in any order.
#pragma once

#include <string>
#include <vector>

#include "platform/strings/tool/table_source.h"

namespace vornwout {

struct TableTree {
  struct Table {
    std::string language;
    std::string module;
    TableSource source;
  };
  std::vector<Table> tables;  ///< by language and module

  /// Reads and checks a folder; what is wrong is added to `errors`.
  static TableTree read(const std::string& folder, SourceErrors& errors);
};

}  // namespace vornwout
