// Building a table from CSV: the fields alone, and the table of a file whose every row is a cell
// with three label columns; 1, 10 and 100 MB.
#include <benchmark/benchmark.h>

#include "bench/csv_text.h"
#include "host/build/csv_reader.h"

namespace vornwout {
namespace {

void readFields(benchmark::State& state) {
  const std::string& text = csvOfMegabytes(state.range(0));
  OneFile file(text);
  std::size_t bytes = 0;
  for (auto _ : state) {
    const auto source = file.open("");
    CsvReader reader(*source, "bench.csv", {});
    reader.read([&](std::uint64_t, std::span<const std::string_view> fields) {
      bytes += fields.back().size();
    });
  }
  benchmark::DoNotOptimize(bytes);
  state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
}
BENCHMARK(readFields)->Arg(1)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);

void buildFromCsv(benchmark::State& state) {
  const std::string& text = csvOfMegabytes(state.range(0));
  OneFile file(text);
  const TableDescription description = describedCsv();
  std::size_t cells = 0;
  for (auto _ : state) cells = buildTable(description, file)->cells.size();
  state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
  state.counters["cells"] = static_cast<double>(cells);
}
BENCHMARK(buildFromCsv)->Arg(1)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vornwout

BENCHMARK_MAIN();
