// OUTPUT OPEN: its grammar, its long request, its refusals.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/files/path_context.h"
#include "platform/parser/command_names.h"
#include "tests/support/command_run.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OutputOpen : public testing::Test {
 protected:
  /// The one request that the command with these keywords sends.
  SentRequest sent(const std::string& keywords) {
    const CommandRun run(outopen_, "OUTPUT OPEN " + keywords + ".", &host);
    EXPECT_THAT(run.parserCalls(), IsEmpty()) << keywords;
    EXPECT_EQ(host.requests.size(), 1U) << keywords;
    return host.requests.empty() ? SentRequest{} : host.requests.back();
  }

  FakeHost host;
  ScopedPathContext paths{PathContext{"/srv/jobs", {{"reports", "/srv/reports"}}}};
};

TEST_F(OutputOpen, SendsTheDefaultsOfEveryField) {
  const SentRequest request = sent("FILE='/a.qxv'");
  EXPECT_TRUE(request.longForm);
  EXPECT_EQ(static_cast<int>(request.command), 5);
  EXPECT_EQ(request.name, "");
  EXPECT_EQ(request.text, "\\a.qxv");
  EXPECT_EQ(static_cast<int>(request.lock), 1) << "locked unless told otherwise";
  EXPECT_EQ(static_cast<int>(request.minimized), 0);
  EXPECT_EQ(static_cast<int>(request.type), 2);
  EXPECT_EQ(request.password, "");
  EXPECT_EQ(static_cast<int>(request.encryptPassword), 2);
  EXPECT_EQ(static_cast<int>(request.storeModel), 0);
}

struct Field {
  const char* condition;
  const char* keywords;
  const char* path;
  const char* name;
  int lock;
  int minimized;
  const char* password;
};

class OutputOpenFieldTest : public OutputOpen, public testing::WithParamInterface<Field> {};

TEST_P(OutputOpenFieldTest, IsSentAsGiven) {
  const Field& field = GetParam();
  const SentRequest request = sent(field.keywords);
  EXPECT_EQ(request.text, field.path);
  EXPECT_EQ(request.name, field.name);
  EXPECT_EQ(static_cast<int>(request.lock), field.lock);
  EXPECT_EQ(static_cast<int>(request.minimized), field.minimized);
  EXPECT_EQ(request.password, field.password);
}

INSTANTIATE_TEST_SUITE_P(
    Fields, OutputOpenFieldTest,
    testing::Values(
        Field{"RelativePath", "FILE='out/a.qxv'", "\\srv\\jobs\\out\\a.qxv", "", 1, 0, ""},
        Field{"DriveLetter", "FILE='C:/a.qxv'", "C:\\a.qxv", "", 1, 0, ""},
        Field{"ColonAsSecondCharacter", "FILE='\xC3\xA9:/a.qxv'", "\xC3\xA9:\\a.qxv", "", 1, 0, ""},
        Field{"Backslash", "FILE='\\a/b.qxv'", "\\a\\b.qxv", "", 1, 0, ""},
        Field{"FileHandle", "FILE='reports/a.qxv'", "\\srv\\reports\\a.qxv", "", 1, 0, ""},
        Field{"Name", "FILE='/a' NAME=doc1", "\\a", "doc1", 1, 0, ""},
        Field{"QuotedName", "NAME='doc 1' FILE='/a'", "\\a", "doc 1", 1, 0, ""},
        Field{"Unlocked", "FILE='/a' LOCK=no", "\\a", "", 0, 0, ""},
        Field{"Locked", "FILE='/a' LOCK=YES", "\\a", "", 1, 0, ""},
        Field{"Minimized", "FILE='/a' MINIMIZED=yes", "\\a", "", 1, 1, ""},
        Field{"NotMinimized", "FILE='/a' MINIMIZED=NO", "\\a", "", 1, 0, ""},
        Field{"Password", "FILE='/a' PASSWORD='s3cret'", "\\a", "", 1, 0, "s3cret"},
        Field{"PasswordNone", "FILE='/a' PASSWORD=NONE", "\\a", "", 1, 0, ""},
        Field{"PasswordNoneQuoted", "FILE='/a' PASSWORD='NONE'", "\\a", "", 1, 0, "NONE"},
        Field{"PasswordUnquoted", "FILE='/a' PASSWORD=s3cret", "\\a", "", 1, 0, ""}),
    [](const auto& tested) { return tested.param.condition; });

