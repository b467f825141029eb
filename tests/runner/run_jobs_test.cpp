// Runs of the built program: hosts, options, streams and statuses.
#include <array>
#include <csignal>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/program_run.h"

namespace vornwout {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* kComment = "OUTPUT COMMENT TEXT='hello'.\n";
constexpr const char* kMistake = "OUTPUT NEW NAEM=a.\n";
constexpr const char* kWarning = "OUTPUT COMMENT TEXT='hello' COLOR=nocolour.\n";

ProgramResult runInput(const std::string& job, std::vector<std::string> options = {},
                       ProgramSetup setup = {}) {
  setup.input = job;
  options.insert(options.begin(), "run");
  options.emplace_back("-");
  return runProgram(std::move(options), setup);
}

TEST(RunJobs, StatusIsTheWorstThatHappened) {
  EXPECT_EQ(runInput(kComment).status, 0);
  EXPECT_EQ(runInput("").status, 0);
  const ProgramResult warned = runInput(kWarning);
  EXPECT_EQ(warned.status, 0);
  EXPECT_THAT(warned.err, StartsWith("<stdin>:1:35: warning: "));
  const ProgramResult failed = runInput(std::string(kMistake) + kComment);
  EXPECT_EQ(failed.status, 1);
  EXPECT_THAT(failed.err, StartsWith("<stdin>:1:12: error: "));
  EXPECT_THAT(failed.out, HasSubstr("hello")) << "the job goes on";
  EXPECT_EQ(runProgram({"run", "/nowhere.qxs"}).status, 2);
}

TEST(RunJobs, AllJobsAreReadBeforeTheFirstRuns) {
  const ScratchDirectory scratch;
  const std::string job = scratch.write("a.qxs", kComment);
  const ProgramResult result = runProgram({"run", job, "/nowhere.qxs"});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err,
            "vornwout: error: The job /nowhere.qxs cannot be read: No such file or directory.\n");
}

TEST(RunJobs, JobsRunOneAfterTheOtherOnTheSameDocuments) {
  const ScratchDirectory scratch;
  const std::string first = scratch.write("a.qxs", "OUTPUT NEW NAME=kept.\n");
  const std::string second = scratch.write("b.qxs", "OUTPUT ACTIVATE kept.\n");
  EXPECT_EQ(runProgram({"run", first, second}).status, 0);
  EXPECT_EQ(runProgram({"run", second, first}).status, 1);
}

TEST(RunJobs, QuietShowsMessagesOnly) {
  for (const char* option : {"-q", "--quiet"}) {
    const ProgramResult result = runInput(std::string(kWarning), {option});
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("warning"));
  }
}

struct Colored {
  std::vector<std::string> options;
  std::vector<std::pair<std::string, std::string>> environment;
  bool isColored;
};

TEST(RunJobs, ColoursAreWhatWasAskedFor) {
  const Colored cases[] = {
      {{}, {}, false},  // no terminal
      {{"--color", "auto"}, {{"TERM", "xterm"}, {"COLORTERM", "truecolor"}}, false},
      {{"--color", "always"}, {}, true},
      {{"--color", "always"}, {{"NO_COLOR", "1"}}, true},
      {{"--color", "never"}, {}, false},
      {{}, {{"NO_COLOR", "1"}}, false},
  };
  for (const Colored& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.options));
    ProgramSetup setup;
    setup.environment = c.environment;
    const ProgramResult result =
        runInput("OUTPUT COMMENT TEXT='a' COLOR=red.\nBOGUS.\n", c.options, setup);
    EXPECT_EQ(result.out.find('\x1b') != std::string::npos, c.isColored);
    EXPECT_EQ(result.err.find('\x1b') != std::string::npos, c.isColored);
  }
}

TEST(RunJobs, ColumnsOfATerminalDoNotReachAFile) {
  const std::string job = "OUTPUT COMMENT WIDTH=600 TEXT='a text'.\n";
  ProgramSetup narrow;
  narrow.environment = {{"COLUMNS", "20"}};
  EXPECT_EQ(runInput(job, {}, narrow).out, runInput(job).out);
}

