// What a PerformExport holds, and its work: the call of the host, and the report of its answer.
//
// process() is the run, createPivotTables() the report of an answer that could be read.
#pragma once

#include <string>

#include "libvornwout/export/perform_export.h"
#include "platform/adapter/host_adapter.h"
#include "platform/exportspec/response_spec.h"
#include "platform/exportspec/schema_reader.h"

namespace vornwout {

class PerformExport::PerformExportData {
 public:
  /// `makeReady` makes the XML platform ready; what it throws is reported.
  PerformExportData(BpProcedure& procedure, ExportGlobalSpec::PRINT_OPTION printOption,
                    void (*makeReady)() = initializeXmlPlatform);

  void setDocFileName(const std::string& name) { docFileName_ = name; }
  void setImageRootName(const std::string& name) { imageRootName_ = name; }

  void process(const std::string& exportXml);

  /// Reports a decoded answer as far as the print option allows. The answer's text is not looked
  /// at.
  void createPivotTables(const ResponseSpec& response, const std::string& responseXml);

 private:
  void run(const std::string& exportXml);
  void writeSummary(const ResponseSpec& response);
  void reportError(const ResponseSpec& response) const;

  BpProcedure& procedure_;
  ExportGlobalSpec::PRINT_OPTION printOption_;
  std::string docFileName_;
  std::string imageRootName_;
};

}  // namespace vornwout
