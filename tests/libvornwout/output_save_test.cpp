// OUTPUT SAVE: its grammar, its long request, the rules of its passwords.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/files/path_context.h"
#include "tests/support/command_run.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OutputSave : public testing::Test {
 protected:
  CommandRun run(const std::string& keywords) {
    return CommandRun(outsave_, "OUTPUT SAVE " + keywords + ".", &host);
  }

  FakeHost host;
  ScopedPathContext paths{PathContext{"/srv/jobs", {{"reports", "/srv/reports"}}}};
};

struct Sent {
  const char* condition;
  const char* keywords;
  const char* name = "";
  int lock = 2;
  int type = 2;
  int storeModel = 1;
  std::string password = "";
  int encryption = 0;
};

class OutputSaveSentTest : public OutputSave, public testing::WithParamInterface<Sent> {};

TEST_P(OutputSaveSentTest, HasEveryField) {
  const Sent& sent = GetParam();
  const CommandRun saved = run(std::string("OUTFILE='/a.qxv' ") + sent.keywords);
  EXPECT_THAT(saved.parserCalls(), IsEmpty());
  ASSERT_EQ(host.requests.size(), 1U);
  const SentRequest& request = host.requests[0];
  EXPECT_TRUE(request.longForm);
  EXPECT_EQ(static_cast<int>(request.command), 6);
  EXPECT_EQ(request.text, "\\a.qxv");
  EXPECT_EQ(request.name, sent.name);
  EXPECT_EQ(static_cast<int>(request.lock), sent.lock);
  EXPECT_EQ(static_cast<int>(request.minimized), 2);
  EXPECT_EQ(static_cast<int>(request.type), sent.type);
  EXPECT_EQ(request.password, sent.password);
  EXPECT_EQ(static_cast<int>(request.encryptPassword), sent.encryption);
  EXPECT_EQ(static_cast<int>(request.storeModel), sent.storeModel);
}

INSTANTIATE_TEST_SUITE_P(
    Requests, OutputSaveSentTest,
    testing::Values(
        Sent{"Defaults", ""}, Sent{"Name", "NAME=doc1", "doc1"},
        Sent{"QuotedName", "NAME='doc 1'", "doc 1"}, Sent{"ActiveDocument", "NAME=*"},
        Sent{
            "NameOfAnyLengthKept",
            "NAME=nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn"
            "nnnnnnnnnnnnnnnnnnnnnnnnnnnnn",
            "nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn"},
        Sent{"Qxv", "TYPE=qxv", "", 2, 0}, Sent{"Qxw", "TYPE=QXW", "", 2, 1},
        Sent{"Locked", "LOCK=YES", "", 1}, Sent{"Unlocked", "LOCK=no", "", 0},
        Sent{"WithModel", "STOREMODEL=YES", "", 2, 2, 1},
        Sent{"WithoutModel", "STOREMODEL=NO", "", 2, 2, 0},
        Sent{"Plain10Bytes", "/PASSPROTECT PASSWORD='0123456789' ENCRYPTEDPW=NO", "", 2, 2, 1,
             "0123456789", 0},
        Sent{"Encrypted20Bytes", "/PASSPROTECT PASSWORD='01234567890123456789' ENCRYPTEDPW=yes", "",
             2, 2, 1, "01234567890123456789", 1},
        Sent{"UncheckedWithoutEncryptedPwKept",
             "/PASSPROTECT PASSWORD='012345678901234567890123456789'", "", 2, 2, 1,
             "012345678901234567890123456789", 0},
        Sent{"ProtectAlone", "/PASSPROTECT"},
        Sent{"EncryptedWithoutPassword", "/PASSPROTECT ENCRYPTEDPW=YES", "", 2, 2, 1, "", 1}),
    [](const auto& tested) { return tested.param.condition; });

struct Refused {
  const char* condition;
  const char* keywords;
  std::vector<std::string> parser;
  std::vector<std::string> output;
};

class OutputSaveRefusedTest : public OutputSave, public testing::WithParamInterface<Refused> {};

TEST_P(OutputSaveRefusedTest, SaysWhyAndSendsNothing) {
  const Refused& refused = GetParam();
  const CommandRun saved = run(refused.keywords);
  EXPECT_THAT(saved.parserCalls(), testing::ElementsAreArray(refused.parser));
  std::vector<std::string> expected;
  for (const std::string& text : refused.output) expected.push_back(text + " (3)");
  EXPECT_THAT(saved.outputTexts(), testing::ElementsAreArray(expected));
  EXPECT_THAT(host.requests, IsEmpty());
}

const char* const kEmptyPassword = "Failed to save document. Empty passwords are not allowed.";
std::string tooLong(const std::string& password) {
  return "Failed to save document. Passwords longer than 10 bytes are not allowed. '" + password +
         "'";
}

