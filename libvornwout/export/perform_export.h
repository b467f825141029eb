// Carries out one export: hands the export document to the host and tells what came of it.
//
// A PerformExport lives for one command. What it reports goes through the command's procedure;
// nothing is thrown but the host's unwinding to the caller.
#pragma once

#include <memory>
#include <string>

#include "platform/exportspec/export_spec.h"
#include "platform/pivot/bp_procedure.h"

namespace vornwout {

class PerformExport {
 public:
  class PerformExportData;

  /// Makes the XML platform ready; a failure to do so is reported.
  PerformExport(BpProcedure& procedure, ExportGlobalSpec::PRINT_OPTION printOption);
  ~PerformExport();
  PerformExport(const PerformExport&) = delete;
  PerformExport& operator=(const PerformExport&) = delete;

  /// What messages call the document file and the image root.
  void setDocFileName(const std::string& name);
  void setImageRootName(const std::string& name);

  /// Lets the host export, and reports the outcome as far as the print option allows. An answer
  /// that is missing or cannot be read is reported whatever the print option says.
  void process(const std::string& exportXml);

 private:
  std::unique_ptr<PerformExportData> data_;
};

}  // namespace vornwout
