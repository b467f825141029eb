// Limits of tokenising, parsing and whole commands; the yardstick is how long SQLite takes to
// prepare a statement of the same length.
#include <stdexcept>
#include <string>

#include <fmt/format.h>

#include "bench/bench_text.h"
#include "bench/limits.h"
#include "bench/statement_yardstick.h"
#include "host/controller/embedded_host.h"
#include "libvornwout/commands/output_comment_data.h"
#include "platform/parser/current_command.h"
#include "platform/parser/tokenizer.h"
#include "platform/parser/universal_parser.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

constexpr int kRepeats = 2000;

/// OUTPUT COMMENT of exactly `length` bytes.
std::string commentOf(std::size_t length) {
  std::string command = "OUTPUT COMMENT COLOR=blue BOLD=YES";
  while (command.size() + 80 < length) command += " /LINE TEXT='of the quarter' COLOR=RED BOLD=NO";
  command += " /LINE TEXT='";
  command.append(length - command.size() - 2, 'x');
  return command + "'.";
}

std::string newOf(std::size_t length) {
  const std::string start = "OUTPUT NEW NAME=";
  const std::string end = " MINIMIZED=NO.";
  std::string name(std::min<std::size_t>(length - start.size() - end.size(), 60), 'n');
  std::string command = start + name;
  command.append(length - command.size() - end.size(), ' ');
  return command + end;
}

void parse(const std::string& text, int repeats) {
  for (int i = 0; i < repeats; ++i) {
    Tokenizer tokenizer(text);
    TokenizedCommand command;
    tokenizer.next(command);
    const CurrentCommand current(command, 2);
    CommandDescriptor descriptor("OUTPUT COMMENT", "Output Comment");
    const OutputCommentGlobalData global(descriptor);
    const OutputCommentLineData line(descriptor);
    CommandSpec spec;
    const VORN_TokenSequence tokens(true);
    UniversalParser parser(tokens, spec, descriptor);
    if (parser.getCommandSpecifications() != 0) throw std::runtime_error("the command has errors");
  }
}

void runNew(const std::string& text, int repeats) {
  EmbeddedHost host;
  const SinkRegistration sink(host.sink());
  const AdapterRegistration adapter(&host);
  for (int i = 0; i < repeats; ++i) {
    Tokenizer tokenizer(text);
    TokenizedCommand command;
    tokenizer.next(command);
    {
      const CurrentCommand current(command, 2);
      outnew_();
    }
    if (host.documents().size() != 1) throw std::runtime_error("the document was not made");
    VornwMsgOutputControllerResponse response;
    const VornwMsgOutputControllerRequest close(1, OutputControllerCommand::kClose, "ALL", "",
                                                OutputDocumentMinimized::kNotApplicable);
    host.GetOutputController()->SendRequest(close, response);
  }
}

LimitResult ratioTo(const std::string& name, double limit, const Medians& medians, int repeats) {
  LimitResult result;
  result.name = name;
  result.measured = medians.first / medians.second;
  result.limit = limit;
  result.detail = fmt::format("{:.2f} us against {:.2f} us", medians.first / repeats * 1e6,
                              medians.second / repeats * 1e6);
  return result;
}

LimitResult tokenizingRate(const Effort& effort) {
  const std::string job = ordinaryJob(effort.isSmoke ? 1000 : 100'000);
  std::vector<double> times;
  for (int i = 0; i < effort.rounds; ++i) {
    times.push_back(secondsOf([&] {
      Tokenizer tokenizer(job);
      TokenizedCommand command;
      while (tokenizer.next(command)) {
      }
    }));
  }
  LimitResult result;
  result.name = "tokenising a job, MB/s";
  result.measured = static_cast<double>(job.size()) / median(times) / 1e6;
  result.limit = 300;
  result.isMinimum = true;
  result.detail = fmt::format("{} MB", job.size() / 1'000'000);
  return result;
}

}  // namespace

std::vector<LimitResult> commandLimits(const Effort& effort) {
  std::vector<LimitResult> results{tokenizingRate(effort)};
  StatementYardstick yardstick;
  const int repeats = effort.isSmoke ? 10 : kRepeats;
  for (const std::size_t length : {std::size_t{75}, std::size_t{600}}) {
    const std::string command = commentOf(length);
    const std::string statement = statementOf(length);
    results.push_back(
        ratioTo(fmt::format("tokenising and parsing {} bytes : preparing a statement", length), 0.5,
                mediansInTurn(
                    effort, [&] { parse(command, repeats); },
                    [&] { yardstick.prepare(statement, repeats); }),
                repeats));
  }
  for (const std::size_t length : {std::size_t{75}, std::size_t{600}}) {
    const std::string command = newOf(length);
    const std::string statement = statementOf(length);
    results.push_back(
        ratioTo(fmt::format("a whole OUTPUT NEW of {} bytes : preparing a statement", length), 1.0,
                mediansInTurn(
                    effort, [&] { runNew(command, repeats); },
                    [&] { yardstick.prepare(statement, repeats); }),
                repeats));
  }
  return results;
}

}  // namespace vornwout
