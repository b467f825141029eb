// TEXT: everything that is exported in one text file, in the order of the outline, with its charts
// as image files beside it.
#pragma once

#include "host/export/document_exporter.h"

namespace vornwout {

class TextExporter : public DocumentExporter {
 public:
  void run(const ExportJob& job, ExportFiles& files, ExportResponse& response) override;
};

}  // namespace vornwout
