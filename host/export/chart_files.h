// The image files of an export's charts: numbered behind a root, beside the document.
//
// An image subcommand decides the root, the format and what the format can be told; without one the
// root is the document's path without its extension, and the document's own setting the format.
//
// Entry points: add() for each chart, or draw() and write(); report() behind the last one.
#pragma once

#include <optional>
#include <string>

#include "host/document/document_object.h"
#include "host/document/object_content.h"
#include "host/draw/chart_image.h"
#include "host/export/export_files.h"
#include "platform/exportspec/export_spec.h"
#include "platform/exportspec/response_spec.h"

namespace vornwout {

class ChartFiles {
 public:
  /// `files` must outlive it. Throws std::runtime_error, with a reason that goes on behind
  /// "because", for a format that no chart is drawn in.
  ChartFiles(const ExportSpec& spec, const std::string& documentFile, ChartImageFormat format,
             ExportFiles& files);

  /// Whether an image subcommand is given.
  static bool isAskedFor(const ExportSpec& spec);
  /// Images in these files or their format are what was asked for: from now on draw() and add() end
  /// the export where a chart cannot be drawn, by a std::runtime_error that says which and why.
  void demand() { isDemanded_ = true; }
  /// Per cent of the size at which a chart is shown.
  double percent() const { return options_.percent; }
  /// Whether it says where the files stand.
  bool hasRoot() const { return hasRoot_; }

  /// The chart of an object as an image. Throws DrawError.
  MediaContent draw(const DocumentObject& object, const MediaContent& chart) const;
  /// Writes an image into the next file and gives that file's name; from the document's folder
  /// on. Throws ExportError and StoreError.
  std::string write(const MediaContent& image);
  /// Draws a chart into the next file. Where it cannot be drawn no number is missing.
  std::string add(const DocumentObject& object, const MediaContent& chart) {
    return write(draw(object, chart));
  }

  /// Says in the response what was made, if anything was.
  void report(ExportResponse& response) const;

 private:
  ExportFiles& files_;
  std::string documentFolder_;
  std::string root_;  ///< the system's path
  std::string formatName_;
  bool hasRoot_ = false;
  bool isDemanded_ = false;
  ImageOptions options_;
  int count_ = 0;
};

}  // namespace vornwout
