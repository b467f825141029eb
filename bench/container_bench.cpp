// Containers: saving and reading, each beside the bare library doing the same work on
// the same bytes in the same run.
//
// The counter times_bare is what an operation takes in relation to the bare library: zlib at level
// 1 for saving, zlib for reading. The limits of whole documents are measured by limits. On a
// machine whose cores are busy zlib in two threads is no faster either: times_bare_in_threads
// compares with that. The files lie in memory, so that it is not the disk that is measured. Sizes
// are in MB, parts in KiB.
#include <chrono>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#include <unistd.h>
#include <zlib.h>

#include "host/store/container_reader.h"
#include "host/store/container_writer.h"

namespace vornwout {
namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

std::string path(const char* name) {
  return "/dev/shm/vornwout-bench-" + std::to_string(getpid()) + "-" + name;
}

/// Parts of a table as XML: cells with places, numbers and some words.
std::vector<std::string> tableParts(std::int64_t megabytes, std::int64_t partKib) {
  static const char* const kWords[] = {"mean", "median", "count", "share of all", "deviation"};
  const auto partSize = static_cast<std::size_t>(partKib) * 1024;
  std::vector<std::string> parts;
  std::uint32_t random = 1;
  std::size_t total = 0;
  while (total < static_cast<std::size_t>(megabytes) * 1'000'000) {
    std::string part = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<table>\n";
    while (part.size() < partSize) {
      random = random * 1664525 + 1013904223;
      part += "<cell at=\"" + std::to_string(random >> 28) + " " +
              std::to_string(random >> 20 & 0xFF) + "\"><number format=\"F8.2\">" +
              std::to_string(static_cast<double>(random >> 8) / 100.0) + "</number><note>" +
              kWords[random >> 16 & 3] + "</note></cell>\n";
    }
    total += part.size();
    parts.push_back(std::move(part));
  }
  return parts;
}

std::size_t sizeOf(const std::vector<std::string>& parts) {
  std::size_t size = 0;
  for (const std::string& part : parts) size += part.size();
  return size;
}

Bytef* bytesOf(const std::string& text) {
  return const_cast<Bytef*>(reinterpret_cast<const Bytef*>(text.data()));
}

/// What zlib alone makes of the parts.
std::vector<std::string> deflated(const std::vector<std::string>& parts) {
  z_stream stream = {};
  deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
  std::vector<std::string> results;
  std::string buffer;
  for (const std::string& part : parts) {
    deflateReset(&stream);
    buffer.resize(deflateBound(&stream, part.size()));
    stream.next_in = bytesOf(part);
    stream.avail_in = static_cast<uInt>(part.size());
    stream.next_out = bytesOf(buffer);
    stream.avail_out = static_cast<uInt>(buffer.size());
    deflate(&stream, Z_FINISH);
    results.push_back(buffer.substr(0, stream.total_out));
  }
  deflateEnd(&stream);
  return results;
}

void deflateInTwoThreads(const std::vector<std::string>& parts) {
  const auto middle = parts.begin() + static_cast<std::ptrdiff_t>(parts.size() / 2);
  const std::vector<std::string> first(parts.begin(), middle);
  const std::vector<std::string> second(middle, parts.end());
  std::thread thread([&] { benchmark::DoNotOptimize(deflated(first)); });
  benchmark::DoNotOptimize(deflated(second));
  thread.join();
}

void inflateInto(std::string& buffer, const std::string& packed) {
  z_stream stream = {};
  inflateInit2(&stream, -MAX_WBITS);
  stream.next_in = bytesOf(packed);
  stream.avail_in = static_cast<uInt>(packed.size());
  stream.next_out = bytesOf(buffer);
  stream.avail_out = static_cast<uInt>(buffer.size());
  inflate(&stream, Z_FINISH);
  inflateEnd(&stream);
}

void save(std::vector<std::string> parts, const std::string& file, int threads) {
  ContainerWriter writer(file, {"", threads});
  for (std::size_t i = 0; i < parts.size(); ++i) {
    writer.add(std::to_string(i), std::move(parts[i]));
  }
  writer.commit();
}

/// Sums up both times, ours being the one of the benchmark.
class Comparison {
 public:
  explicit Comparison(benchmark::State& state) : state_(state) {}
  ~Comparison() { state_.counters["times_bare"] = ours_ / bare_; }
  Comparison(const Comparison&) = delete;
  Comparison& operator=(const Comparison&) = delete;

  void add(double ours, double bare) {
    state_.SetIterationTime(ours);
    ours_ += ours;
    bare_ += bare;
  }

 private:
  benchmark::State& state_;
  double ours_ = 0;
  double bare_ = 0;
};

void saveContainer(benchmark::State& state) {
  const std::vector<std::string> parts = tableParts(state.range(0), state.range(1));
  const auto threads = static_cast<int>(state.range(2));
  Comparison comparison(state);
  double ours = 0;
  double bareInThreads = 0;
  for (auto _ : state) {
    Clock::time_point start = Clock::now();
    benchmark::DoNotOptimize(deflated(parts));
    const double bare = secondsSince(start);
    start = Clock::now();
    if (threads == 2) deflateInTwoThreads(parts);
    bareInThreads += threads == 2 ? secondsSince(start) : bare;
    std::vector<std::string> given = parts;
    start = Clock::now();
    save(std::move(given), path("save"), threads);
    const double taken = secondsSince(start);
    ours += taken;
    comparison.add(taken, bare);
  }
  state.counters["times_bare_in_threads"] = ours / bareInThreads;
  unlink(path("save").c_str());
  state.SetBytesProcessed(static_cast<std::int64_t>(sizeOf(parts)) * state.iterations());
}
BENCHMARK(saveContainer)
    ->ArgNames({"MB", "part", "threads"})
    ->ArgsProduct({{1, 10, 100}, {256, 4096}, {1, 2}})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

void readContainer(benchmark::State& state) {
  const std::vector<std::string> parts = tableParts(state.range(0), state.range(1));
  const std::vector<std::string> packed = deflated(parts);
  save(parts, path("read"), 2);
  Comparison comparison(state);
  std::string buffer;
  for (auto _ : state) {
    Clock::time_point start = Clock::now();
    for (std::size_t i = 0; i < parts.size(); ++i) {
      buffer.resize(parts[i].size());
      inflateInto(buffer, packed[i]);
    }
    const double bare = secondsSince(start);
    start = Clock::now();
    ContainerReader reader(path("read"));
    for (const ContainerMember& member : reader.members()) {
      benchmark::DoNotOptimize(reader.read(member.name));
    }
    comparison.add(secondsSince(start), bare);
  }
  unlink(path("read").c_str());
  state.SetBytesProcessed(static_cast<std::int64_t>(sizeOf(parts)) * state.iterations());
}
BENCHMARK(readContainer)
    ->ArgNames({"MB", "part"})
    ->ArgsProduct({{1, 10, 100}, {256, 4096}})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vornwout

BENCHMARK_MAIN();
