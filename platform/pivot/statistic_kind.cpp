#include "platform/pivot/statistic_kind.h"

#include <array>
#include <cstddef>

namespace vornwout {
namespace {

constexpr std::array<std::string_view, 8> kNames = {
    "", "correlation", "count", "mean", "median", "percent", "residual", "significance"};

}  // namespace

std::string_view statisticKindName(StatisticKind kind) {
  return kNames.at(static_cast<std::size_t>(kind));
}

std::optional<StatisticKind> findStatisticKind(std::string_view name) {
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    if (kNames[i] == name) return static_cast<StatisticKind>(i);
  }
  return std::nullopt;
}

}  // namespace vornwout
