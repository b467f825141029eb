// A printed command is the same command: named cases, and commands made from random grammars.
#include "platform/parser/command_printer.h"

#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/parsed_command.h"

namespace vornwout {
namespace {

using testing::IsEmpty;

using Spec = UPSpecTypes;

/// Everything that a command can read from a spec, as text.
std::string contentOf(const CommandSpec& spec) {
  std::string content;
  const auto add = [&](const SubComObj& subcommand) {
    content += "/" + subcommand.name() + "{";
    for (const ParamObj& param : subcommand.params()) {
      content += param.getParamName() + "=";
      for (const Token& token : param.rawTokens()) {
        content += std::to_string(static_cast<int>(token.kind)) + ":" +
                   std::to_string(static_cast<int>(token.code)) + "<";
      }
      content += param.sourceText() + ";";
    }
    content += "}";
  };
  for (const SubComObj& subcommand : spec.getGlobalGroupObj().subcommands()) add(subcommand);
  for (const GroupComObj& group : spec.groups()) {
    content += "group";
    for (const SubComObj& subcommand : group.subcommands()) add(subcommand);
  }
  return content;
}

/// What a text prints as, after the printed text was parsed again and found equal.
std::string printedTwice(const CommandDescriptor& command, const std::string& arguments) {
  const ParsedCommand first(command, arguments);
  EXPECT_THAT(first.reports(), IsEmpty()) << arguments;
  const std::string printed = printCommand(command, first.spec());
  const std::string content = contentOf(first.spec());
  const ParsedCommand second(command, printed.substr(command.name().size() + 1));
  EXPECT_THAT(second.reports(), IsEmpty()) << printed;
  EXPECT_EQ(contentOf(second.spec()), content) << arguments << "\nprinted as\n" << printed;
  EXPECT_EQ(printCommand(command, second.spec()), printed);
  return printed;
}

CommandDescriptor grammar() {
  CommandDescriptor command("GO");
  SubComDescriptor main("", Spec::kKeywords, false, false);
  main.addParamDesc("FILE", Spec::kRawTokens, false, true);
  main.addParamDesc("NAME", Spec::kDeclaredValue, false, true);
  command.addSubComDesc(main);
  SubComDescriptor line("LINE", Spec::kKeywords, false, true);
  line.addParamDesc("TEXT", Spec::kRawTokens, false, true);
  command.addSubComDesc(line);
  GroupComDescriptor group(0, true, "^1");
  SubComDescriptor select("SELECT", Spec::kKeywordList, true, false);
  select.addParamDesc("TABLES", Spec::kNoValue, false, true);
  group.addSubComDesc(select, true);
  command.addGroupDesc(group);
  return command;
}

TEST(PrintedCommand, IsItsCanonicalForm) {
  const std::pair<const char*, const char*> cases[] = {
      {".", "GO ."},
      {"name=a file.", "GO NAME = a FILE ."},
      {"/select= tables /line text='it''s' /SELECT",
       "GO /LINE TEXT = 'it''s' /SELECT TABLES "
       "/SELECT ."},
      {"FILE=5-1 -1 - 1.", "GO FILE = 5 - 1 -1 - 1 ."},
      {"FILE=(a/*c*// b/ *c* / 2.)", "GO FILE = ( a / b / * c * / 2. ) ."},
      {"FILE=a. 5. <= < = /LINE TEXT=x..", "GO FILE = a. 5. <= < = /LINE TEXT = x. ."},
      {"FILE=[ 'a'\n,\n'b' ]\n\nNAME=x.", "GO FILE = [ 'a' , 'b' ] ."},
  };
  for (const auto& [arguments, printed] : cases) {
    EXPECT_EQ(printedTwice(grammar(), arguments), printed);
  }
}

TEST(PrintedCommand, KeepsAFreeList) {
  CommandDescriptor command("GO");
  command.addSubComDesc({"", Spec::kTokenList, true, false});
  EXPECT_EQ(printedTwice(command, "NAME=a / B ( 'c'."), "GO NAME = a / B ( 'c' .");
  EXPECT_EQ(printedTwice(command, "."), "GO .");
}

TEST(PrintedCommand, KeepsANamedFreeListThatBeginsWithAnEqualsSign) {
  CommandDescriptor command = grammar();
  command.addSubComDesc({"SCRIPT", Spec::kTokenList, false, false});
  EXPECT_EQ(printedTwice(command, "/SELECT TABLES /SCRIPT = = a /LINE."),
            "GO /SELECT TABLES /SCRIPT = = a / LINE .");
}

/// Makes a grammar, and commands that it accepts.
class RandomGrammar {
 public:
  explicit RandomGrammar(unsigned seed) : random_(seed), command_("GO") {
    if (chance(2)) command_.addSubComDesc(subcommand("", false));
    for (int i = below(3); i > 0; --i) {
      command_.addSubComDesc(subcommand("OWN" + std::to_string(i), chance(2)));
    }
    if (!chance(2)) return;
    GroupComDescriptor group(0, true, "^1");
    group.addSubComDesc(subcommand("LEAD", false), true);
    for (int i = below(3); i > 0; --i) {
      group.addSubComDesc(subcommand("MEMBER" + std::to_string(i), chance(2)), false);
    }
    command_.addGroupDesc(group);
  }

