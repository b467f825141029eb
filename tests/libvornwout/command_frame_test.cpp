// What every entry does from call to return: the order in which its objects come and go, the flush
// of the log, and that nothing stays behind, whatever passes through it.
#include "libvornwout/frame/command_frame.h"

#include <stdexcept>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/adapter/go_to_caller.h"
#include "platform/parser/grammar_capture.h"
#include "tests/support/command_run.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Entry {
  void (*run)();
  const char* command;
  const char* title;  ///< null for an entry that makes no ParserMessage
  const char* procedure;
  const char* valid;
  const char* refused;  ///< by the parser
  bool asksController;
};

constexpr Entry kEntries[] = {
    {outnew_, "OUTPUT NEW", "OUTPUT NEW", "Output New", "OUTPUT NEW NAME=a.",
     "OUTPUT NEW TYPE=PAPER.", true},
    {outname_, "OUTPUT NAME", "OUTPUT NAME", "Output Name", "OUTPUT NAME a.", "OUTPUT NAME 'a",
     true},
    {outactiv8_, "OUTPUT ACTIVATE", "OUTPUT ACTIVATE", "Output Activate", "OUTPUT ACTIVATE a.",
     "OUTPUT ACTIVATE 'a", true},
    {outclose_, "OUTPUT CLOSE", "Output Close", "Output Close", "OUTPUT CLOSE a.",
     "OUTPUT CLOSE 'a", true},
    {outdisp_, "OUTPUT DISPLAY", nullptr, "Output Display", "OUTPUT DISPLAY.", "OUTPUT DISPLAY a.",
     true},
    {outcomnt_, "OUTPUT COMMENT", "Output Comment", "Output Comment", "OUTPUT COMMENT TEXT='a'.",
     "OUTPUT COMMENT BOLD=MAYBE.", false},
};

/// A part of a command's own. At its end it looks whether the parser has forgotten the grammar, by
/// which alone the last token of "CODE='x'" is a secret, and whether the messages are still there.
struct EndingPart {
  explicit EndingPart(CommandDescriptor& grammar) {
    SubComDescriptor main("", UPSpecTypes::kKeywords, false, false);
    ParamDescriptor code("CODE", UPSpecTypes::kString, false, true);
    code.setSecret();
    main.addParamDesc(std::move(code));
    grammar.addSubComDesc(std::move(main));
  }
  ~EndingPart() {
    const CurrentCommand* current = CurrentCommand::current();
    parserWasGone = current != nullptr && !current->isSecret(current->command().tokens().back());
    messagesWereThere = ParserMessage::current() != nullptr;
  }
  EndingPart(const EndingPart&) = delete;
  EndingPart& operator=(const EndingPart&) = delete;

  static inline bool parserWasGone = false;
  static inline bool messagesWereThere = false;
};

void runWithAPart() {
  CommandFrame frame({"OUTPUT NEW", "OUTPUT NEW", "Output New"});
  frame.makePart<EndingPart>();
  EXPECT_TRUE(frame.parse());
}

/// What the process has of the call that goes on.
struct Surroundings {
  bool procedure = BpProcedure::current() != nullptr;
  bool messages = ParserMessage::current() != nullptr;
  friend bool operator==(const Surroundings&, const Surroundings&) = default;
};

/// Looks at every event what exists at that moment.
class WatchingRun : public CommandRun {
 public:
  void procedureOpened(const ProcedureRecord& record) override {
    CommandRun::procedureOpened(record);
    atOpening = Surroundings{};
  }
  void procedureClosed(const ProcedureRecord& record) override {
    CommandRun::procedureClosed(record);
    atClosing = Surroundings{};
  }
  void logFlushed() override {
    CommandRun::logFlushed();
    atFlush = Surroundings{};
    if (const ParserMessage* messages = ParserMessage::current()) {
      names = {messages->commandName(), messages->procedureTitle()};
    }
  }

