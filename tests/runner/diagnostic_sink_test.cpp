// Messages of a run as the user sees them: place, source line, offender and what to do about it.
#include "runner/diagnostic_sink.h"

#include <chrono>
#include <functional>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/message/parser_message.h"
#include "platform/parser/current_command.h"
#include "platform/parser/lexical_error.h"
#include "platform/parser/tokenizer.h"
#include "platform/parser/universal_parser.h"
#include "platform/pivot/bp_cell_text.h"
#include "platform/text/encoding.h"
#include "tests/support/hostile_size.h"

namespace vornwout {
namespace {

using testing::HasSubstr;

/// A job of one command, and what the sink writes about it.
class Shown {
 public:
  explicit Shown(std::string text) : job_{"job.qxs", std::move(text)}, tokenizer_(job_.text) {
    EXPECT_TRUE(tokenizer_.next(command_));
    sink_.setSource(&job_, &command_);
  }

  /// Everything that was written.
  std::string text() const { return out_.str(); }
  const TokenizedCommand& command() const { return command_; }
  const Job& job() const { return job_; }
  DiagnosticSink& sink() { return sink_; }

 private:
  Job job_;
  Tokenizer tokenizer_;
  TokenizedCommand command_;
  std::ostringstream out_;
  DiagnosticSink sink_{out_, TerminalStyle{}, [] {}};
  SinkRegistration registration_{sink_};
};

OutputMessageRecord outputMessage(const std::string& text, MessageSeverity severity) {
  OutputMessageRecord record;
  record.message.text = text;
  record.level = static_cast<int>(severity);
  return record;
}

TEST(DiagnosticSink, ShowsTheOffenderInItsLine) {
  Shown shown("GO\n NAME='a b' X.");
  const ParserMessage messages;
  messages.report(MessageKey::kParamRepeated, {"NAME", ""},
                  shown.command().spot(shown.command().tokens()[3]));
  EXPECT_EQ(shown.text(),
            "job.qxs:2:7: error: The keyword NAME is given more than once.\n"
            "   NAME='a b' X.\n"
            "        ^~~~~\n"
            "  help: Keep one of them.\n");
  EXPECT_EQ(shown.sink().errors(), 1);
}

TEST(DiagnosticSink, ShowsWhatWasReadLastWhenNoPlaceIsNamed) {
  Shown shown("GO NAME=abc.");
  CurrentCommand current(shown.command(), 1);
  current.noteRead(&shown.command().tokens()[3]);
  const ParserMessage messages;
  messages.GenericWarning("Text.");
  EXPECT_EQ(shown.text(), "job.qxs:1:9: warning: Text.\n  GO NAME=abc.\n          ^~~\n");
  EXPECT_EQ(shown.sink().warnings(), 1);
  EXPECT_EQ(shown.sink().errors(), 0);
}

TEST(DiagnosticSink, HidesSecretsInTheLineAndKeepsTheCaretBelowTheOffender) {
  Shown shown("GO PASSWORD='a long secret' X PASSWORD=表 Y.");
  const CurrentCommand current(shown.command(), 1);
  const ParserMessage messages;
  const auto report = [&](std::size_t token) {
    messages.report(MessageKey::kParenRequired, {"X"},
                    shown.command().spot(shown.command().tokens()[token]));
  };
  for (const std::size_t token : {3U, 1U, 8U}) report(token);
  const std::string line = "  GO PASSWORD=*** *** PASSWORD=*** ***.\n";
  const std::string message = "error: X needs its values in parentheses.\n";
  const std::string help = "  help: Put the values between ( and ).\n";
  EXPECT_EQ(shown.text(), "job.qxs:1:13: " + message + line + "              ^~~\n" + help +
                              "job.qxs:1:4: " + message + line + "     ^~~~~~~~\n" + help +
                              "job.qxs:1:42: " + message + line +
                              "                                   ^~~\n" + help);
}

TEST(DiagnosticSink, HidesSecretsOfACommandThatIsNotCarriedOut) {
  Shown shown("GO PASSWORD='s3cret' X.");
  shown.sink().outputMessage(outputMessage("Text.", MessageSeverity::kError));
  EXPECT_THAT(shown.text(), HasSubstr("\n  GO PASSWORD=*** ***.\n  ^~\n"));
}

TEST(DiagnosticSink, HidesCommentsWhereTheyMayTellASecret) {
  const struct {
    const char* job;
    const char* line;
  } cases[] = {
      {"GO PASSWORD='new' /* old: 's3cret' */ X.", "GO PASSWORD=*** *** ***."},
      {"GO NAEM=a /* password='s3cret' */ Y=b.", "GO NAEM=a *** Y=b."},
      {"GO NAEM=a /* a remark */ Y=b.", "GO NAEM=a /* a remark */ Y=b."},
      {"/* PASSWORD='s3cret' */ GO X.", "*** GO X."},
      {"/* PASSWORD=\n's3cret' */ GO X.", "*** GO X."},
      {"GO X /* PASSWORD='s3cret'\n */ Y.", "GO X ***"},
      {"GO X /* PASSWORD='s3cret'", "GO X ***"},
      {"GO X. /* PASSWORD='s3cret' */", "GO X. ***"},
  };
  for (const auto& c : cases) {
    Shown shown(c.job);
    shown.sink().outputMessage(outputMessage("Text.", MessageSeverity::kError));
    EXPECT_THAT(shown.text(), HasSubstr("\n  " + std::string(c.line) + "\n")) << c.job;
  }
}

TEST(DiagnosticSink, HidesASecretArgument) {
  Shown shown("GO x.");
  OutputMessageRecord record = outputMessage("Refused: ^1", MessageSeverity::kError);
  BpComposite message("Refused: ^1", true);
  message.Add(BpString::secret("s3cret")).Finish();
  record.message = message.data();
  shown.sink().outputMessage(record);
  EXPECT_THAT(shown.text(), HasSubstr("error: Refused: ***\n"));
}

TEST(DiagnosticSink, ShortensLongArguments) {
  Shown shown("GO x.");
  const ParserMessage messages;
  messages.ParenRequired(std::string(2'000'000, 'a'));
  OutputMessageRecord record = outputMessage("Name ^1.", MessageSeverity::kError);
  record.message.kind = CellText::Kind::kComposite;
  record.message.arguments.edit().emplace_back().text = std::string(2'000'000, 'b');
  shown.sink().outputMessage(record);
  EXPECT_THAT(shown.text(),
              HasSubstr("error: " + std::string(28, 'a') + " … 1999944 characters … " +
                        std::string(28, 'a') + " needs its values in parentheses.\n"));
  EXPECT_THAT(shown.text(), HasSubstr("error: Name " + std::string(28, 'b') + " … "));
  EXPECT_LT(shown.text().size(), 1000U);
}

TEST(DiagnosticSink, ShowsTheLineOfALexicalErrorThatIsNoToken) {
  Shown shown("GO a /* b");
  const ParserMessage messages;
  reportLexicalErrors(messages, shown.command());
  EXPECT_THAT(shown.text(), HasSubstr("\n  GO a /* b\n       ^~\n"));
}

TEST(DiagnosticSink, ShowsCharactersOfOtherEncodings) {
  const ScopedEncoding encoding(Encoding::find("Shift-JIS"));
  Shown shown("GO \x95\x5C\x95\x5C x.");
  const ParserMessage messages;
  messages.report(MessageKey::kParenRequired, {"x"},
                  shown.command().spot(shown.command().tokens()[1]));
  EXPECT_THAT(shown.text(), HasSubstr("job.qxs:1:4: "));
  EXPECT_THAT(shown.text(), HasSubstr("\n  GO 表表 x.\n     ^~~~\n"));
}

TEST(DiagnosticSink, ShowsNoLineForAMessageWithoutBytes) {
  Shown shown("GO x.");
  const ParserMessage messages;
  messages.report(MessageKey::kParenRequired, {"x"}, SourceSpot{{1, 4}});
  EXPECT_EQ(shown.text(),
            "job.qxs:1:4: error: x needs its values in parentheses.\n"
            "  help: Put the values between ( and ).\n");
}

TEST(DiagnosticSink, ShowsMessagesOfNoJobWithoutAPlace) {
  Shown shown("GO x.");
  shown.sink().setSource(nullptr, nullptr);
  shown.sink().outputMessage(outputMessage("Text.", MessageSeverity::kError));
  EXPECT_EQ(shown.text(), "vornwout: error: Text.\n");
}

TEST(DiagnosticSink, ShowsAMessageOfTheOutputAtItsCommand) {
  Shown shown("\n  OUTPUT CLOSE a.");
  shown.sink().outputMessage(outputMessage("Text.", MessageSeverity::kWarning));
  EXPECT_EQ(shown.text(), "job.qxs:2:3: warning: Text.\n    OUTPUT CLOSE a.\n    ^~~~~~\n");
}

TEST(DiagnosticSink, ShowsNamesOfASublistOnce) {
  Shown shown("GO x.");
  OutputMessageRecord record = outputMessage("Left out:", MessageSeverity::kWarning);
  record.message.kind = CellText::Kind::kComposite;
  record.message.hasSublist = true;
  for (const char* name : {"alpha", "beta"})
    record.message.sublist.edit().emplace_back().text = name;
  shown.sink().outputMessage(record);
  EXPECT_EQ(shown.text(), "job.qxs:1:1: warning: Left out: alpha, beta\n  GO x.\n  ^~\n");
}

TEST(DiagnosticSink, SaysThatAHostGaveNoReason) {
  for (const char* text : {"", "  ", "\n"}) {
    Shown shown("GO x.");
    shown.sink().outputMessage(outputMessage(text, MessageSeverity::kError));
    EXPECT_THAT(shown.text(),
                HasSubstr("error: The host refused the command and gave no reason.\n"));
    EXPECT_EQ(shown.sink().errors(), 1);
  }
}

TEST(DiagnosticSink, WarnsOfTheTextOfAJob) {
  Shown shown("GO x.\nTEXT='\xFF'.");
  shown.sink().warnOfText(shown.job(), 12, 2, "A bad byte.", "Mend it.");
  EXPECT_EQ(shown.text(),
            "job.qxs:2:7: warning: A bad byte.\n  TEXT='\uFFFD'.\n        ^\n  help: Mend it.\n");
  EXPECT_EQ(shown.sink().warnings(), 1);
}

TEST(DiagnosticSink, HidesSecretsInTheLineOfAWarningOfTheText) {
  Shown shown("GO x.\n\nGO PASSWORD='ab\xFF' y.\n");
  shown.sink().warnOfText(shown.job(), 22, 3, "A bad byte.", "Mend it.");
  EXPECT_EQ(shown.text(),
            "job.qxs:3:16: warning: A bad byte.\n  GO PASSWORD=*** ***.\n              ^~~\n"
            "  help: Mend it.\n");
}

TEST(DiagnosticSink, CallsForEarlierOutputBeforeItWrites) {
  std::ostringstream out;
  std::string before = "not called";
  DiagnosticSink sink(out, TerminalStyle{}, [&] { before = out.str(); });
  sink.outputMessage(outputMessage("Text.", MessageSeverity::kError));
  EXPECT_EQ(before, "");
  EXPECT_EQ(out.str(), "vornwout: error: Text.\n");
}

/// Seconds to parse and show a command of so many unknown keywords on one line.
double secondsToShow(int count, const std::string& keyword) {
  std::string text = "GO ";
  for (int i = 0; i < count; ++i) text += keyword + "=1 ";
  const auto start = std::chrono::steady_clock::now();
  Shown shown(text + ".");
  const CurrentCommand current(shown.command(), 1);
  CommandDescriptor command("GO");
  command.addSubComDesc({"", UPSpecTypes::kKeywords, false, false});
  CommandSpec spec;
  const VORN_TokenSequence tokens(true);
  EXPECT_EQ(UniversalParser(tokens, spec, command).getCommandSpecifications(), count);
  EXPECT_EQ(shown.sink().errors(), count);
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  return taken.count();
}

TEST(DiagnosticSinkScale, ShowsManyMessagesOnOneLineInLinearTime) {
  constexpr int kCount = kHostileCount / 5;
  for (const char* keyword : {"FOO", "F\xC3\xB6O"}) {
    SCOPED_TRACE(keyword);
    const double few = secondsToShow(kCount / 10, keyword);
    const double many = secondsToShow(kCount, keyword);
    // Ten times the messages; a cost that grew with the line would make it a hundred times.
    EXPECT_LT(many, 30 * few + 0.5);
    EXPECT_LT(many, 5);
  }
}

}  // namespace
}  // namespace vornwout