  const CommandDescriptor& command() const { return command_; }

  std::string arguments() {
    std::string text;
    if (const SubComDescriptor* main = command_.findSubCom("")) text += keywords(*main);
    for (const SubComDescriptor& own : command_.subcommands()) {
      if (own.name().empty()) continue;
      for (int i = below(own.repeatable() ? 4 : 2); i > 0; --i) text += occurrence(own);
    }
    for (const GroupComDescriptor& group : command_.groups()) {
      for (int g = below(4); g > 0; --g) {
        text += occurrence(group.subcommands()[0]);
        for (std::size_t i = 1; i < group.subcommands().size(); ++i) {
          const SubComDescriptor& member = group.subcommands()[i];
          for (int n = below(member.repeatable() ? 3 : 2); n > 0; --n) text += occurrence(member);
        }
      }
    }
    return text + blank() + ".";
  }

 private:
  int below(int bound) { return static_cast<int>(random_() % static_cast<unsigned>(bound)); }
  bool chance(int of) { return below(of) == 0; }

  template <typename Choices>
  std::string oneOf(const Choices& choices) {
    return choices[random_() % std::size(choices)];
  }

  std::string blank() {
    static const char* const kBlanks[] = {" ", "  ", "\n", "\t", " /* a. 'b */ ", "\r\n ", " "};
    return oneOf(kBlanks);
  }

  SubComDescriptor subcommand(const std::string& name, bool repeatable) {
    SubComDescriptor made(name, Spec::kKeywords, false, repeatable);
    static constexpr Spec::ParamSpec kSpecs[] = {
        Spec::kNoValue, Spec::kRawTokens,   Spec::kDeclaredValue, Spec::kString,
        Spec::kNumber,  Spec::kLiteralList, Spec::kNumberList,    Spec::kDeclaredList,
        Spec::kInteger, Spec::kQualifiers,  Spec::kMeasure,       Spec::kQualifierLists};
    for (int i = 1 + below(6); i > 0; --i) {
      const Spec::ParamSpec spec = kSpecs[random_() % std::size(kSpecs)];
      const bool isList = spec == Spec::kDeclaredList || spec == Spec::kLiteralList;
      ParamDescriptor param("KEY" + std::to_string(i), spec, chance(4), true,
                            isList ? Spec::kBracketsOptional : Spec::kBracketsRaw);
      if (spec == Spec::kDeclaredList || (spec == Spec::kDeclaredValue && chance(2))) {
        for (const char* value : {"YES", "NO", "ALL", "KEY1"}) param.addStringValue(value);
      }
      if (spec >= Spec::kQualifiers) {
        param.addQualifDesc({"UNIT", Spec::kNumberList, false, true});
        param.addQualifDesc({"OTHER", Spec::kNumberList, false, true});
      }
      made.addParamDesc(param);
    }
    return made;
  }

