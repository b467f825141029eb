// Arbitrary bytes as commands: first the entry points themselves, then a grammar that has every
// kind of value, whose values are read by every getter.
//
// Properties: the parser's result is the number of errors that it reported; a command that parses
// is printed, and parsed again gives no error and the same text; a refused command always says
// something.
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/fuzz_check.h"
#include "platform/adapter/output_sink.h"
#include "platform/message/parser_message.h"
#include "platform/parser/command_printer.h"
#include "platform/parser/current_command.h"
#include "platform/parser/tokenizer.h"
#include "platform/parser/universal_parser.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

class CountingSink : public OutputSink {
 public:
  void parserMessage(const ParserMessageRecord& message) override {
    VORN_FUZZ_CHECK(!message.text.empty());
    if (message.severity == MessageSeverity::kError) ++errors;
    ++messages;
  }
  void outputMessage(const OutputMessageRecord&) override { ++messages; }
  void table(const std::shared_ptr<const PivotTable>&) override { ++tables; }

  int errors = 0;
  int messages = 0;
  int tables = 0;
};

/// Every kind of value in a main subcommand, a repeatable one and a group.
CommandDescriptor everyKind() {
  using Types = UPSpecTypes;
  const auto number = [](const char* name) {
    ParamDescriptor param(name, Types::kNumber, false, true);
    param.setLowerBoundary(1);
    param.setUpperBoundary(200);
    return param;
  };
  const auto listed = [](const char* name, Types::ParamSpec spec, Types::BracketOptions brackets) {
    ParamDescriptor param(name, spec, false, true, brackets);
    for (const char* value : {"ALL", "TABLES", "CHARTS", "YES"}) param.addStringValue(value);
    return param;
  };
  CommandDescriptor descriptor("OUTPUT COMMENT");
  SubComDescriptor main("", Types::kKeywords, false, false);
  main.addParamDesc("TEXT", Types::kRawTokens, false, true);
  main.addParamDesc(listed("BOLD", Types::kDeclaredValue, Types::kBracketsRaw));
  main.addParamDesc("COLOR", Types::kDeclaredValue, false, true);
  main.addParamDesc("BGCOLOR", Types::kString, false, true);
  main.addParamDesc(number("WIDTH"));
  descriptor.addSubComDesc(main);
  SubComDescriptor line("LINE", Types::kKeywords, false, true);
  line.addParamDesc(listed("TYPE", Types::kDeclaredList, Types::kBracketsOptional));
  line.addParamDesc("NAME", Types::kLiteralList, false, true, Types::kBracketsOptionalList);
  line.addParamDesc("MINIMIZED", Types::kNumberList, false, true);
  line.addParamDesc("TEXT", Types::kRawTokens, false, true, Types::kBracketsOptional);
  descriptor.addSubComDesc(line);
  GroupComDescriptor group(0, true, "Select command ^1...");
  SubComDescriptor select("SELECT", Types::kKeywordList, true, false);
  select.addParamDesc("ALL", Types::kNoValue, false, true);
  select.addParamDesc("TABLES", Types::kNoValue, false, true);
  select.addParamDesc(listed("EXCEPT", Types::kDeclaredList, Types::kBracketsOptional));
  group.addSubComDesc(select, true);
  SubComDescriptor change("CHANGE", Types::kKeywords, false, true);
  ParamDescriptor sort("SORT", Types::kQualifiers, false, true);
  sort.addQualifDesc(ParamDescriptor("LABEL", Types::kString, false, true));
  sort.addQualifDesc(ParamDescriptor("POSITION", Types::kInteger, false, true));
  change.addParamDesc(sort);
  ParamDescriptor size("SIZE", Types::kMeasure, false, true);
  size.addQualifDesc(ParamDescriptor("INCHES", Types::kNumberList, false, true));
  size.addQualifDesc(ParamDescriptor("POINTS", Types::kNumberList, false, true));
  change.addParamDesc(size);
  ParamDescriptor labels("LABELS", Types::kQualifierLists, false, true,
                         Types::kBracketsOptionalList);
  labels.addQualifDesc(ParamDescriptor("EXACT", Types::kLiteralList, false, true));
  labels.addQualifDesc(ParamDescriptor("BEGINS", Types::kLiteralList, false, true));
  change.addParamDesc(labels);
  change.addParamDesc("TEXTCOLOR", Types::kRawTokens, false, true);
  group.addSubComDesc(change, false);
  descriptor.addGroupDesc(group);
  return descriptor;
}