INSTANTIATE_TEST_SUITE_P(
    Refusals, OutputSaveRefusedTest,
    testing::Values(
        Refused{"NoFile", "NAME=a", {"ParamRequiredForSubCom(OUTFILE, )"}, {}},
        Refused{"UnquotedFile", "OUTFILE=a.qxv", {"WrongValueType(OUTFILE, \"a.qxv\")"}, {}},
        Refused{"NameOfTwoWords", "OUTFILE='/a' NAME=a b", {"WrongValueType(NAME, )"}, {}},
        Refused{"NameAll", "OUTFILE='/a' NAME=ALL", {"WrongValueType(NAME, )"}, {}},
        Refused{"WordsSpeltLikeThePasswordAreNamed",
                "OUTFILE='/a' NAME='NAME' 'b' /PASSPROTECT PASSWORD='NAME'",
                {"WrongValueType(NAME, )"},
                {}},
        Refused{"ValueBesideThePasswordIsNamed",
                "OUTFILE='/a' /PASSPROTECT ENCRYPTEDPW='YSE' PASSWORD='YSE'",
                {"InvalidParamValue(YSE, ENCRYPTEDPW, PASSPROTECT)"},
                {}},
        Refused{"EmptyPassword", "OUTFILE='/a' /PASSPROTECT PASSWORD=''", {}, {kEmptyPassword}},
        Refused{"PasswordNone", "OUTFILE='/a' /PASSPROTECT PASSWORD=NONE", {}, {kEmptyPassword}},
        Refused{"Plain11Bytes",
                "OUTFILE='/a' /PASSPROTECT PASSWORD='01234567890' ENCRYPTEDPW=NO",
                {},
                {tooLong("01234567890")}},
        Refused{"Encrypted21BytesWithTheTextThatNames10Kept",
                "OUTFILE='/a' /PASSPROTECT PASSWORD='012345678901234567890' ENCRYPTEDPW=YES",
                {},
                {tooLong("012345678901234567890")}},
        Refused{"EveryErrorIsReported",
                "OUTFILE=a NAME=+ /PASSPROTECT PASSWORD='' ENCRYPTEDPW=YES",
                {"WrongValueType(OUTFILE, \"a\")", "WrongValueType(NAME, )"},
                {kEmptyPassword}}),
    [](const auto& tested) { return tested.param.condition; });

TEST_F(OutputSave, MarksThePasswordOfAMessageAsSecret) {
  const CommandRun saved = run("OUTFILE='/a' /PASSPROTECT PASSWORD='01234567890' ENCRYPTEDPW=NO");
  ASSERT_EQ(saved.outputMessages.size(), 1U);
  EXPECT_EQ(renderText(withoutSecrets(saved.outputMessages[0].message)), tooLong("***"));
}

TEST_F(OutputSave, MarksAPasswordThatTheHostSaysBackAsSecret) {
  host.succeeds = false;
  for (const char* argument : {"s3cret", "other", ""}) {
    host.answer.setError(3, "Refused: ^1", argument);
    const CommandRun saved = run("OUTFILE='/a' /PASSPROTECT PASSWORD='s3cret'");
    ASSERT_EQ(saved.outputMessages.size(), 1U);
    const std::string shown = renderText(withoutSecrets(saved.outputMessages[0].message));
    EXPECT_EQ(shown, argument == std::string("s3cret")  ? "Refused: ***"
                     : argument == std::string("other") ? "Refused: other"
                                                        : "Refused: ^1");
  }
  host.answer.setError(3, "Refused: ^1", "");
  const CommandRun plain = run("OUTFILE='/a'");
  EXPECT_EQ(renderText(withoutSecrets(plain.outputMessages.at(0).message)), "Refused: ^1");
}

TEST_F(OutputSave, RepeatsNoPasswordInAMessageOfTheParser) {
  for (const char* keywords :
       {"OUTFILE='/a' /PASSPROTECT PASSWORD='a' 's3cret'",
        "OUTFILE='/a' /PASSPROTECT PASSWORD=my s3cret", "OUTFILE='/a' /PASSPROTECT 's3cret'",
        "OUTFILE='/a' /PASSPROTECT s3cret", "OUTFILE='/a' /PASSPROTECT PASSWORD=x/s3cret",
        "OUTFILE='/a' /PASSPROTECT PASSWORD=-5s3cret",
        "OUTFILE='/a' /PASSPROTECT PASSWORD= /s3cret", "OUTFILE= PASSWORD='s3cret'",
        "OUTFILE=a PASSWORD 's3cret'", "OUTFILE='/a' PASSWORD='s3cret'",
        "OUTFILE='/a' PASSWROD 's3cret'", "OUTFILE='/a' /PASPROTECT PASSWORD='s3cret'",
        "OUTFILE='/a' /PASSWORD='s3cret'"}) {
    const CommandRun saved = run(keywords);
    EXPECT_THAT(saved.parserMessages, testing::Not(IsEmpty())) << keywords;
    for (const ParserMessageRecord& message : saved.parserMessages) {
      EXPECT_EQ(message.text.find("s3cret"), std::string::npos) << message.text;
      for (const std::string& argument : message.arguments) {
        EXPECT_EQ(argument.find("s3cret"), std::string::npos) << argument;
      }
    }
  }
}

TEST_F(OutputSave, ExpandsHandlesAndRelativePaths) {
  run("OUTFILE='reports/a.qxv'");
  run("OUTFILE='out/a.qxv'");
  ASSERT_EQ(host.requests.size(), 2U);
  EXPECT_EQ(host.requests[0].text, "\\srv\\reports\\a.qxv");
  EXPECT_EQ(host.requests[1].text, "\\srv\\jobs\\out\\a.qxv");
}

TEST_F(OutputSave, ReportsAMissingController) {
  host.hasController = false;
  EXPECT_THAT(run("OUTFILE='/a'").outputTexts(),
              ElementsAre("OUTPUT SAVE currently not implemented. (3)"));
}

}  // namespace
}  // namespace vornwout
