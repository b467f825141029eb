// Building a table from CSV: the fields alone, and the table of a file whose every row is a cell
// with three label columns; 1, 10 and 100 MB.
#include <map>
#include <memory>

#include <benchmark/benchmark.h>

#include "host/build/csv_reader.h"
#include "host/build/table_builder.h"

namespace vornwout {
namespace {

/// Rows of about 40 bytes, no cell twice.
const std::string& csvOfMegabytes(std::int64_t megabytes) {
  static std::map<std::int64_t, std::string> texts;
  std::string& text = texts[megabytes];
  if (!text.empty()) return text;
  const auto size = static_cast<std::size_t>(megabytes) << 20;
  text = "region,product,month,amount\n";
  for (std::size_t i = 0; text.size() < size; ++i) {
    text += "Region " + std::to_string(i / 120 % 500) + ",Product " + std::to_string(i / 60000) +
            ",2017-" + std::to_string(100 + i % 120) + "," + std::to_string(i % 9973) + "." +
            std::to_string(10 + i % 90) + "\n";
  }
  return text;
}

/// One text as every file, without a copy.
class OneFile : public BuildFiles {
 public:
  explicit OneFile(const std::string& text) : text_(text) {}
  std::unique_ptr<ByteSource> open(const std::string&) override {
    return std::make_unique<View>(text_);
  }

 private:
  class View : public ByteSource {
   public:
    explicit View(const std::string& text) : text_(text) {}
    std::size_t read(char* buffer, std::size_t size) override {
      const std::size_t count = text_.copy(buffer, size, position_);
      position_ += count;
      return count;
    }
    void rewind() override { position_ = 0; }

   private:
    const std::string& text_;
    std::size_t position_ = 0;
  };
  const std::string& text_;
};

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
  TableDescription description;
  description.csv = "bench.csv";
  const auto add = [&](PivotPlace place, const char* column) {
    DimensionDescription& dimension = description.dimensions.emplace_back();
    dimension.place = place;
    dimension.columns.push_back({column, {}});
  };
  add(PivotPlace::kRows, "product");
  add(PivotPlace::kRows, "region");
  add(PivotPlace::kColumns, "month");
  description.values.emplace_back().column.name = "amount";
  description.format = parseDisplayFormat("F8.2");
  std::size_t cells = 0;
  for (auto _ : state) cells = buildTable(description, file)->cells.size();
  state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
  state.counters["cells"] = static_cast<double>(cells);
}
BENCHMARK(buildFromCsv)->Arg(1)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vornwout

BENCHMARK_MAIN();
