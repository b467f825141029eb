// Writes the objects of a document into a text, each behind an empty line.
//
// A heading is underlined; a paragraph is one line however long, its list mark or quotation mark in
// front of it; a chart is a line that names its image file. A text has no looks: what is bold or
// coloured in the document is as plain as the rest.
//
// Entry points: writeHeading(), writeObject().
#pragma once

#include "host/document/outline.h"
#include "host/export/chart_files.h"
#include "host/export/text/text_output.h"
#include "host/export/text/text_table.h"

namespace vornwout {

class TextContents {
 public:
  /// All of it must outlive the contents.
  TextContents(TextOutput& out, const ExportTextSpec& spec, ShownLayers layers, ChartFiles& charts,
               ExportResponse& response);

  void writeHeading(const OutlineEntry& entry);
  /// Throws ExportError and StoreError. Tables that could not be written whole are in the response.
  void writeObject(const DocumentObject& object);

 private:
  class Writer;

  TextOutput& out_;
  bool isTabbed_;
  TextTables tables_;
  ChartFiles& charts_;
  ExportResponse& response_;
};

}  // namespace vornwout