  Surroundings atOpening;
  Surroundings atFlush;
  Surroundings atClosing;
  std::vector<std::string> names;
};

void expectNothingLeft() {
  EXPECT_EQ(BpProcedure::current(), nullptr);
  EXPECT_EQ(ParserMessage::current(), nullptr);
  EXPECT_EQ(CurrentCommand::current(), nullptr);
  EXPECT_EQ(GetAdapter(), nullptr);
  EXPECT_THAT(outputSinks(), IsEmpty());
}

std::string opened(const Entry& entry) { return std::string("open ") + entry.procedure + " 2"; }
std::string closed(const Entry& entry) { return std::string("close ") + entry.procedure; }

std::string nameOf(const testing::TestParamInfo<Entry>& entry) {
  std::string name = entry.param.command;
  name[name.find(' ')] = '_';
  return name;
}

class CommandFrameTest : public testing::TestWithParam<Entry> {};
/// The entries that send a request.
class DocumentFrameTest : public CommandFrameTest {};

TEST_P(CommandFrameTest, BracketsItsOutputByAProcedureOfItsNameAndNumberTwo) {
  FakeHost host;
  host.answer.addDocument(OutputDocumentItem{"a", true});
  const CommandRun run(GetParam().run, GetParam().valid, &host);
  ASSERT_GE(run.events.size(), 2U);
  EXPECT_EQ(run.events.front(), opened(GetParam()));
  EXPECT_EQ(run.events.back(), closed(GetParam()));
  expectNothingLeft();
}

TEST_P(CommandFrameTest, GivesItsParserMessageTheSettledNamesAndTitles) {
  FakeHost host;
  WatchingRun run;
  run.run(GetParam().run, GetParam().valid, &host);
  if (GetParam().title == nullptr) {
    EXPECT_FALSE(run.atFlush.messages);
  } else {
    EXPECT_THAT(run.names, ElementsAre(GetParam().command, GetParam().title));
  }
}

TEST_P(CommandFrameTest, NamesItsGrammarAfterTheCommand) {
  const CommandDescriptor grammar = grammarOf(GetParam().run);
  EXPECT_EQ(grammar.name(), GetParam().command);
  EXPECT_EQ(grammar.title(), GetParam().run == outcomnt_ ? GetParam().title : "");
}

TEST_P(CommandFrameTest, AsksForTheControllerOnceBetweenProcedureAndMessages) {
  FakeHost host;
  std::vector<Surroundings> asked;
  host.whenControllerAsked = [&] { asked.emplace_back(); };
  const CommandRun run(GetParam().run, GetParam().valid, &host);
  EXPECT_THAT(asked, ElementsAre(Surroundings{true, false}));
}

TEST_P(CommandFrameTest, OpensItsProcedureFirstAndClosesItLast) {
  FakeHost host;
  WatchingRun run;
  run.run(GetParam().run, GetParam().valid, &host);
  EXPECT_EQ(run.atOpening, (Surroundings{false, false}));
  EXPECT_EQ(run.atFlush, (Surroundings{true, GetParam().title != nullptr}));
  EXPECT_EQ(run.atClosing, (Surroundings{false, false}));
}

TEST_P(CommandFrameTest, FlushesTheLogOnceAndBeforeTheHostActs) {
  FakeHost host;
  CommandRun run;
  host.whenAsked = [&] { run.events.push_back("request"); };
  host.succeeds = false;
  host.answer.setError(2, "No.", "");
  run.run(GetParam().run, GetParam().valid, &host);
  if (GetParam().asksController) {
    EXPECT_THAT(run.events, ElementsAre(opened(GetParam()), "flush", "request", "output No.",
                                        closed(GetParam())));
  } else {
    EXPECT_THAT(run.events,
                ElementsAre(opened(GetParam()), "flush", "table Comment", closed(GetParam())));
  }
}

