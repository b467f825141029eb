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

/// What the commands that handle documents say of themselves: their logs, notes and messages below
/// headings of their own. They write it into whatever document is active, so that one which is
/// being exported is seldom without.
bool isOwnRecord(const DocumentObject& object) {
  switch (object.type) {
    case ObjectType::kHeading:
    case ObjectType::kLog:
    case ObjectType::kNotes:
    case ObjectType::kWarning:
      return object.command.starts_with("OUTPUT ");
    default:
      return false;
  }
}

}  // namespace

ExportScope scopeOf(const Document& document, const ExportContentsSpec& contents) {
  ExportScope scope{outlineOf(document.root()), layersOf(contents)};
  if (std::all_of(scope.entries.begin(), scope.entries.end(),
                  [](const OutlineEntry& entry) { return isOwnRecord(*entry.object); })) {
    throw ExportError(ExportErrorCode::kEmptyDocument, localized("the document is empty"));
  }
  if (contents.getExport() == ExportContentsSpec::EXPORT_TYPE::ALL) {
    for (OutlineEntry& entry : scope.entries) entry.isShown = true;
  }
  if (std::none_of(scope.entries.begin(), scope.entries.end(), [](const OutlineEntry& entry) {
        return entry.isShown && !isOwnRecord(*entry.object);
      })) {
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
