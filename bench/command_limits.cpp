// Limits of tokenising, parsing and whole commands; the yardstick is how long SQLite takes to
// prepare a statement of the same length.
#include <stdexcept>
#include <string>

#include <fmt/format.h>
#include <sqlite3.h>

#include "bench/bench_text.h"
#include "bench/limits.h"
#include "host/controller/embedded_host.h"
#include "libvornwout/commands/output_comment_data.h"
#include "platform/parser/current_command.h"
#include "platform/parser/tokenizer.h"
#include "platform/parser/universal_parser.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

constexpr int kRepeats = 2000;

/// A statement database with one table, on which statements are prepared.
class StatementYardstick {
 public:
  StatementYardstick() {
    if (sqlite3_open(":memory:", &database_) != SQLITE_OK ||
        sqlite3_exec(database_, "CREATE TABLE sales(region, city, year, amount, note)", nullptr,
                     nullptr, nullptr) != SQLITE_OK) {
      throw std::runtime_error("the yardstick's database cannot be made");
    }
  }
  ~StatementYardstick() { sqlite3_close(database_); }
  StatementYardstick(const StatementYardstick&) = delete;
  StatementYardstick& operator=(const StatementYardstick&) = delete;

  void prepare(const std::string& statement, int repeats) {
    for (int i = 0; i < repeats; ++i) {
      sqlite3_stmt* prepared = nullptr;
      if (sqlite3_prepare_v2(database_, statement.c_str(), static_cast<int>(statement.size()),
                             &prepared, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(database_));
      }
      sqlite3_finalize(prepared);
    }
  }

 private:
  sqlite3* database_ = nullptr;
};

/// A statement of exactly `length` bytes: conditions, each much like a keyword with its value.
std::string statementOf(std::size_t length) {
  std::string statement = "SELECT region,amount FROM sales WHERE year=2026";
  while (statement.size() + 60 < length) statement += " AND note='of the quarter' OR amount>12";
  if (length < statement.size() + 10) throw std::logic_error("no statement has this length");
  statement += " OR note='";
  statement.append(length - statement.size() - 1, 'x');
  return statement + "'";
}

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
