#include "host/export/export_scope.h"

#include <algorithm>

#include "host/export/export_error.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

ShownLayers layersOf(const ExportContentsSpec& contents) {
  switch (contents.getLayers()) {
    case ExportContentsSpec::LAYERS_TYPE::ALL:
      return ShownLayers::kAll;
    case ExportContentsSpec::LAYERS_TYPE::VISIBLE:
      return ShownLayers::kFirst;
    case ExportContentsSpec::LAYERS_TYPE::PRINTSETTING:
      break;
  }
  return ShownLayers::kAsChosen;
}

}  // namespace

ExportScope scopeOf(const Document& document, const ExportContentsSpec& contents) {
  ExportScope scope{outlineOf(document.root()), layersOf(contents)};
  if (scope.entries.empty()) {
    throw ExportError(ExportErrorCode::kEmptyDocument, localized("the document is empty"));
  }
  if (contents.getExport() == ExportContentsSpec::EXPORT_TYPE::ALL) {
    for (OutlineEntry& entry : scope.entries) entry.isShown = true;
  }
  if (std::none_of(scope.entries.begin(), scope.entries.end(),
                   [](const OutlineEntry& entry) { return entry.isShown; })) {
    throw ExportError(ExportErrorCode::kNothingVisible, localized("no object is visible"));
  }
  return scope;
}

void leaveOutModels(std::vector<OutlineEntry>& entries) {
  int hiddenBelow = -1;  // the depth of the model that is being passed
  for (OutlineEntry& entry : entries) {
    if (hiddenBelow >= 0 && entry.depth <= hiddenBelow) hiddenBelow = -1;
    if (hiddenBelow < 0 && entry.object->type == ObjectType::kModel) hiddenBelow = entry.depth;
    if (hiddenBelow >= 0) entry.isShown = false;
  }
}

}  // namespace vornwout
