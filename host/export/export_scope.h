// What of a document is exported: its objects and the layers of its tables, the same for every
// format.
#pragma once

#include <vector>

#include "host/document/document.h"
#include "host/document/outline.h"
#include "host/layout/table_grid.h"
#include "platform/exportspec/export_spec.h"

namespace vornwout {

struct ExportScope {
  /// The objects of the outline, headings too, in its order; `isShown` says which are exported.
  std::vector<OutlineEntry> entries;
  ShownLayers layers = ShownLayers::kAsChosen;
};

/// Visible objects unless all are asked for. Layers as each table has them chosen, all, or of each
/// table the one that is seen. Throws ExportError when nothing is left but what the commands that
/// handle documents say of themselves.
ExportScope scopeOf(const Document& document, const ExportContentsSpec& contents);

/// Nothing that is below a model, nor the model itself.
void leaveOutModels(std::vector<OutlineEntry>& entries);

}  // namespace vornwout