void readEverything(const ParamObj& param, const ParserMessage& messages) {
  std::string text;
  bool literal = false;
  double number = 0;
  int integer = 0;
  std::vector<double> numbers;
  std::vector<std::string> texts;
  std::vector<TokenInfoObj> tokens;
  std::vector<ParamObj> qualifiers;
  ParamObj unit;
  param.getStringToken();
  param.getUpStringToken();
  param.getStringGeneric(text);
  param.getStringOrLiteral(text, literal);
  param.getLiteral(text);
  param.getNumberValue(number);
  param.getIntegerValue(integer);
  param.getNumberList(numbers);
  param.getStringList(texts);
  param.getLiteralList(texts);
  param.isStringValueCase("ALL");
  param.isOperatorValue(35);
  VORN_FUZZ_CHECK(param.getTokenList(tokens));
  VORN_FUZZ_CHECK(param.getTokenListSize() == static_cast<int>(tokens.size()));
  for (int i = 0; i < param.getTokenListSize(); ++i) {
    const TokenInfoObj token = param.getTokenObj(i);
    VORN_FUZZ_CHECK(token.getString() == tokens[static_cast<std::size_t>(i)].getString());
    token.getInteger();
    token.getNumber();
    token.getUpperString();
  }
  param.getStringAndQual(text, unit);
  param.getStringQualList(*param.descriptor(), messages, qualifiers);
  for (const ParamObj& qualifier : qualifiers) qualifier.getLiteralList(texts);
}

/// Parses the current command by `descriptor`; the printed command, empty when there was an error.
std::string parse(const CommandDescriptor& descriptor) {
  CountingSink sink;
  const SinkRegistration registration(sink);
  const ParserMessage messages;
  CommandSpec spec;
  const VORN_TokenSequence tokens(true);
  UniversalParser parser(tokens, spec, descriptor);
  const int errors = parser.getCommandSpecifications();
  VORN_FUZZ_CHECK(errors == sink.errors);
  for (const SubComObj& subcommand : spec.getGlobalGroupObj().subcommands()) {
    for (const ParamObj& param : subcommand.params()) readEverything(param, messages);
  }
  for (const GroupComObj& group : spec.groups()) {
    for (const SubComObj& subcommand : group.subcommands()) {
      for (const ParamObj& param : subcommand.params()) readEverything(param, messages);
    }
  }
  return errors == 0 ? printCommand(descriptor, spec) : std::string();
}

void checkPrinting(const CommandDescriptor& descriptor, const std::string& printed) {
  if (printed.empty()) return;
  Tokenizer tokenizer(printed);
  TokenizedCommand command;
  VORN_FUZZ_CHECK(tokenizer.next(command));
  const CurrentCommand current(command, 2);
  VORN_FUZZ_CHECK(parse(descriptor) == printed);
}

void runEntry(void (*entry)()) {
  CountingSink sink;
  const SinkRegistration registration(sink);
  entry();
  // Without a host every command but the comment ends in a message; the comment shows its table or
  // says why not.
  VORN_FUZZ_CHECK(sink.messages + sink.tables > 0);
}

}  // namespace
}  // namespace vornwout

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vornwout;
  static const CommandDescriptor kDescriptor = everyKind();
  const std::string job = "OUTPUT COMMENT " + std::string(data, data + size);
  Tokenizer tokenizer(job);
  TokenizedCommand command;
  while (tokenizer.next(command)) {
    if (command.tokens().size() < 2) continue;
    const CurrentCommand current(command, 2);
    checkPrinting(kDescriptor, parse(kDescriptor));
    for (void (*entry)() : {outnew_, outname_, outactiv8_, outclose_, outdisp_, outcomnt_}) {
      runEntry(entry);
    }
  }
  return 0;
}
