#include "host/export/html/html_exporter.h"

#include <cstddef>
#include <optional>
#include <string>

#include "host/document/outline.h"
#include "host/export/chart_files.h"
#include "host/export/html/document_page.h"

namespace vornwout {

void HtmlExporter::run(const ExportJob& job, ExportFiles& files, ExportResponse& response) {
  const ExportHTMLSpec& spec = job.spec.html;
  const std::string path = exportPath(spec.getDocumentFile());
  ReplacedFile& file = files.begin(path);
  PageOptions options;
  options.layers = job.scope.layers;
  options.pickLayers = spec.getInteractiveLayers();
  options.withNotes = spec.getNotesAndCaptions();
  options.withStyles = spec.getStyling();
  options.missing = [&](const DocumentObject& table) {
    response.warnings[static_cast<std::size_t>(WARNING_CODE::TOO_MANY_COLUMNS)].push_back(
        outlineLabel(table));
  };
  std::optional<ChartFiles> charts;
  if (spec.getImageFormat() || ChartFiles::isAskedFor(job.spec)) {
    charts.emplace(job.spec, path, spec.getImageFormat().value_or(ChartImageFormat::PNG), files);
    charts->demand();
    options.imagePercent = charts->percent();
    options.image = [&](const DocumentObject& object, const MediaContent& chart) {
      MediaContent image = charts->draw(object, chart);
      if (charts->hasRoot()) charts->write(image);
      return image;
    };
  }
  writePage(job.document.name(), job.scope.entries, options,
            [&](std::string_view html) { file.write(html); });
  response.documentFile = path;
  if (charts) charts->report(response);
}

}  // namespace vornwout
