#include "platform/exportspec/export_spec.h"

#include <algorithm>

namespace vornwout {

bool ExportReportSpec::excludes(Excluded what) const {
  return std::find(items_.begin(), items_.end(), Item(what)) != items_.end();
}

std::vector<ExportReportSpec::Link> ExportReportSpec::links() const {
  std::vector<Link> links;
  for (const Item& item : items_) {
    if (const Link* link = std::get_if<Link>(&item)) links.push_back(*link);
  }
  return links;
}

std::optional<int> ExportTextSpec::getColumnWidth() const {
  if (!columnWidth_ || columnWidthAutofit_.value_or(false)) return std::nullopt;
  // What came as a document may have any number here.
  return static_cast<int>(std::clamp(columnWidth_->value, 0.0, 1e9));
}

}  // namespace vornwout
