#include "platform/text/shortened_text.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "platform/strings/localized.h"
#include "platform/text/display_width.h"

namespace vornwout {
namespace {

constexpr int kColumnsPerEnd = 28;  // with the words between them both ends take 80 columns or less
/// No end is looked for in more bytes: marks without width may be piled up without limit.
constexpr std::size_t kMostBytes = 1024;

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

std::size_t characterCount(std::string_view utf8) {
  return static_cast<std::size_t>(
      std::count_if(utf8.begin(), utf8.end(), [](char c) { return !isContinuation(c); }));
}

std::string_view headOf(std::string_view text, int columns) {
  std::size_t end = std::min(text.size(), kMostBytes);
  while (end > 0 && end < text.size() && isContinuation(text[end])) --end;
  int width = 0;
  std::size_t length = 0;
  forEachCluster(text.substr(0, end), [&](std::string_view cluster, int clusterColumns) {
    width += clusterColumns;
    if (width <= columns) length += cluster.size();
  });
  return text.substr(0, length);
}

std::string_view tailOf(std::string_view text) {
  std::size_t begin = text.size() - std::min(text.size(), kMostBytes);
  while (begin < text.size() && isContinuation(text[begin])) ++begin;
  std::vector<std::pair<std::size_t, int>> clusters;
  forEachCluster(text.substr(begin), [&](std::string_view cluster, int columns) {
    clusters.emplace_back(cluster.size(), columns);
  });
  int width = 0;
  std::size_t length = 0;
  for (auto cluster = clusters.rbegin(); cluster != clusters.rend(); ++cluster) {
    width += cluster->second;
    if (width > kColumnsPerEnd) break;
    length += cluster->first;
  }
  return text.substr(text.size() - length);
}

}  // namespace

std::string shortenedText(std::string_view utf8, int columns) {
  // No character takes more columns than bytes.
  if (utf8.size() <= static_cast<std::size_t>(columns)) return std::string(utf8);
  if (utf8.size() <= kMostBytes && displayWidth(utf8) <= columns) return std::string(utf8);
  const std::string_view head = headOf(utf8, kColumnsPerEnd);
  const std::string_view tail = tailOf(utf8);
  const std::size_t left =
      characterCount(utf8.substr(head.size(), utf8.size() - head.size() - tail.size()));
  return localized("^1 … ^2 characters … ^3", head, left, tail);
}

std::string textHead(std::string_view utf8, int columns) {
  if (utf8.size() <= kMostBytes && displayWidth(utf8) <= columns) return std::string(utf8);
  return std::string(headOf(utf8, columns - 1)) + "…";
}

}  // namespace vornwout
