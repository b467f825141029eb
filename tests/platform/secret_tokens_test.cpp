// Which tokens of a command are secret: by its grammar, whatever was forgotten or misspelt, and
// where the grammar is not known.
#include "platform/parser/secret_tokens.h"

#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/parser/command_names.h"
#include "platform/parser/descriptor.h"
#include "tests/support/hostile_size.h"
#include "tests/support/parsed_command.h"

namespace vornwout {
namespace {

/// A secret in the main subcommand of one command, and in a subcommand of its own of another.
CommandDescriptor openGrammar() {
  CommandDescriptor command("OPEN");
  SubComDescriptor main("", UPSpecTypes::kKeywords, false, false);
  main.addParamDesc("FILE", UPSpecTypes::kRawTokens, true, true);
  main.addParamDesc("LOCK", UPSpecTypes::kDeclaredValue, false, true);
  ParamDescriptor password("PASSWORD", UPSpecTypes::kString, false, true);
  password.setSecret();
  main.addParamDesc(password);
  command.addSubComDesc(main);
  return command;
}

CommandDescriptor saveGrammar() {
  CommandDescriptor command("SAVE");
  SubComDescriptor main("", UPSpecTypes::kKeywords, false, false);
  main.addParamDesc("FILE", UPSpecTypes::kRawTokens, true, true);
  main.addParamDesc("NAME", UPSpecTypes::kRawTokens, false, true);
  command.addSubComDesc(main);
  SubComDescriptor protect("PASSPROTECT", UPSpecTypes::kKeywords, false, false);
  ParamDescriptor password("PASSWORD", UPSpecTypes::kString, false, true);
  password.setSecret();
  protect.addParamDesc(password);
  ParamDescriptor encrypted("ENCRYPTEDPW", UPSpecTypes::kDeclaredValue, false, true);
  encrypted.addStringValue("YES");
  encrypted.addStringValue("NO");
  protect.addParamDesc(encrypted);
  command.addSubComDesc(protect);
  command.addSubComDesc({"OTHER", UPSpecTypes::kKeywords, false, false});
  return command;
}

/// A command without secrets, and one that takes a free list.
CommandDescriptor newGrammar() {
  CommandDescriptor command("NEW");
  SubComDescriptor main("", UPSpecTypes::kKeywords, false, false);
  main.addParamDesc("NAME", UPSpecTypes::kDeclaredValue, false, true);
  command.addSubComDesc(main);
  return command;
}

CommandDescriptor nameGrammar() {
  CommandDescriptor command("NAME");
  command.addSubComDesc({"", UPSpecTypes::kTokenList, true, false});
  return command;
}

/// The tokens, joined by blanks, "***" for every secret one.
std::string shown(const std::string& source, const CommandDescriptor* grammar) {
  const ScopedCommandNames names({"OUTPUT NEW", "OUTPUT OPEN"});
  const TokenizedText text(source);
  const std::vector<bool> secret = secretTokens(text.command(), grammar);
  EXPECT_EQ(secret.size(), text.command().tokens().size());
  std::string result;
  for (std::size_t i = 0; i < secret.size(); ++i) {
    if (i > 0) result += ' ';
    result +=
        secret[i] ? "***" : std::string(text.command().sourceText(text.command().tokens()[i]));
  }
  return result;
}

struct SecretCase {
  const char* source;
  const char* shown;
};

TEST(SecretTokens, AreTheValuesOfKeywordsThatTheGrammarCallsSecret) {
  const CommandDescriptor grammar = openGrammar();
  const SecretCase cases[] = {
      {"OPEN FILE='a' PASSWORD='s' LOCK=YES", "OPEN FILE = 'a' PASSWORD = *** LOCK = YES"},
      {"OPEN password = 's'", "OPEN password = ***"},
      {"OPEN PASSWORD=s", "OPEN PASSWORD = ***"},
      {"OPEN PASSWORD='s' 'more' 5", "OPEN PASSWORD = *** *** ***"},
      {"OPEN PASSWORD=''", "OPEN PASSWORD = ***"},
      {"OPEN PASSWORD=NONE", "OPEN PASSWORD = NONE"},
      {"OPEN PASSWORD=none s", "OPEN PASSWORD = none ***"},
      {"OPEN PASSWORD=NONE/s", "OPEN PASSWORD = *** *** ***"},
      {"OPEN PASSWORD='NONE'", "OPEN PASSWORD = ***"},
      {"OPEN PASSWORD=s NONE", "OPEN PASSWORD = *** ***"},
      {"OPEN PASSWORD=-5", "OPEN PASSWORD = ***"},
      {"OPEN PASSWORD=a/b LOCK=YES", "OPEN PASSWORD = *** *** *** LOCK = YES"},
      {"OPEN PASSWORD=a=b", "OPEN PASSWORD = *** = ***"},
      {"OPEN PASSWORD=PASSWORD", "OPEN PASSWORD = ***"},
      {"OPEN PASSWORD='a' PASSWORD='b'", "OPEN PASSWORD = *** PASSWORD = ***"},
      {"OPEN PASSWORD=(a LOCK=b) LOCK=YES", "OPEN PASSWORD = *** *** *** = *** *** LOCK = YES"},
      {"OPEN FILE=(PASSWORD='s') 'b' 'c'", "OPEN FILE = ( PASSWORD = *** ) 'b' 'c'"},
      {"OPEN PASSWORD=(a LOCK=YES", "OPEN PASSWORD = *** *** LOCK = YES"},
      {"OPEN PASSWORD='s", "OPEN PASSWORD = ***"},
      {"OPEN PASSWORD=", "OPEN PASSWORD ="},
      {"OPEN PASSWORD", "OPEN PASSWORD"},
  };
  for (const SecretCase& row : cases) EXPECT_EQ(shown(row.source, &grammar), row.shown);
}

TEST(SecretTokens, EndAtAKeywordWithOrWithoutItsEqualsSign) {
  const CommandDescriptor grammar = openGrammar();
  const SecretCase cases[] = {
      {"OPEN PASSWORD='s' LOCK YES", "OPEN PASSWORD = *** LOCK YES"},
      {"OPEN PASSWORD='s'LOCK=YES", "OPEN PASSWORD = *** LOCK = YES"},
      {"OPEN PASSWORD='s' LOCK", "OPEN PASSWORD = *** LOCK"},
      {"OPEN PASSWORD='LOCK' LOCK=X", "OPEN PASSWORD = *** LOCK = X"},
      {"OPEN PASSWORD='s' COLOUR=a", "OPEN PASSWORD = *** COLOUR = a"},
      {"OPEN PASSWORD LOCK YES", "OPEN PASSWORD LOCK YES"},
      {"OPEN PASSWORD LOCK=YES", "OPEN PASSWORD LOCK = YES"},
      {"OPEN PASSWORD= LOCK=YES", "OPEN PASSWORD = LOCK = YES"},
      {"OPEN PASSWORD=LOCK LOCK=YES", "OPEN PASSWORD = *** LOCK = YES"},
      // Without quotes the words behind a keyword may be the password's as well.
      {"OPEN PASSWORD=my lock is s", "OPEN PASSWORD = *** lock *** ***"},
      {"OPEN PASSWORD='s' /OTHER", "OPEN PASSWORD = *** / OTHER"},
      {"OPEN PASSWORD='s'/OTHER", "OPEN PASSWORD = *** / OTHER"},
      {"OPEN PASSWORD= /s", "OPEN PASSWORD = *** ***"},
      {"OPEN PASSWORD='s'\nOUTPUT NEW", "OPEN PASSWORD = *** OUTPUT NEW"},
      {"OPEN PASSWORD=s\nOUTPUT NEW NAME=a", "OPEN PASSWORD = *** OUTPUT NEW NAME = a"},
      {"OPEN PASSWORD=\nOUTPUT NEW", "OPEN PASSWORD = OUTPUT NEW"},
      {"OPEN PASSWORD='s' OUTPUT NEW", "OPEN PASSWORD = *** *** ***"},
      {"OPEN PASSWORD\n='s'\nLOCK=YES", "OPEN PASSWORD = *** LOCK = YES"},
  };
  for (const SecretCase& row : cases) EXPECT_EQ(shown(row.source, &grammar), row.shown);
}

TEST(SecretTokens, AreFoundInACommandThatIsRefused) {
  const CommandDescriptor grammar = openGrammar();
  const SecretCase cases[] = {
      {"OPEN FILE= PASSWORD='s'", "OPEN FILE = PASSWORD = ***"},
      {"OPEN FILE=PASSWORD 's'", "OPEN FILE = PASSWORD ***"},
      {"OPEN FILE=a PASSWORD 's'", "OPEN FILE = a PASSWORD ***"},
      {"OPEN FILE='a' PASSWORD s", "OPEN FILE = 'a' PASSWORD ***"},
      {"OPEN FILE='a' PASSWROD='s' LOCK=YES", "OPEN FILE = 'a' PASSWROD = *** LOCK = YES"},
      {"OPEN FILE='a' PASWORD 's'", "OPEN FILE = 'a' PASWORD ***"},
      {"OPEN FILE='a' PASS='s'", "OPEN FILE = 'a' PASS = ***"},
      {"OPEN FILE='a' PASSWD='s'", "OPEN FILE = 'a' PASSWD = ***"},
      {"OPEN FILE='a' PASSWORDS='s'", "OPEN FILE = 'a' PASSWORDS = ***"},
      {"OPEN FILE='a' /PASSWORD='s'", "OPEN FILE = 'a' / PASSWORD = ***"},
      {"OPEN FILE='a' PAS='b' WORD='c'", "OPEN FILE = 'a' PAS = 'b' WORD = 'c'"},
  };
  for (const SecretCase& row : cases) EXPECT_EQ(shown(row.source, &grammar), row.shown);
}

TEST(SecretTokens, AreTextsWithoutAKeywordInASubcommandOfSecrets) {
  const CommandDescriptor grammar = saveGrammar();
  const SecretCase cases[] = {
      {"SAVE /PASSPROTECT PASSWORD='s' ENCRYPTEDPW=NO",
       "SAVE / PASSPROTECT PASSWORD = *** ENCRYPTEDPW = NO"},
      {"SAVE /PASSPROTECT ENCRYPTEDPW='YSE' PASSWORD='s'",
       "SAVE / PASSPROTECT ENCRYPTEDPW = 'YSE' PASSWORD = ***"},
      {"SAVE /PASSPROTECT ENCRYPTEDPW=YES 's'", "SAVE / PASSPROTECT ENCRYPTEDPW = YES ***"},
      {"SAVE /PASSPROTECT PASSWORD='s' ENCRYPTEDPW",
       "SAVE / PASSPROTECT PASSWORD = *** ENCRYPTEDPW"},
      {"SAVE /PASSPROTECT 's'", "SAVE / PASSPROTECT ***"},
      {"SAVE /PASSPROTECT='s'", "SAVE / PASSPROTECT = ***"},
      {"SAVE /PASSPROTECT s 5 (", "SAVE / PASSPROTECT *** *** ("},
      {"SAVE /PASSPROTECT FOO=a 's'", "SAVE / PASSPROTECT FOO = *** ***"},
      {"SAVE /PASPROTECT 's' PASSWORD='t'", "SAVE / PASPROTECT *** PASSWORD = ***"},
      {"SAVE /PASSPROTECT PASSWORD='s' /X 't'", "SAVE / PASSPROTECT PASSWORD = *** / X ***"},
      {"SAVE /PASSPROTECT PASSWORD='s' /OTHER 't'",
       "SAVE / PASSPROTECT PASSWORD = *** / OTHER 't'"},
      {"SAVE FILE='a' 'b'", "SAVE FILE = 'a' 'b'"},
      {"SAVE FILE=a PASSWORD 's'", "SAVE FILE = a PASSWORD ***"},
      {"SAVE FILE='a' PASSWORD='s' NAME=b", "SAVE FILE = 'a' PASSWORD = *** NAME = b"},
      {"SAVE NAME='NAME' 'b' /PASSPROTECT PASSWORD='NAME'",
       "SAVE NAME = 'NAME' 'b' / PASSPROTECT PASSWORD = ***"},
  };
  for (const SecretCase& row : cases) EXPECT_EQ(shown(row.source, &grammar), row.shown);
}

TEST(SecretTokens, AreValuesThatMayHaveBeenMeantForThePassword) {
  const CommandDescriptor save = saveGrammar();
  const SecretCase saves[] = {
      {"SAVE /PASSPROTECT ENCRYPTEDPW='geheim'", "SAVE / PASSPROTECT ENCRYPTEDPW = ***"},
      {"SAVE /PASSPROTECT ENCRYPTEDPW=my/s PASSWORD=",
       "SAVE / PASSPROTECT ENCRYPTEDPW = *** *** *** PASSWORD ="},
      {"SAVE /PASSPROTECT ENCRYPTEDPW=(YES geheim)",
       "SAVE / PASSPROTECT ENCRYPTEDPW = *** *** *** ***"},
      {"SAVE /PASSPROTECT ENCRYPTEDPW=-5", "SAVE / PASSPROTECT ENCRYPTEDPW = ***"},
      {"SAVE /PASSPROTECT ENCRYPTEDPW=YES='s'", "SAVE / PASSPROTECT ENCRYPTEDPW = YES = ***"},
      {"SAVE /PASSPROTECT ENCRYPTEDPW=xy", "SAVE / PASSPROTECT ENCRYPTEDPW = ***"},
      {"SAVE /PASSPROTECT ENCRYPTEDPW='yes '", "SAVE / PASSPROTECT ENCRYPTEDPW = 'yes '"},
      {"SAVE /PASSPROTECT ENCRYPTEDPW=N", "SAVE / PASSPROTECT ENCRYPTEDPW = N"},
      {"SAVE /PASSPROTECT ENCRYPTEDPW= PASSWORD='s'",
       "SAVE / PASSPROTECT ENCRYPTEDPW = PASSWORD = ***"},
      {"SAVE /PASSPROTECT ENCRYPTEDPW=", "SAVE / PASSPROTECT ENCRYPTEDPW ="},
      {"SAVE /PASSPROTECT PW='s'", "SAVE / PASSPROTECT PW = ***"},
      {"SAVE /PASSPROTECT PWD=s ENCRYPTEDPW=NO", "SAVE / PASSPROTECT PWD = *** ENCRYPTEDPW = NO"},
      {"SAVE /PASSPROTECT KEY='s'", "SAVE / PASSPROTECT KEY = ***"},
      {"SAVE /PASSPROTECT ENCRYPTEDPASSWORD='s'", "SAVE / PASSPROTECT ENCRYPTEDPASSWORD = ***"},
      {"SAVE FILE='a' PW='s' NAME=b", "SAVE FILE = 'a' PW = *** NAME = b"},
      {"SAVE FILE='a' MYPASSWORD 's'", "SAVE FILE = 'a' MYPASSWORD ***"},
  };
  for (const SecretCase& row : saves) EXPECT_EQ(shown(row.source, &save), row.shown);
  const CommandDescriptor open = openGrammar();
  const SecretCase opens[] = {
      {"OPEN FILE='a' PWD='s' LOCK=YES", "OPEN FILE = 'a' PWD = *** LOCK = YES"},
      {"OPEN FILE='a' PW 's'", "OPEN FILE = 'a' PW ***"},
      {"OPEN FILE='a' ENCRYPTEDPW=YES 's'", "OPEN FILE = 'a' ENCRYPTEDPW = *** ***"},
      {"OPEN FILE='a' KEY='s'", "OPEN FILE = 'a' KEY = 's'"},
      {"OPEN FILE=PW LOCK=YES", "OPEN FILE = PW LOCK = YES"},
  };
  for (const SecretCase& row : opens) EXPECT_EQ(shown(row.source, &open), row.shown);
}

TEST(SecretTokens, AreNoneWhereTheWordIsAValue) {
  const CommandDescriptor grammar = newGrammar();
  const SecretCase cases[] = {
      {"NEW NAME=PASSWORD b", "NEW NAME = PASSWORD b"},
      {"NEW NAME=PASSWORD\nOUTPUT OPEN", "NEW NAME = PASSWORD OUTPUT OPEN"},
      {"NEW PASSWORD b", "NEW PASSWORD b"},
      {"NEW NAME='PASSWORD' b", "NEW NAME = 'PASSWORD' b"},
      // With an equals sign it is the keyword of another command.
      {"NEW NAME=a PASSWORD='s'", "NEW NAME = a PASSWORD = ***"},
      {"NEW NAME= PASSWORD='s'", "NEW NAME = PASSWORD = ***"},
  };
  for (const SecretCase& row : cases) EXPECT_EQ(shown(row.source, &grammar), row.shown);
  const CommandDescriptor freeList = nameGrammar();
  EXPECT_EQ(shown("NAME NAME=PASSWORD b", &freeList), "NAME NAME = PASSWORD b");
  EXPECT_EQ(shown("NAME PASSWORD", &freeList), "NAME PASSWORD");
}

TEST(SecretTokens, AreGuessedWhereTheGrammarIsNotKnown) {
  const SecretCase cases[] = {
      {"SAVEE PASSWORD='s' X=1", "SAVEE PASSWORD = *** X = 1"},
      {"SAVEE PASSWORD 's'", "SAVEE PASSWORD ***"},
      {"SAVEE /PASSPROTECT 's' ENCRYPTEDPW=YES", "SAVEE / PASSPROTECT *** ENCRYPTEDPW = YES"},
      {"SAVEE NAME=PASSWORD b", "SAVEE NAME = PASSWORD b"},
      {"PASSWORD s", "PASSWORD ***"},
  };
  for (const SecretCase& row : cases) EXPECT_EQ(shown(row.source, nullptr), row.shown);
  // Behind a forgotten period stands another command, whose grammar is not known either.
  const CommandDescriptor grammar = newGrammar();
  EXPECT_EQ(shown("NEW NAME=a\nOUTPUT OPEN FILE=PASSWORD PASSWORD 's'", &grammar),
            "NEW NAME = a OUTPUT OPEN FILE = PASSWORD PASSWORD ***");
}

TEST(SecretTokens, AreHiddenBehindALostQuote) {
  const CommandDescriptor grammar = openGrammar();
  const SecretCase cases[] = {
      {"OPEN FILE='a PASSWORD='s' LOCK=YES", "OPEN FILE = 'a PASSWORD=' *** ***"},
      {"OPEN FILE=a' PASSWORD=s", "OPEN FILE = a ***"},
      {"OPEN FILE='a PASSWORD='s'\nLOCK=YES", "OPEN FILE = 'a PASSWORD=' *** *** LOCK = YES"},
      // Without a lost quote a text is a text.
      {"OPEN FILE='a PASSWORD=' LOCK=YES", "OPEN FILE = 'a PASSWORD=' LOCK = YES"},
      {"OPEN FILE='a' LOCK='b", "OPEN FILE = 'a' LOCK = 'b"},
  };
  for (const SecretCase& row : cases) EXPECT_EQ(shown(row.source, &grammar), row.shown);
}

TEST(SecretTokens, OfALongCommandAreFoundInLinearTime) {
  const CommandDescriptor grammar = saveGrammar();
  for (const char* part : {" 's'", " PASSWORD='s'", " /PASSPROTECT PASSWORD='s'", " (", " [(",
                           " PASWORD=s", "\na", " /X"}) {
    SCOPED_TRACE(part);
    std::string source = "SAVE /PASSPROTECT PASSWORD=";
    while (source.size() < kHostileSize) source += part;
    const TokenizedText text(source);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(secretTokens(text.command(), &grammar).empty());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
  }
}

}  // namespace
}  // namespace vornwout
