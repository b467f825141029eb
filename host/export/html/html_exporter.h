// OUTPUT EXPORT as HTML: one page that needs nothing else.
//
// Charts stand in the page as they are, or as images where IMAGEFORMAT or an image subcommand says
// so; with an image root the same images are written beside it, too.
#pragma once

#include "host/export/document_exporter.h"

namespace vornwout {

class HtmlExporter : public DocumentExporter {
 public:
  void run(const ExportJob& job, ExportFiles& files, ExportResponse& response) override;
};

}  // namespace vornwout
