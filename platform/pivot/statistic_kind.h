// What kind of statistic a category of a pivot table holds, by which commands select cells.
#pragma once

#include <optional>
#include <string_view>

namespace vornwout {

enum class StatisticKind {
  kNone,
  kCorrelation,
  kCount,
  kMean,
  kMedian,
  kPercent,
  kResidual,
  kSignificance,
};

/// The kind's name in files, in lower case; empty for none.
std::string_view statisticKindName(StatisticKind kind);

/// The kind that a file names, exactly as statisticKindName() writes it.
std::optional<StatisticKind> findStatisticKind(std::string_view name);

}  // namespace vornwout
