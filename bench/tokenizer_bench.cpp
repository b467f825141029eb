// Tokenising whole jobs, in the encodings with the cheapest and the dearest characters.
#include <benchmark/benchmark.h>

#include "bench/bench_text.h"
#include "platform/parser/tokenizer.h"

namespace vornwout {
namespace {

void tokenize(benchmark::State& state, const std::string& job) {
  TokenizedCommand command;
  std::size_t tokens = 0;
  for (auto _ : state) {
    Tokenizer tokenizer(job);
    while (tokenizer.next(command)) tokens += command.tokens().size();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(job.size()) * state.iterations());
  state.counters["tokens"] =
      benchmark::Counter(static_cast<double>(tokens), benchmark::Counter::kIsRate);
}

void tokenizeAscii(benchmark::State& state) {
  tokenize(state, ordinaryJob(static_cast<int>(state.range(0))));
}
BENCHMARK(tokenizeAscii)->Arg(10)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);

void tokenizeMultibyte(benchmark::State& state) {
  std::string job;
  for (int i = 0; i < state.range(0); ++i) {
    job += "OUTPUT COMMENT TEXT='四半期の売上高と利益、前年同期比の増減について' BOLD=はい.\n";
  }
  tokenize(state, job);
}
BENCHMARK(tokenizeMultibyte)->Arg(10)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vornwout

BENCHMARK_MAIN();