  std::string occurrence(const SubComDescriptor& subcommand) {
    return blank() + "/" + subcommand.name() + (chance(3) ? "=" : "") + keywords(subcommand);
  }

  std::string keywords(const SubComDescriptor& subcommand) {
    std::string text;
    for (const ParamDescriptor& param : subcommand.params()) {
      if (!param.required() && chance(2)) continue;
      text += blank() + param.name();
      const bool alone = param.spec() == Spec::kNoValue || (param.valueMayBeMissing() && chance(4));
      if (!alone) text += blank() + "=" + blank() + value(param);
    }
    return text;
  }

  std::string number() {
    static const char* const kNumbers[] = {"5", "-1", "+2", "1.5", ".5", "1e5"};
    return oneOf(kNumbers);
  }
  std::string quoted() {
    static const char* const kTexts[] = {"'a'",   "\"b.\"",   "''",     "'it''s'",
                                         "'/* '", "'KEY1=2'", "\"é表\""};
    return oneOf(kTexts);
  }
  std::string separator() { return chance(2) ? "," + blank() : blank(); }

  std::string list(int most, std::string (RandomGrammar::*item)()) {
    std::string text = (this->*item)();
    for (int i = below(most); i > 0; --i) text += separator() + (this->*item)();
    return text;
  }
  std::string declared() {
    static const char* const kValues[] = {"YES", "no", "'NO'", "all", "KEY1"};
    return oneOf(kValues);
  }
  std::string raw() {
    static const char* const kTokens[] = {"word", "w.2", "*",  "<=", "< =", "-",   "5 -1", "5-1",
                                          "ALL",  ";",   "~=", "é",  "& |", ". a", ","};
    switch (below(6)) {
      case 0:
        return quoted();
      case 1:
        return number();
      case 2:
        return "(" + raw() + blank() + "KEY1 =" + raw() + " / 2)";
      case 3:
        return "[" + raw() + "]";
      default:
        return oneOf(kTokens);
    }
  }
  std::string qualifier() {
    return std::string(chance(2) ? "UNIT" : "other") + blank() + "(" +
           list(3, &RandomGrammar::number) + ")";
  }

  std::string value(const ParamDescriptor& param) {
    switch (param.spec()) {
      case Spec::kDeclaredValue:
        return param.values().empty() ? quoted() : declared();
      case Spec::kString:
        return chance(2) ? quoted() : "F8.2";
      case Spec::kNumber:
      case Spec::kInteger:
        return number();
      case Spec::kDeclaredList:
        // KEY1 is also a value: behind a list without brackets it would belong to the list.
        return param.name() != "KEY1" || chance(2) ? "[" + list(4, &RandomGrammar::declared) + "]"
                                                   : list(4, &RandomGrammar::declared);
      case Spec::kLiteralList:
        return "[" + list(4, &RandomGrammar::quoted) + "]";
      case Spec::kNumberList:
        return list(4, &RandomGrammar::number);
      case Spec::kQualifiers:
      case Spec::kQualifierLists:
        return list(3, &RandomGrammar::qualifier);
      case Spec::kMeasure:
        return chance(2) ? qualifier() : list(2, &RandomGrammar::number) + blank() + "UNIT";
      default:
        return list(5, &RandomGrammar::raw);
    }
  }

  std::mt19937 random_;
  CommandDescriptor command_;
};

TEST(PrintedCommand, OfRandomGrammarsIsTheSameCommand) {
  for (unsigned seed = 0; seed < 400; ++seed) {
    RandomGrammar made(seed);
    for (int i = 0; i < 5; ++i) {
      printedTwice(made.command(), made.arguments());
      ASSERT_FALSE(HasFailure()) << "seed " << seed;
    }
  }
}

}  // namespace
}  // namespace vornwout
