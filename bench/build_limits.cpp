// Limit of building a table from CSV, in bytes per second.
#include <stdexcept>

#include <fmt/format.h>

#include "bench/csv_text.h"
#include "bench/limits.h"

namespace vornwout {

std::vector<LimitResult> buildLimits(const Effort& effort) {
  constexpr double kMegabytesPerSecond = 100;
  const std::string& text = csvOfMegabytes(effort.isSmoke ? 1 : 100);
  OneFile file(text);
  const TableDescription description = describedCsv();
  std::vector<double> times;
  std::size_t cells = 0;
  for (int i = 0; i < effort.rounds; ++i) {
    times.push_back(secondsOf([&] { cells = buildTable(description, file)->cells.size(); }));
  }
  if (cells == 0) throw std::runtime_error("the table that was built has no cells");
  const double seconds = median(times);
  const double megabytes = static_cast<double>(text.size()) / 1e6;
  return {{"table from 100 MB of CSV, MB/s", megabytes / seconds, kMegabytesPerSecond, true,
           fmt::format("{:.0f} ms, {} cells", seconds * 1e3, cells)}};
}

}  // namespace vornwout