TEST(RunJobs, EncodingIsThatOfTheJobs) {
  const std::string job =
      "OUTPUT COMMENT TEXT='Gr\xFC\xDF"
      "e'.\n";
  const ProgramResult right = runInput(job, {"--encoding", "windows-1252"});
  EXPECT_THAT(right.out, HasSubstr("Grüße"));
  EXPECT_EQ(right.err, "");
  const ProgramResult wrong = runInput(job);
  EXPECT_EQ(wrong.status, 0);
  EXPECT_THAT(wrong.out, HasSubstr("Gr��e"));
  EXPECT_THAT(wrong.err, StartsWith("<stdin>:1:24: warning: The byte FC is no valid UTF-8.\n"
                                    "  OUTPUT COMMENT TEXT='Gr��e'.\n"
                                    "                         ^\n"));
}

TEST(RunJobs, LanguageIsThatOfTheMonthNames) {
  const std::map<std::string, std::string> months = {
      {"de", "Januar|Februar|März|April|Mai|Juni|Juli|August|September|Oktober|November|Dezember"},
      {"es",
       "enero|febrero|marzo|abril|mayo|junio|julio|agosto|septiembre|octubre|noviembre|diciembre"},
      {"en",
       "January|February|March|April|May|June|July|August|September|October|November|December"},
  };
  for (const auto& [language, names] : months) {
    const ProgramResult result =
        runInput("OUTPUT COMMENT TEXT=')DATE'.\n", {"--language", language});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(
        std::regex_search(result.out, std::regex("[ 0-9][0-9]?-(" + names + ")-20[0-9]{2} ")))
        << language << ":\n"
        << result.out;
  }
}

TEST(RunJobs, WithoutAHostNothingIsSentAndNothingDies) {
  const ProgramResult result =
      runInput("OUTPUT NEW NAME=a.\nOUTPUT COMMENT TEXT='hello'.\n", {"--host", "none"});
  EXPECT_LE(result.status, 1);
  EXPECT_THAT(result.out, HasSubstr("hello"));
}

TEST(RunJobs, HostThatIsNoneOfTheThreeIsRefused) {
  const ScratchDirectory scratch;
  const std::string missing = scratch.file("missing.json");
  const std::map<std::string, std::string> errors = {
      {"bogus", "There is no host \"bogus\": write embedded, none or script=FILE."},
      {"", "There is no host \"\": write embedded, none or script=FILE."},
      {"script=", "The scripted host has no file: write script=FILE."},
      {"script=" + missing,
       "The scripted host's file " + missing + " cannot be read: No such file or directory."},
      {"script=" + scratch.write("bad.json", "{\"x\": 1}"),
       scratch.file("bad.json") +
           ":1:2: /x: unknown member \"x\"; known here: \"output_controller\""},
  };
  for (const auto& [host, error] : errors) {
    SCOPED_TRACE(host);
    const ProgramResult result = runInput(kComment, {"--host", host});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, StartsWith("vornwout: error: " + error));
  }
}

TEST(RunJobs, ScriptedHostAnswers) {
  const ScratchDirectory scratch;
  const std::string script = scratch.write(
      "host.json",
      R"({"responses": [{"success": false, "message": "Not ^1.", "argument": "today"}]})");
  const ProgramResult result =
      runInput("OUTPUT NEW NAME=a.\nOUTPUT NEW NAME=b.\n", {"--host", "script=" + script});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, StartsWith("<stdin>:1:1: error: Not today."));
}

TEST(RunJobs, EmbeddedHostIsTheUsualOne) {
  const std::string job = "OUTPUT NEW NAME=a.\nOUTPUT NEW NAME=A.\n";
  const ProgramResult usual = runInput(job);
  const ProgramResult named = runInput(job, {"--host", "embedded"});
  EXPECT_EQ(usual.status, 1);
  EXPECT_THAT(usual.err, HasSubstr("An open output document is already named A."));
  EXPECT_EQ(usual.err, named.err);
}

TEST(RunJobs, HandlesAreTaken) {
  EXPECT_EQ(runInput(kComment, {"--handle", "a=/x", "--handle", "A=/y"}).status, 0);
}

TEST(RunJobs, TraceIsWrittenToItsFile) {
  const ScratchDirectory scratch;
  const std::string trace = scratch.write("trace", std::string(5000, 'x'));
  EXPECT_EQ(runInput("OUTPUT NEW NAME=a.\n", {"--trace", trace}).status, 0);
  EXPECT_THAT(scratch.read("trace"), StartsWith(R"({"event":"enter","entry":"outnew_",)"));
  EXPECT_THAT(scratch.read("trace"), EndsWith("\"line\":1}\n"));
}

