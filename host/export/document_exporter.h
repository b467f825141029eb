// One interface before every format: an exporter makes the files of an export.
//
// A new format is a folder with an exporter and a line in the table of export_output.cpp.
#pragma once

#include <string>

#include "host/document/document.h"
#include "host/export/export_files.h"
#include "host/export/export_scope.h"
#include "platform/exportspec/export_spec.h"
#include "platform/exportspec/response_spec.h"

namespace vornwout {

/// What is exported. The texts of `spec` are UTF-8, as they were sent.
struct ExportJob {
  const Document& document;
  const ExportScope& scope;
  const ExportSpec& spec;
};

class DocumentExporter {
 public:
  virtual ~DocumentExporter() = default;

  /// Writes the files, and says in `response` what was made: document file, image root, format and
  /// count, warnings. Reads the contents one by one. Throws ExportError, StoreError, and
  /// std::runtime_error with a reason that goes on behind "because"; nothing is in place then.
  virtual void run(const ExportJob& job, ExportFiles& files, ExportResponse& response) = 0;
};

/// A sentence as it goes on behind "because"; in other languages it begins as it is.
std::string asClause(std::string sentence);

/// The system's path of one that an ExportSpec has.
std::string exportPath(const std::string& path);

}  // namespace vornwout
