// Whole commands, from the job's text to the host: tokenise, call the entry, request, table.
#include <benchmark/benchmark.h>

#include "bench/bench_text.h"
#include "host/controller/embedded_host.h"
#include "platform/parser/current_command.h"
#include "platform/parser/tokenizer.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

/// Runs every command of the job against an embedded host made anew for each run of the job.
void runJob(benchmark::State& state, const std::string& job, void (*entry)()) {
  std::int64_t commands = 0;
  for (auto _ : state) {
    EmbeddedHost host;
    const SinkRegistration sink(host.sink());
    const AdapterRegistration adapter(&host);
    Tokenizer tokenizer(job);
    TokenizedCommand command;
    while (tokenizer.next(command)) {
      const CurrentCommand current(command, 2);
      entry();
      ++commands;
    }
  }
  state.SetItemsProcessed(commands);
}

void requestCommand(benchmark::State& state) {
  std::string job;
  for (int i = 0; i < state.range(0); ++i) job += "OUTPUT ACTIVATE NAME=* MINIMIZED=NO.\n";
  runJob(state, "OUTPUT ACTIVATE NAME=*.\n" + job, outactiv8_);
}
BENCHMARK(requestCommand)->Arg(10)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

void commentCommand(benchmark::State& state) {
  runJob(state, ordinaryJob(static_cast<int>(state.range(0))), outcomnt_);
}
BENCHMARK(commentCommand)->Arg(10)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

void longCommentCommand(benchmark::State& state) {
  runJob(state, longCommand(static_cast<int>(state.range(0))), outcomnt_);
}
BENCHMARK(longCommentCommand)->Arg(10)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vornwout

BENCHMARK_MAIN();
