// The catalogue of messages: its rows are whole, and every one of them is provoked here.
#include "platform/message/catalogue.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/parsed_command.h"

namespace vornwout {
namespace {

using testing::HasSubstr;
using testing::Not;

bool isGeneric(const MessageEntry& entry) {
  return entry.key == MessageKey::kGenericError || entry.key == MessageKey::kGenericWarning;
}

TEST(Catalogue, RowsAreWholeSentences) {
  for (const MessageEntry& entry : messageCatalogue()) {
    SCOPED_TRACE(entry.operation);
    EXPECT_EQ(entry.text.empty(), isGeneric(entry));
    EXPECT_TRUE(entry.text.empty() || entry.text.ends_with('.'));
    EXPECT_TRUE(entry.shortText.empty() || entry.shortText.ends_with('.'));
    // What a command says for itself is all that can be said.
    EXPECT_EQ(entry.remedy.empty(), isGeneric(entry));
    EXPECT_TRUE(entry.remedy.empty() || entry.remedy.ends_with('.'));
    EXPECT_THAT(std::string(entry.remedy), Not(HasSubstr("^")));
  }
}

TEST(Catalogue, OperationsDifferAndKeysLeadToTheirRemedy) {
  std::set<std::string_view> operations;
  for (const MessageEntry& entry : messageCatalogue()) {
    EXPECT_TRUE(operations.insert(entry.operation).second) << entry.operation;
    EXPECT_EQ(messageRemedy(entry.key, {}), entry.remedy);
    EXPECT_EQ(&messageEntry(entry.key), &entry);
  }
}

TEST(Catalogue, RemediesOfAWrongValueFitTheirKeyword) {
  const auto remedy = [](const std::string& keyword) {
    const std::string arguments[] = {keyword, ""};
    return std::string(messageRemedy(MessageKey::kWrongValueType, arguments));
  };
  EXPECT_THAT(remedy("NAME"), HasSubstr("one word that starts with a letter"));
  for (const char* file : {"FILE", "OUTFILE", "DOCUMENTFILE", "IMAGEROOT"}) {
    EXPECT_EQ(remedy(file), "The name of a file stands in quotes.") << file;
  }
  for (const char* other : {"TEXT", "COLOR", ""}) {
    EXPECT_EQ(remedy(other), "A text of several words stands in quotes.") << other;
  }
}

TEST(Catalogue, DocumentsEveryRemedyOfARow) {
  EXPECT_EQ(documentedRemedy(messageEntry(MessageKey::kParenRequired)),
            "Put the values between ( and ).");
  EXPECT_EQ(documentedRemedy(messageEntry(MessageKey::kWrongValueType)),
            "NAME: A document name is one word that starts with a letter and goes on with letters, "
            "digits and . _ $ # @; OUTPUT ACTIVATE, CLOSE and SAVE also take *, CLOSE also ALL. "
            "FILE, OUTFILE, DOCUMENTFILE, IMAGEROOT: The name of a file stands in quotes. Others: "
            "A text of several words stands in quotes.");
}

TEST(Catalogue, OnlyTwoRowsAreWarnings) {
  std::set<std::string_view> warnings;
  for (const MessageEntry& entry : messageCatalogue()) {
    if (entry.severity == MessageSeverity::kWarning) warnings.insert(entry.operation);
  }
  EXPECT_THAT(warnings, testing::ElementsAre("GenericWarning", "IgnoredParamValue"));
}

CommandDescriptor grammar() {
  CommandDescriptor command("GO");
  SubComDescriptor main("", UPSpecTypes::kKeywords, false, false);
  main.addParamDesc("NAME", UPSpecTypes::kDeclaredValue, false, true);
  main.addParamDesc("DEBUG", UPSpecTypes::kNoValue, false, true);
  main.addParamDesc("TEXTS", UPSpecTypes::kLiteralList, false, true);
  ParamDescriptor lock("LOCK", UPSpecTypes::kDeclaredValue, false, true);
  lock.addStringValue("YES");
  main.addParamDesc(lock);
  ParamDescriptor sort("SORT", UPSpecTypes::kQualifiers, false, true);
  sort.addQualifDesc({"BY", UPSpecTypes::kString, false, true});
  main.addParamDesc(sort);
  command.addSubComDesc(main);
  SubComDescriptor once("ONCE", UPSpecTypes::kKeywords, false, false);
  once.addParamDesc("TEXT", UPSpecTypes::kString, true, true);
  command.addSubComDesc(once);
  GroupComDescriptor group(0, true, "^1");
  group.addSubComDesc({"LEAD", UPSpecTypes::kKeywords, true, false}, true);
  group.addSubComDesc({"MEMBER", UPSpecTypes::kKeywords, false, false}, false);
  command.addGroupDesc(group);
  return command;
}

CommandDescriptor strictGrammar() {
  CommandDescriptor command("GO");
  command.addSubComDesc({"NEEDED", UPSpecTypes::kKeywords, true, false});
  return command;
}

/// Provokes one row: parses arguments, or calls an operation as a command would.
using Provocation = std::function<void(const ParserMessage&)>;

ParserMessageRecord recordOf(const CommandDescriptor& command, const std::string& arguments) {
  const ParsedCommand parsed(command, arguments);
  EXPECT_EQ(parsed.records.size(), 1U) << arguments;
  return parsed.records.empty() ? ParserMessageRecord{} : parsed.records[0];
}

ParserMessageRecord recordOf(const Provocation& provoke) {
  const CommandDescriptor command("GO");
  const ParsedCommand parsed(command, ".");
  provoke(parsed.messages());
  EXPECT_EQ(parsed.records.size(), 1U);
  return parsed.records.empty() ? ParserMessageRecord{} : parsed.records[0];
}

/// One record of every row, made by the parser where the parser has the row, else by its operation.
std::map<std::string, ParserMessageRecord> provokedRows() {
  const auto parse = [](const std::string& arguments) { return recordOf(grammar(), arguments); };
  const auto call = [](const Provocation& provoke) { return recordOf(provoke); };
  const ParserMessageRecord records[] = {
      call([](const auto& m) { m.WrongValueType("A", "B"); }),
      call([](const auto& m) { m.InvalidParam("A", "B"); }),
      parse("LOCK=MAYBE."),
      call([](const auto& m) { m.IgnoredParamValue("A", "B", "C"); }),
      call([](const auto& m) { m.FileNameInvalid("A"); }),
      call([](const auto& m) { m.ParamValueBreakBdry(1, 2, 3, "A", "B"); }),
      parse("/ONCE."),
      parse("SORT=BYE('a')."),
      call([](const auto& m) { m.ParamNeedParam("A", "B", "C"); }),
      call([](const auto& m) { m.ParamNeedInteger("A", "B"); }),
      call([](const auto& m) { m.ParamNeedIntegerList("A", "B"); }),
      call([](const auto& m) { m.ParamNeedNumber("A", "B"); }),
      call([](const auto& m) { m.ParamExclusive("A", "B", "C"); }),
      parse("SORT=BY."),
      call([](const auto& m) { m.SquareBracketRequired("A", "B"); }),
      recordOf(strictGrammar(), "."),
      call([](const auto& m) { m.GenericError("Text ^1.", "A"); }),
      call([](const auto& m) { m.GenericWarning("Text ^1.", "A"); }),
      call([](const auto& m) { m.report(MessageKey::kUnknownCommand, {"OUTPUT NEWS"}); }),
      call([](const auto& m) { m.report(MessageKey::kCommandNotIncluded, {"OUTPUT SAVE"}); }),
      parse("/TWICE."),
      parse("NAEM=a."),
      parse("/ONCE TEXT=a /ONCE TEXT=b."),
      parse("/MEMBER."),
      parse("NAME=a NAME=b."),
      parse("DEBUG=YES."),
      parse("NAME=."),
      parse("TEXTS=a."),
      parse("NAME a."),
      parse("NAME='a')."),
      parse("NAME=a b."),
      parse("NAME='a."),
      parse("NAME=a /* b."),
      parse(std::string("NAME=a\0.", 8)),
  };
  std::map<std::string, ParserMessageRecord> rows;
  for (const ParserMessageRecord& record : records) rows[std::string(record.operation)] = record;
  return rows;
}

TEST(Catalogue, EveryRowIsProvoked) {
  const std::map<std::string, ParserMessageRecord> rows = provokedRows();
  for (const MessageEntry& entry : messageCatalogue()) {
    const auto row = rows.find(std::string(entry.operation));
    ASSERT_NE(row, rows.end()) << entry.operation << " is never reported";
    EXPECT_EQ(row->second.severity, entry.severity) << entry.operation;
    EXPECT_THAT(row->second.text, Not(HasSubstr("^"))) << entry.operation;
    EXPECT_THAT(row->second.text, Not(testing::IsEmpty())) << entry.operation;
  }
}

TEST(Catalogue, EveryPlaceholderHasAnArgument) {
  const std::map<std::string, ParserMessageRecord> rows = provokedRows();
  for (const MessageEntry& entry : messageCatalogue()) {
    const ParserMessageRecord& record = rows.at(std::string(entry.operation));
    for (const std::string_view text : {entry.text, entry.shortText}) {
      for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        if (text[i] != '^') continue;
        ASSERT_GE(text[i + 1], '1') << text;
        ASSERT_LE(text[i + 1], '9') << text;
        EXPECT_LE(static_cast<std::size_t>(text[i + 1] - '0'), record.arguments.size()) << text;
      }
    }
  }
}

TEST(Catalogue, ShortTextsDoWithoutTheLastArgument) {
  const std::map<std::string, ParserMessageRecord> rows = provokedRows();
  for (const MessageEntry& entry : messageCatalogue()) {
    const std::size_t count = rows.at(std::string(entry.operation)).arguments.size();
    // Where a row has one argument only, its short text is for another case than the empty one.
    if (count < 2) continue;
    EXPECT_THAT(std::string(entry.shortText), Not(HasSubstr("^" + std::to_string(count))))
        << entry.operation;
  }
}

}  // namespace
}  // namespace vornwout
