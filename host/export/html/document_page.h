// A document as one page for a browser: everything that it shows, and nothing from outside.
//
// The page makes no request: its styles stand in it, its charts are data, and a content security
// policy forbids the rest. It runs no script; layers are picked by radio buttons and styles alone.
// Objects stand in the order of the outline, from which the page's navigation is made; what is not
// shown is left out.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/document/document.h"
#include "host/document/outline.h"
#include "host/export/html/html_writer.h"
#include "host/layout/table_grid.h"

namespace vornwout {

struct PageOptions {
  std::string title;            ///< empty for the page title that it begins with, or its name
  std::string language = "en";  ///< of the document's texts, a BCP 47 tag
  ShownLayers layers = ShownLayers::kAsChosen;
  /// Shows one layer of a table at a time, of those that `layers` names, or of all when each table
  /// has its own choice. Without styles nothing is picked.
  bool pickLayers = false;
  bool withNotes = true;  ///< captions and footnotes of tables
  /// Without, a page of bare elements.
  bool withStyles = true;
  /// What stands for a picture that the page shows; the picture itself where there is none.
  std::function<MediaContent(const DocumentObject& object, const MediaContent& chart)> image;
  double imagePercent = 100;  ///< how large it is shown, of the picture's own size in the document
  /// Is told of a table that is too large to be shown.
  std::function<void(const DocumentObject& object)> missing;
};

/// Writes the page of those `entries` that are shown, HTML in UTF-8, piece by piece. Reads the
/// contents one by one; throws StoreError where one cannot be read, and what `image` throws. A
/// table that cannot be laid out says so in its place.
void writePage(const std::string& documentName, const std::vector<OutlineEntry>& entries,
               const PageOptions& options, const HtmlReceiver& receive);

/// The page of a whole document, without what is hidden.
std::string renderPage(const Document& document, bool withModels = true);

}  // namespace vornwout
