// The command line of the built program: what it takes, what it refuses, and with which status.
#include "runner/application.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "runner/help_text.h"
#include "tests/support/program_run.h"

namespace vornwout {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

TEST(Application, VersionIsShown) {
  for (const auto& arguments :
       std::vector<std::vector<std::string>>{{"--version"}, {"run", "--version"}}) {
    const ProgramResult result = runProgram(arguments);
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, MatchesRegex("vornwout [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    EXPECT_EQ(result.err, "");
  }
}

TEST(Application, HelpNamesTheCommands) {
  const ProgramResult result = runProgram({"--help"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, HasSubstr("\n  run  "));
  EXPECT_THAT(result.out, HasSubstr("\n  help  "));
  EXPECT_THAT(result.out,
              HasSubstr("vornwout run --help, vornwout show --help and so on tell more"));
  EXPECT_EQ(result.err, "");
}

TEST(Application, HelpOfACommandHasItsOwnFooter) {
  const std::string run = runProgram({"run", "--help"}).out;
  for (const char* option : {"--encoding", "--language", "--handle", "--host", "--trace ",
                             "--trace-secrets", "--quiet", "--color"}) {
    EXPECT_THAT(run, HasSubstr(option));
  }
  EXPECT_THAT(run, HasSubstr("Exit status: 0"));
  const std::string help = runProgram({"help", "--help"}).out;
  EXPECT_THAT(help, HasSubstr("vornwout help OUTPUT those that begin so."));
  EXPECT_THAT(help, Not(HasSubstr("tell more")));
}

TEST(Application, HelpListsTheCommandsOfTheLanguage) {
  const ProgramResult result = runProgram({"help"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "Commands of this version:\n\n" + commandOverview() +
                            "\nvornwout help COMMAND shows how one is written.\n");
  EXPECT_EQ(runProgram({"help", ""}).out, result.out);
}

TEST(Application, HelpOfAFirstWordListsWhatBeginsSo) {
  const ProgramResult result = runProgram({"help", "output"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out,
            "Commands of this version that begin with OUTPUT:\n\n" + commandOverview("OUTPUT"));
}

TEST(Application, HelpOfACommandShowsItsGrammarInAnyCase) {
  for (const auto& words : {std::vector<std::string>{"help", "Output", "close"},
                            std::vector<std::string>{"help", "OUTPUT CLOSE"}}) {
    const ProgramResult result = runProgram(words);
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, HasSubstr("\n\nOUTPUT CLOSE [NAME=]{name | * | ALL}.\n\nWhen the "));
  }
}

TEST(Application, HelpPrintsTheReferences) {
  EXPECT_EQ(runProgram({"help", "--markdown"}).out, languageReference());
  EXPECT_EQ(runProgram({"help", "--messages"}).out, messageReference());
}

struct Refused {
  std::vector<std::string> arguments;
  const char* error;  // behind "vornwout: error: "
};

TEST(Application, WrongUsageIsRefusedInWords) {
  const Refused cases[] = {
      {{}, "A command is missing: run, "},
      {{"bogus"}, "There is no command bogus; there are run, "},
      {{"bogus", "a.qxs"}, "There is no command bogus; there are run, "},
      {{"rum"}, "There is no command rum; there are run, "},
      {{"RUN", "a.qxs"}, "There is no command RUN; there are run, "},
      {{"\x1b[1m"}, "There is no command \xEF\xBF\xBD[1m; there are run, "},
      {{"--quiet"}, "There is no option --quiet."},
      {{"--versoin"}, "There is no option --versoin. Did you mean --version?"},
      {{"run", "--quit", "a"}, "There is no option --quit. Did you mean --quiet?"},
      {{"--quiet", "run", "a"}, "--quiet is an option of run and stands behind it: vornwout run "},
      {{"-q", "run", "a"}, "-q is an option of run and stands behind it: vornwout run -q."},
      {{"--color=never", "run", "a"}, "--color is an option of run and stands behind it: "},
      {{"run"}, "job is required."},
      {{"run", "--trace", "", "a"}, "--trace: the trace needs the name of a file."},
      {{"run", "--trace=", "a", "b"}, "--trace= has no value."},
      {{"run", "--host=", "a"}, "--host= has no value."},
      {{"run", "--trace", "-", "a"},
       "--trace: the trace goes to a file only; write ./- for one that is called -."},
      {{"run", "--handle", "=x", "a"}, "--handle: write NAME=DIRECTORY, not =x."},
      {{"run", "--handle", "x=", "a"}, "--handle: write NAME=DIRECTORY, not x=."},
      {{"run", "--handle", "x", "a"}, "--handle: write NAME=DIRECTORY, not x."},
      {{"run", "--handle", "x/y=/tmp", "a"},
       "--handle: a handle's name is the first part of a path and holds no slash, not x/y=/tmp."},
      {{"run", "--handle", "x\\y=/tmp", "a"},
       "--handle: a handle's name is the first part of a path and holds no slash, not x\\y=/tmp."},
      {{"run", "--handle", "A=/x", "--handle", "B=/x", "--handle", "A=/y", "a"},
       "--handle: A is given twice."},
      {{"run", "--encoding", "UTF-9", "a"}, "--encoding: there is no encoding UTF-9; UTF-8, "},
      {{"run", "--encoding", "UTF-16", "a"}, "--encoding: there is no encoding UTF-16; UTF-8, "},
      {{"run", "--language", "xx", "a"}, "--language: there is no language xx; there are de, en, "},
      {{"run", "--color", "blue", "a"}, "--color: blue not in {"},
      {{"help", "outpt", "new"},
       "There is no command outpt new in this version. Did you mean OUTPUT NEW? vornwout help "
       "lists those there are."},
      {{"help", "pivot", "dance"},
       "There is no command pivot dance in this version. vornwout help lists those there are."},
      {{"help", "pivot"},
       "There is no command pivot in this version. vornwout help lists those there are."},
  };
  for (const Refused& refused : cases) {
    SCOPED_TRACE(testing::PrintToString(refused.arguments));
    const ProgramResult result = runProgram(refused.arguments);
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.err, StartsWith("vornwout: error: " + std::string(refused.error)));
    EXPECT_EQ(result.out, "");
  }
}

TEST(Application, MistypedCommandIsSuggested) {
  EXPECT_THAT(runProgram({"rum"}).err, HasSubstr(" and help. Did you mean run?\n"));
  EXPECT_THAT(runProgram({"RUN", "a.qxs"}).err, HasSubstr(" and help. Did you mean run?\n"));
  EXPECT_THAT(runProgram({"shwo"}).err, HasSubstr(" and help. Did you mean show?\n"));
  EXPECT_THAT(runProgram({"bogus"}).err, HasSubstr(" and help.\n"));
}

TEST(Application, OutputThatCannotBeWrittenIsAnError) {
  ProgramSetup full;
  full.prepare = [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); };
  for (const auto& arguments : std::vector<std::vector<std::string>>{
           {"help"}, {"help", "output", "new"}, {"--version"}, {"--help"}, {"run", "--help"}}) {
    SCOPED_TRACE(testing::PrintToString(arguments));
    const ProgramResult result = runProgram(arguments, full);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, "vornwout: error: The output could not be written to the end.\n");
  }
}

TEST(Application, MessagesThatCannotBeWrittenChangeNothingElse) {
  ProgramSetup full;
  full.prepare = [] { dup2(open("/dev/full", O_WRONLY), STDERR_FILENO); };
  EXPECT_EQ(runProgram({"bogus"}, full).status, 2);
  EXPECT_EQ(runProgram({"help", "output"}, full).status, 0);
  full.input = "OUTPUT NEW NAEM=a.\nOUTPUT COMMENT TEXT='on'.\n";
  const ProgramResult run = runProgram({"run", "-"}, full);
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("on"));
}

}  // namespace
}  // namespace vornwout
