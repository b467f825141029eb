#include "host/export/text/text_exporter.h"

#include "host/export/chart_files.h"
#include "host/export/text/text_contents.h"
#include "host/export/text/text_output.h"
#include "platform/adapter/progress_listener.h"

namespace vornwout {

void TextExporter::run(const ExportJob& job, ExportFiles& files, ExportResponse& response) {
  const ExportTextSpec& spec = job.spec.text;
  const std::string path = exportPath(spec.getDocumentFile());
  ChartFiles charts(job.spec, path, spec.getImageFormat(), files);
  if (spec.isImageFormatGiven() || ChartFiles::isAskedFor(job.spec)) charts.demand();
  TextOutput out(files.begin(path), spec.getEncoding());
  TextContents contents(out, spec, job.scope.layers, charts, response);
  const auto& entries = job.scope.entries;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (i > 0) reportWithinStep(i, entries.size());
    const ProgressStep step(i, entries.size());
    if (!entries[i].isShown) continue;
    if (entries[i].object->type == ObjectType::kHeading) {
      contents.writeHeading(entries[i]);
    } else {
      contents.writeObject(*entries[i].object);
    }
  }
  out.finish();
  response.documentFile = path;
  charts.report(response);
}

}  // namespace vornwout