TEST_F(OutputOpen, LeavesARelativePathWhenTheHostSuppressesExpansion) {
  host.pathExpansionSuppressed = true;
  EXPECT_EQ(sent("FILE='out/a.qxv'").text, "out\\a.qxv");
}

TEST_F(OutputOpen, RefusesAFileThatIsNoQuotedText) {
  const CommandRun run(outopen_, "OUTPUT OPEN FILE=out a.qxv NAME=x.", &host);
  EXPECT_THAT(run.parserCalls(), ElementsAre("WrongValueType(FILE, \"out a.qxv\")"));
  EXPECT_THAT(host.requests, IsEmpty());
}

TEST_F(OutputOpen, NamesTheOffenderAndNeverThePassword) {
  const ScopedCommandNames names({"OUTPUT NEW"});
  const std::pair<const char*, const char*> cases[] = {
      {"FILE= PASSWORD='s3cret'", "WrongValueType(FILE, \"PASSWORD = ***\")"},
      {"FILE='a' PASSWORD='x' LOCK MINIMIZED=YES", "ParamValueRequired(LOCK, )"},
      {"FILE='a' PASSWORD='x' LOCK YES", "EqualSignRequired(LOCK, )"},
      {"FILE='a' PASSWORD='LOCK' LOCK=X", "InvalidParamValue(X, LOCK, )"},
      {"FILE='a' PASSWORD='s3c'\nOUTPUT NEW", "UnexpectedToken(OUTPUT, PASSWORD)"},
      {"FILE='a' PASSWORD='x' 'y'", "UnexpectedToken(***, PASSWORD)"},
  };
  for (const auto& [keywords, call] : cases) {
    const CommandRun run(outopen_, std::string("OUTPUT OPEN ") + keywords + ".", &host);
    EXPECT_THAT(run.parserCalls(), ElementsAre(call)) << keywords;
  }
}

TEST_F(OutputOpen, RequiresTheFileAndSaysSoOnce) {
  const CommandRun run(outopen_, "OUTPUT OPEN.", &host);
  EXPECT_THAT(run.parserCalls(), ElementsAre("ParamRequiredForSubCom(FILE, )"));
}

TEST_F(OutputOpen, KnowsNoTypeKeywordKeptThoughTheRequestHasAField) {
  const CommandRun run(outopen_, "OUTPUT OPEN FILE='/a' TYPE=QXV.", &host);
  EXPECT_THAT(run.parserCalls(), ElementsAre("UnknownParam(TYPE, )"));
  EXPECT_THAT(host.requests, IsEmpty());
}

TEST_F(OutputOpen, RefusesANameOfMoreThan64Bytes) {
  EXPECT_EQ(sent("FILE='/a' NAME=" + std::string(64, 'n')).name, std::string(64, 'n'));
  const std::string name(65, 'n');
  const CommandRun run(outopen_, "OUTPUT OPEN FILE='/a' NAME=" + name + ".", &host);
  ASSERT_EQ(run.outputMessages.size(), 1U);
  EXPECT_EQ(renderText(run.outputMessages[0].message), "Output name " + name + " is too long.");
  EXPECT_EQ(run.outputMessages[0].level, 3);
  EXPECT_EQ(host.requests.size(), 1U);
}

TEST_F(OutputOpen, ReportsAMissingController) {
  host.hasController = false;
  const CommandRun run(outopen_, "OUTPUT OPEN FILE='/a'.", &host);
  EXPECT_THAT(run.outputTexts(), ElementsAre("OUTPUT OPEN currently not implemented. (3)"));
}

TEST_F(OutputOpen, PassesOnTheControllersMessage) {
  host.succeeds = false;
  host.answer.setError(3, "The file ^1 does not exist.", "a.qxv");
  const CommandRun run(outopen_, "OUTPUT OPEN FILE='/a'.", &host);
  EXPECT_THAT(run.outputTexts(), ElementsAre("The file a.qxv does not exist. (3)"));
}

}  // namespace
}  // namespace vornwout