TEST(RunJobs, PasswordsAreInTheTraceOnlyWhenAskedFor) {
  const ScratchDirectory scratch;
  const std::string job =
      "OUTPUT OPEN FILE= PASSWORD='s3cret'.\nOUTPUT OPEN FILE='a' PASSWORD='s3cret'.\n";
  const std::string trace = scratch.file("trace");
  const ProgramResult hidden = runInput(job, {"--trace", trace});
  EXPECT_THAT(scratch.read("trace"), Not(HasSubstr("s3cret")));
  EXPECT_THAT(scratch.read("trace"), HasSubstr(R"("arguments":["FILE","\"PASSWORD = ***\""])"));
  EXPECT_THAT(hidden.err, Not(HasSubstr("s3cret")));
  const ProgramResult shown = runInput(job, {"--trace", trace, "--trace-secrets"});
  EXPECT_THAT(scratch.read("trace"), HasSubstr(R"("arguments":["FILE","\"PASSWORD = s3cret\""])"));
  EXPECT_THAT(scratch.read("trace"), HasSubstr(R"("password":"s3cret")"));
  EXPECT_EQ(shown.err, hidden.err) << "the terminal never shows them";
}

TEST(RunJobs, LongNamesAreWholeInTheTraceOnly) {
  const ScratchDirectory scratch;
  const std::string name(100'000, 'n');
  const ProgramResult result =
      runInput("OUTPUT NEW " + name + "=1.\nOUTPUT NEW NAME=" + name + ".\n",
               {"--trace", scratch.file("trace")});
  EXPECT_THAT(result.err, HasSubstr("There is no keyword " + std::string(28, 'n') +
                                    " … 99944 characters … " + std::string(28, 'n') + " in"));
  EXPECT_LT(result.err.size(), 2000U);
  EXPECT_THAT(scratch.read("trace"), HasSubstr("There is no keyword " + name + " in"));
  EXPECT_THAT(scratch.read("trace"), HasSubstr("Output name " + name + " is too long."));
}

TEST(RunJobs, TraceThatCannotBeWrittenIsAnError) {
  const ProgramResult missing = runInput(kComment, {"--trace", "/nowhere/trace"});
  EXPECT_EQ(missing.status, 2);
  EXPECT_EQ(missing.out, "");
  EXPECT_EQ(missing.err,
            "vornwout: error: The trace /nowhere/trace cannot be written: No such file or "
            "directory.\n");
  const ProgramResult full = runInput(kComment, {"--trace", "/dev/full"});
  EXPECT_EQ(full.status, 2);
  EXPECT_THAT(full.out, HasSubstr("hello")) << "the run goes on";
  EXPECT_EQ(
      full.err,
      "vornwout: error: The trace could not be written to the end: No space left on device.\n");
}

TEST(RunJobs, TraceNeverOverwritesWhatTheRunReads) {
  const ScratchDirectory scratch;
  const std::string job = scratch.write("a.qxs", kComment);
  const std::string script = scratch.write("h.json", "{}");
  const std::string link = scratch.file("link");
  ASSERT_EQ(symlink(job.c_str(), link.c_str()), 0);
  const std::string hard = scratch.file("hard");
  ASSERT_EQ(::link(script.c_str(), hard.c_str()), 0);
  for (const std::string& trace : {job, link, script, hard}) {
    SCOPED_TRACE(trace);
    const ProgramResult result =
        runProgram({"run", "--host", "script=" + script, "--trace", trace, job});
    EXPECT_EQ(result.status, 2);
    const bool isJob = trace == job || trace == link;
    EXPECT_EQ(result.err, "vornwout: error: The trace " + trace + " is " +
                              (isJob ? "a job of this run" : "the scripted host's file") +
                              ". Name another file.\n");
    EXPECT_EQ(scratch.read("a.qxs"), kComment);
    EXPECT_EQ(scratch.read("h.json"), "{}");
  }
}

TEST(RunJobs, TraceNeverOverwritesTheFileBehindStandardInput) {
  const ScratchDirectory scratch;
  const std::string job = scratch.write("a.qxs", kComment);
  ProgramSetup setup;
  setup.prepare = [&] { dup2(open(job.c_str(), O_RDONLY), STDIN_FILENO); };
  const ProgramResult result = runProgram({"run", "--trace", job, "-"}, setup);
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(scratch.read("a.qxs"), kComment);
}

TEST(RunJobs, DeviceMayBeTraceAndJob) {
  EXPECT_EQ(runProgram({"run", "--trace", "/dev/null", "/dev/null"}).status, 0);
}

TEST(RunJobs, OutputThatCannotBeWrittenIsAnErrorBehindTheWholeRun) {
  const ScratchDirectory scratch;
  ProgramSetup full;
  full.prepare = [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); };
  const ProgramResult result = runInput(std::string(kComment) + "OUTPUT NEW NAME=last.\n",
                                        {"--trace", scratch.file("trace")}, full);
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err, "vornwout: error: The output could not be written to the end.\n");
  EXPECT_THAT(scratch.read("trace"), HasSubstr(R"("name":"last")"));
}