TEST_P(CommandFrameTest, FlushesTheLogRightBehindTheParsersMessagesAndSendsNothing) {
  FakeHost host;
  const CommandRun run(GetParam().run, GetParam().refused, &host);
  ASSERT_EQ(run.events.size(), 4U) << testing::PrintToString(run.events);
  EXPECT_EQ(run.events[0], opened(GetParam()));
  EXPECT_THAT(run.events[1], testing::StartsWith("parser "));
  EXPECT_EQ(run.events[2], "flush");
  EXPECT_EQ(run.events[3], closed(GetParam()));
  EXPECT_THAT(host.requests, IsEmpty());
  expectNothingLeft();
}

TEST_P(CommandFrameTest, WithoutControllerReportsOnlyWhatTheParserFound) {
  FakeHost host;
  host.hasController = false;
  for (HostAdapter* adapter :
       {static_cast<HostAdapter*>(nullptr), static_cast<HostAdapter*>(&host)}) {
    const CommandRun run(GetParam().run, GetParam().refused, adapter);
    EXPECT_EQ(run.parserMessages.size(), 1U);
    EXPECT_THAT(run.outputMessages, IsEmpty());
    EXPECT_EQ(std::count(run.events.begin(), run.events.end(), "flush"), 1);
  }
}

TEST_P(CommandFrameTest, WithoutControllerIsNotImplementedUnlessItNeedsNone) {
  FakeHost host;
  host.hasController = false;
  for (HostAdapter* adapter :
       {static_cast<HostAdapter*>(nullptr), static_cast<HostAdapter*>(&host)}) {
    const CommandRun run(GetParam().run, GetParam().valid, adapter);
    EXPECT_THAT(run.parserMessages, IsEmpty());
    if (!GetParam().asksController) {
      EXPECT_THAT(run.outputMessages, IsEmpty());
      EXPECT_EQ(run.tables.size(), 1U);
      continue;
    }
    ASSERT_EQ(run.outputMessages.size(), 1U);
    const OutputMessageRecord& record = run.outputMessages[0];
    EXPECT_EQ(record.message.text, "^1 currently not implemented.");
    ASSERT_EQ(record.message.arguments.size(), 1U);
    EXPECT_EQ(record.message.arguments[0].text, GetParam().command);
    EXPECT_EQ(record.show, 2);
    EXPECT_EQ(record.level, 3);
    EXPECT_EQ(run.events[1], "flush");
  }
}

TEST_P(DocumentFrameTest, LetsTheHostsUnwindingPassAndClosesEverything) {
  FakeHost host;
  host.whenAsked = [] { throw VornGoToCaller(); };
  WatchingRun run;
  EXPECT_THROW(run.run(GetParam().run, GetParam().valid, &host), VornGoToCaller);
  EXPECT_THAT(run.events, ElementsAre(opened(GetParam()), "flush", closed(GetParam())));
  EXPECT_EQ(run.atClosing, (Surroundings{false, false}));
  EXPECT_EQ(host.requests.size(), 1U);
  expectNothingLeft();
}

TEST_P(DocumentFrameTest, LetsAHostsExceptionPassWithoutAMessage) {
  FakeHost host;
  host.whenAsked = [] { throw std::runtime_error("disk full"); };
  WatchingRun run;
  EXPECT_THROW(run.run(GetParam().run, GetParam().valid, &host), std::runtime_error);
  EXPECT_THAT(run.events, ElementsAre(opened(GetParam()), "flush", closed(GetParam())));
  EXPECT_EQ(run.atClosing, (Surroundings{false, false}));
  expectNothingLeft();
}

TEST_P(CommandFrameTest, ClosesItsProcedureWhenAskingForTheControllerThrows) {
  FakeHost host;
  host.whenControllerAsked = [] { throw VornGoToCaller(); };
  CommandRun run;
  EXPECT_THROW(run.run(GetParam().run, GetParam().valid, &host), VornGoToCaller);
  EXPECT_THAT(run.events, ElementsAre(opened(GetParam()), closed(GetParam())));
  expectNothingLeft();
}

