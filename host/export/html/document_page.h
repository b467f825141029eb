// A document as one page for a browser: everything that it shows, and nothing from outside.
//
// The page makes no request: its styles stand in it, its charts are data, and a content security
// policy forbids the rest. It runs no script. Objects stand in the order of the outline, from which
// the page's navigation is made; hidden ones, and what stands below a hidden heading, are left out.
#pragma once

#include <string>

#include "host/document/document.h"

namespace vornwout {

struct PageOptions {
  std::string title;            ///< empty for the page title that it begins with, or its name
  std::string language = "en";  ///< of the document's texts, a BCP 47 tag
  bool withModels = true;       ///< without, neither models nor what stands below them
};

/// The page, HTML in UTF-8. Reads the contents one by one; throws StoreError where one cannot be
/// read. A table that cannot be laid out says so in its place.
std::string renderPage(const Document& document, const PageOptions& options = {});

}  // namespace vornwout
