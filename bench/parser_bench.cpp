// Parsing one command of many subcommands, tokens ready; and declaring the grammar alone.
#include <benchmark/benchmark.h>

#include "bench/bench_text.h"
#include "libvornwout/commands/output_comment_data.h"
#include "platform/parser/current_command.h"
#include "platform/parser/tokenizer.h"
#include "platform/parser/universal_parser.h"

namespace vornwout {
namespace {

void declareGrammar(benchmark::State& state) {
  for (auto _ : state) {
    CommandDescriptor descriptor("OUTPUT COMMENT", "Output Comment");
    const OutputCommentGlobalData global(descriptor);
    const OutputCommentLineData line(descriptor);
    benchmark::DoNotOptimize(descriptor);
  }
}
BENCHMARK(declareGrammar);

void parseCommand(benchmark::State& state) {
  const std::string text = longCommand(static_cast<int>(state.range(0)));
  Tokenizer tokenizer(text);
  TokenizedCommand command;
  tokenizer.next(command);
  const CurrentCommand current(command, 2);
  CommandDescriptor descriptor("OUTPUT COMMENT", "Output Comment");
  const OutputCommentGlobalData global(descriptor);
  const OutputCommentLineData line(descriptor);
  for (auto _ : state) {
    CommandSpec spec;
    const VORN_TokenSequence tokens(true);
    UniversalParser parser(tokens, spec, descriptor);
    if (parser.getCommandSpecifications() != 0) state.SkipWithError("the command has errors");
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
  state.SetItemsProcessed(state.range(0) * state.iterations());
}
BENCHMARK(parseCommand)->Arg(10)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vornwout

BENCHMARK_MAIN();