TEST_P(CommandFrameTest, ServesTheNextCallAsUsualAfterAnException) {
  FakeHost host;
  const CommandRun before(GetParam().run, GetParam().valid, &host);
  FakeHost failing;
  failing.whenControllerAsked = [] { throw std::runtime_error("gone"); };
  CommandRun broken;
  EXPECT_THROW(broken.run(GetParam().run, GetParam().valid, &failing), std::runtime_error);
  const CommandRun after(GetParam().run, GetParam().valid, &host);
  EXPECT_EQ(after.events, before.events);
}

TEST(CommandFrame, EndsTheCommandsOwnPartBehindTheParserAndBeforeTheMessages) {
  const CommandRun run(runWithAPart, "OUTPUT NEW CODE='x'.", nullptr);
  EXPECT_THAT(run.parserMessages, IsEmpty());
  EXPECT_TRUE(EndingPart::parserWasGone);
  EXPECT_TRUE(EndingPart::messagesWereThere);
}

void runWithMessagesLast() {
  CommandNames names{"OUTPUT NEW", "OUTPUT NEW", "Output New"};
  names.titledDescriptor = true;
  names.asksController = false;
  names.messagesLast = true;
  CommandFrame frame(names);
  EXPECT_EQ(frame.grammar().title(), "Output New");
  frame.makePart<EndingPart>();
  EXPECT_EQ(ParserMessage::current(), nullptr);
  EXPECT_TRUE(frame.parse());
  EXPECT_EQ(ParserMessage::current(), &frame.messages());
  EXPECT_EQ(frame.messages().procedureTitle(), "OUTPUT NEW");
}

TEST(CommandFrame, MakesItsMessagesLastAndAsksForNoControllerWhereTheNamesSaySo) {
  FakeHost host;
  host.whenControllerAsked = [] { ADD_FAILURE() << "the controller is asked for"; };
  EndingPart::messagesWereThere = true;
  const CommandRun run(runWithMessagesLast, "OUTPUT NEW CODE='x'.", &host);
  EXPECT_THAT(run.parserMessages, IsEmpty());
  EXPECT_TRUE(EndingPart::parserWasGone);
  EXPECT_FALSE(EndingPart::messagesWereThere);
}

INSTANTIATE_TEST_SUITE_P(EveryEntry, CommandFrameTest, testing::ValuesIn(kEntries), nameOf);
INSTANTIATE_TEST_SUITE_P(DocumentEntries, DocumentFrameTest,
                         testing::ValuesIn(std::begin(kEntries), std::end(kEntries) - 1), nameOf);

TEST(CommandFrame, WithoutACurrentCommandHasNoTokens) {
  FakeHost host;
  const AdapterRegistration adapter(&host);
  CommandRun run;
  const SinkRegistration sink(run);
  outname_();
  outactiv8_();
  outnew_();
  ASSERT_EQ(host.requests.size(), 3U);
  for (const SentRequest& request : host.requests) {
    EXPECT_EQ(request.name, "");
    EXPECT_EQ(request.minimized, OutputDocumentMinimized::kNo);
  }
  outclose_();
  EXPECT_EQ(host.requests.size(), 3U);
  EXPECT_THAT(run.parserCalls(), ElementsAre("WrongValueType(NAME, )"));
}

TEST(CommandFrame, LetsASinksExceptionPassFromAnUnfinishedTable) {
  class FailingRun : public CommandRun {
    void table(const std::shared_ptr<const PivotTable>&) override { throw std::bad_alloc(); }
  };
  FakeHost host;
  FailingRun run;
  EXPECT_THROW(run.run(outcomnt_, "OUTPUT COMMENT TEXT='a'.", &host), std::bad_alloc);
  EXPECT_THAT(run.events, ElementsAre("open Output Comment 2", "flush", "close Output Comment"));
  expectNothingLeft();
}

}  // namespace
}  // namespace vornwout
