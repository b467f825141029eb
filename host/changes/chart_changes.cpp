#include "host/changes/chart_changes.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "host/build/svg_sanitizer.h"
#include "host/changes/change_notes.h"
#include "host/document/media_size.h"
#include "host/looks/svg_restyle.h"
#include "platform/files/fetch_file.h"
#include "platform/files/path_factory.h"
#include "platform/strings/localized.h"
#include "platform/text/encoding.h"
#include "platform/text/shortened_text.h"

namespace vornwout {
namespace {

constexpr int kShownColumns = 24;  ///< of a name in a message
constexpr int kSheetColumns = 8;   ///< of a name before what is wrong with it

/// Reads a style; what is wrong with it is said of the file that it is from.
template <typename Parse>
ChartStyle readStyle(const std::string& name, const Parse& parse, const std::string& content) {
  try {
    return parse(content);
  } catch (const LookError& error) {
    throw ChangeError(localized("in ^1, ^2", name, error.what()));
  }
}

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
  if (!change.styleSheet.empty()) {
    const std::string sheet = fetchStyleSheet(change.styleSheet);
    if (sheet.empty()) {
      throw ChangeError(localized("there is no style sheet ^1 in the Looks folder",
                                  textHead(change.styleSheet, kShownColumns)));
    }
    const std::string name =
        localized("the style sheet ^1", textHead(change.styleSheet, kSheetColumns));
    styles_.push_back(readStyle(name, parseChartStyleSheet, sheet));
  }
  std::size_t templates = 0;
  for (const std::string& content : change.chartTemplates) {
    const std::string name = chartTemplateName(++templates);
    styles_.push_back(readStyle(name, parseChartTemplate, content));
  }
}

bool ChartChanger::apply(MediaContent& chart) const {
  if (chart.mediaType != kSvgMediaType || chart.bytes == nullptr) return false;
  std::string svg = *chart.bytes;
  try {
    for (const ChartStyle& style : styles_) svg = restyleSvg(svg, style);
  } catch (const SvgError& error) {
    // What it is about is said with its label.
    constexpr std::string_view kSubject = "The chart is ";
    const std::string_view reason = error.what();
    const bool hasSubject = reason.starts_with(kSubject);
    throw ChangeError(clauseOf(std::string(reason.substr(hasSubject ? kSubject.size() : 0))));
  }
  if (svg == *chart.bytes) return false;
  chart.bytes = std::make_shared<const std::string>(std::move(svg));
  return true;
}

}  // namespace vornwout
