#include "host/export/html/html_exporter.h"

#include "host/export/html/document_page.h"

namespace vornwout {

void HtmlExporter::run(const ExportJob& job, ExportFiles& files, ExportResponse& response) {
  const ExportHTMLSpec& spec = job.spec.html;
  response.documentFile = spec.getDocumentFile();
  ReplacedFile& file = files.begin(exportPath(response.documentFile));
  PageOptions options;
  options.layers = job.scope.layers;
  options.pickLayers = spec.getInteractiveLayers();
  options.withNotes = spec.getNotesAndCaptions();
  options.withStyles = spec.getStyling();
  writePage(job.document.name(), job.scope.entries, options,
            [&](std::string_view html) { file.write(html); });
}

}  // namespace vornwout
