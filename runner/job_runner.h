// Runs jobs: reads command after command and calls the entry point of each.
//
// Whatever a command does, the job goes on with the next one: an error is a message and a status,
// and an exception that leaves an entry point is reported here.
#pragma once

#include <functional>
#include <map>
#include <utility>

#include "platform/parser/descriptor.h"
#include "platform/parser/token.h"
#include "platform/trace/trace_writer.h"
#include "runner/command_table.h"
#include "runner/diagnostic_sink.h"
#include "runner/job.h"

namespace vornwout {

class EmbeddedHost;

class JobRunner {
 public:
  /// `trace` and `host` may be null; `host` is told of every command so that it can keep its log.
  /// `isOver` is asked behind every command; once it is true no other is run.
  JobRunner(
      DiagnosticSink& diagnostics, TraceWriter* trace, EmbeddedHost* host,
      std::function<bool()> isOver = [] { return false; })
      : diagnostics_(diagnostics), trace_(trace), host_(host), isOver_(std::move(isOver)) {}

  /// Runs all commands of a job whose text is in the current encoding; warns of the first byte that
  /// the encoding does not know. False when the run is over before the job is.
  bool run(const Job& job);

 private:
  void warnOfForeignByte(const Job& job);
  void runCommand(const TokenizedCommand& command);
  void reportUnknown(const TokenizedCommand& command);
  void callEntry(const Command& known, const TokenizedCommand& command);
  /// The grammar of a command; null for one that there is not.
  const CommandDescriptor* grammarFor(const Command* known);

  DiagnosticSink& diagnostics_;
  TraceWriter* trace_;
  EmbeddedHost* host_;
  std::function<bool()> isOver_;
  std::map<const Command*, CommandDescriptor> grammars_;  ///< of the commands that have run
};

}  // namespace vornwout