/// A run whose standard output is a pipe that nobody reads any more.
ProgramResult runWithoutReader(const std::string& job, std::vector<std::string> options,
                               void (*signalHandler)(int)) {
  std::array<int, 2> ends{};
  EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
  close(ends[0]);
  ProgramSetup setup;
  setup.prepare = [&] {
    dup2(ends[1], STDOUT_FILENO);
    std::signal(SIGPIPE, signalHandler);
  };
  const ProgramResult result = runInput(job, std::move(options), setup);
  close(ends[1]);
  return result;
}

TEST(RunJobs, ReaderThatLeavesEndsTheRunBehindTheCommandThatNoticesIt) {
  const ScratchDirectory scratch;
  const std::string job =
      "OUTPUT NEW NAME=first.\n" + std::string(kComment) + "OUTPUT NEW NAME=last.\n" + kMistake;
  const std::string trace = scratch.file("trace");
  const ProgramResult result = runWithoutReader(job, {"--trace", trace}, SIG_DFL);
  EXPECT_EQ(result.status, 128 + SIGPIPE) << "as every other filter ends";
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(scratch.read("trace"), HasSubstr(R"("name":"first")"));
  EXPECT_THAT(
      scratch.read("trace"),
      EndsWith("{\"event\":\"leave\",\"entry\":\"outcomnt_\",\"command\":\"OUTPUT COMMENT\","
               "\"line\":2}\n"))
      << "the command was not cut in two";
}

TEST(RunJobs, ReaderThatLeavesEndsAllJobsOfARun) {
  const ScratchDirectory scratch;
  const std::string other = scratch.write("b.qxs", kMistake);
  const ProgramResult result = runWithoutReader(kComment, {other, "-", other}, SIG_DFL);
  EXPECT_EQ(result.status, 128 + SIGPIPE);
  EXPECT_THAT(result.err, StartsWith(other + ":1:12: error: "));
  EXPECT_EQ(result.err.find(other, 1), std::string::npos) << result.err;
}

TEST(RunJobs, ReaderThatLeavesIsAnErrorWhereTheSignalIsIgnored) {
  const ProgramResult result = runWithoutReader(kComment, {}, SIG_IGN);
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err, "vornwout: error: The output could not be written to the end.\n");
}

TEST(RunJobs, ReaderThatLeavesIsNoMatterForARunWithoutOutput) {
  EXPECT_EQ(runWithoutReader("OUTPUT NEW NAME=a.\n", {}, SIG_DFL).status, 0);
  EXPECT_EQ(runWithoutReader(kComment, {"--quiet"}, SIG_DFL).status, 0);
}

TEST(RunJobs, NothingOfAClosedStandardStreamLandsInTheTrace) {
  const ScratchDirectory scratch;
  const std::string job = scratch.write("a.qxs", std::string(kComment) + kMistake);
  ASSERT_EQ(runProgram({"run", "--trace", scratch.file("open"), job}).status, 1);
  for (const std::vector<int>& closed : std::vector<std::vector<int>>{
           {STDIN_FILENO}, {STDOUT_FILENO}, {STDERR_FILENO}, {0, 1}, {1, 2}, {0, 1, 2}}) {
    SCOPED_TRACE(testing::PrintToString(closed));
    ProgramSetup setup;
    setup.prepare = [&] {
      for (const int descriptor : closed) close(descriptor);
    };
    EXPECT_EQ(runProgram({"run", "--trace", scratch.file("trace"), job}, setup).status, 1);
    EXPECT_EQ(scratch.read("trace"), scratch.read("open"));
  }
}

TEST(RunJobs, ClosedStandardInputIsNoEmptyJob) {
  ProgramSetup setup;
  setup.prepare = [] { close(STDIN_FILENO); };
  const ProgramResult result = runProgram({"run", "-"}, setup);
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err, "vornwout: error: The job <stdin> cannot be read: Bad file descriptor.\n");
}

}  // namespace
}  // namespace vornwout
