// Taking the grammar out of a command without carrying it out.
#include "platform/parser/grammar_capture.h"

#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/adapter/host_adapter.h"
#include "platform/message/parser_message.h"
#include "platform/parser/universal_parser.h"
#include "tests/support/parsed_command.h"
#include "tests/support/recording_sink.h"

namespace vornwout {
namespace {

using testing::IsEmpty;

bool carriedOut = false;
bool sawAHost = false;

/// A command as all are: it declares, parses, reports, and acts when there was no error.
void entry() {
  const ParserMessage messages;
  CommandSpec spec;
  CommandDescriptor command("OUTPUT PROBE", "Output Probe");
  SubComDescriptor main("", UPSpecTypes::kKeywords, true, false);
  main.addParamDesc("FILE", UPSpecTypes::kRawTokens, true, true);
  command.addSubComDesc(main);
  const VORN_TokenSequence tokens(true);
  UniversalParser parser(tokens, spec, command);
  messages.GenericError("shown to nobody");
  sawAHost = GetAdapter() != nullptr;
  carriedOut = parser.getCommandSpecifications() == 0;
}

void entryWithoutGrammar() {}

void entryThatThrows() { throw std::runtime_error("broken"); }

class SilentHost : public HostAdapter {
 public:
  bool IsPathExpansionSuppressed() override { return false; }
  OutputControllerInterface* GetOutputController() override { return nullptr; }
  std::string ExportOutput(const std::string&) override { return {}; }
  std::string ModifyOutput(const std::string&) override { return {}; }
};

TEST(GrammarOfACommand, IsWhatItDeclares) {
  const CommandDescriptor grammar = grammarOf(entry);
  EXPECT_EQ(grammar.name(), "OUTPUT PROBE");
  EXPECT_EQ(grammar.title(), "Output Probe");
  ASSERT_NE(grammar.findSubCom(""), nullptr);
  EXPECT_NE(grammar.findSubCom("")->findParam("FILE"), nullptr);
}

TEST(GrammarOfACommand, IsTakenWithoutCarryingItOutShowingAnythingOrAskingAHost) {
  SilentHost host;
  const AdapterRegistration adapter(&host);
  RecordingSink sink;
  const TokenizedText text("OUTPUT PROBE FILE='a'.");
  const CurrentCommand current(text.command(), 2);
  carriedOut = true;
  sawAHost = true;
  grammarOf(entry);
  EXPECT_FALSE(carriedOut);
  EXPECT_FALSE(sawAHost);
  EXPECT_THAT(sink.parserMessages, IsEmpty());
}

TEST(GrammarOfACommand, LeavesEverythingAsItWas) {
  SilentHost host;
  const AdapterRegistration adapter(&host);
  RecordingSink sink;
  grammarOf(entry);
  EXPECT_EQ(GetAdapter(), &host);
  EXPECT_EQ(GrammarCapture::current(), nullptr);
  const TokenizedText text("OUTPUT PROBE FILE='a'.");
  const CurrentCommand current(text.command(), 2);
  entry();
  EXPECT_TRUE(carriedOut);
  ASSERT_EQ(sink.parserMessages.size(), 1U);
  EXPECT_EQ(sink.parserMessages[0].text, "shown to nobody");
}

TEST(GrammarOfACommand, WithoutGrammarIsAnError) {
  EXPECT_THROW(grammarOf(entryWithoutGrammar), std::logic_error);
}

TEST(GrammarOfACommand, ThatThrowsLeavesNoCaptureBehind) {
  EXPECT_THROW(grammarOf(entryThatThrows), std::runtime_error);
  EXPECT_EQ(GrammarCapture::current(), nullptr);
}

TEST(GrammarCapture, InsideAnotherIsTheOneThatTakes) {
  GrammarCapture outer;
  {
    GrammarCapture inner;
    EXPECT_EQ(GrammarCapture::current(), &inner);
    entry();
    EXPECT_TRUE(inner.taken().has_value());
  }
  EXPECT_EQ(GrammarCapture::current(), &outer);
  EXPECT_FALSE(outer.taken().has_value());
}

}  // namespace
}  // namespace vornwout
