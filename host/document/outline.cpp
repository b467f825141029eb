#include "host/document/outline.h"

namespace vornwout {
namespace {

void addBelow(const DocumentObject& heading, int depth, bool isShown,
              std::vector<OutlineEntry>& entries) {
  for (const DocumentObject& object : heading.children) {
    const std::size_t index = entries.size();
    OutlineEntry entry;
    entry.object = &object;
    entry.number = index + 1;
    entry.depth = depth;
    entry.isLast = &object == &heading.children.back();
    entry.isShown = isShown && object.visible;
    entries.push_back(entry);
    addBelow(object, depth + 1, entry.isShown, entries);
    entries[index].nextNumber = entries.size() + 1;
  }
}

}  // namespace

std::vector<OutlineEntry> outlineOf(const DocumentObject& root) {
  std::vector<OutlineEntry> entries;
  addBelow(root, 0, true, entries);
  return entries;
}

std::string outlineLabel(const DocumentObject& object) {
  std::string label =
      object.label.empty() ? std::string(objectTypeName(object.type)) : object.label;
  return object.index.empty() ? label : object.index + " " + label;
}

}  // namespace vornwout
