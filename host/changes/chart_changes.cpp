#include "host/changes/chart_changes.h"

#include <memory>
#include <utility>

#include <fmt/format.h>

#include "host/build/svg_sanitizer.h"
#include "host/changes/change_notes.h"
#include "host/document/media_size.h"
#include "host/looks/svg_restyle.h"
#include "platform/files/fetch_file.h"
#include "platform/files/path_factory.h"
#include "platform/text/encoding.h"
#include "platform/text/shortened_text.h"

namespace vornwout {
namespace {

constexpr int kShownColumns = 24;  ///< of a name in a message

/// The content of a style sheet; empty when there is none of that name.
std::string fetchStyleSheet(const std::string& name) {
  // A name and no path: nothing outside of the folder is meant.
  if (name.find_first_of("/\\") != std::string::npos || name.starts_with('.')) return {};
  for (const int pathKind : {PathFactory::kInstallation, PathFactory::kUserDirectory}) {
    std::string content =
        FetchFile::fetch(PathFactory::getPathInstance(pathKind).getDirectory() + "/Looks/" +
                             currentEncoding().fromUtf8(name) + ".qgs",
                         false, false);
    if (!content.empty()) return content;
  }
  return {};
}

}  // namespace

ChartChanger::ChartChanger(const GraphChange& change) {
  try {
    if (!change.styleSheet.empty()) {
      const std::string sheet = fetchStyleSheet(change.styleSheet);
      if (sheet.empty()) {
        throw ChangeError(fmt::format("there is no style sheet {} in the Looks folder",
                                      textHead(change.styleSheet, kShownColumns)));
      }
      styles_.push_back(parseChartStyleSheet(sheet));
    }
    for (const std::string& chartTemplate : change.chartTemplates) {
      styles_.push_back(parseChartTemplate(chartTemplate));
    }
  } catch (const LookError& error) {
    throw ChangeError(fmt::format("in the chart's style, {}", error.what()));
  }
}

bool ChartChanger::apply(MediaContent& chart) const {
  if (chart.mediaType != kSvgMediaType || chart.bytes == nullptr) return false;
  std::string svg = *chart.bytes;
  try {
    for (const ChartStyle& style : styles_) svg = restyleSvg(svg, style);
  } catch (const SvgError& error) {
    throw ChangeError(fmt::format("a chart cannot be restyled: {}", error.what()));
  }
  if (svg == *chart.bytes) return false;
  chart.bytes = std::make_shared<const std::string>(std::move(svg));
  return true;
}

}  // namespace vornwout
