#include "host/controller/document_sink.h"

#include <memory>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

CellText plain(const std::string& text) {
  CellText cell;
  cell.text = text;
  return cell;
}

/// Draws an object tree as "heading[log table(title)]".
std::string outline(const DocumentObject& object) {
  std::string below;
  for (const DocumentObject& child : object.children) {
    below += (below.empty() ? "" : " ") + outline(child);
  }
  switch (object.type) {
    case ObjectType::kHeading:
      return object.label + "[" + below + "]";
    case ObjectType::kLog:
      return "log(" + std::get<LogContent>(object.content.get()).text + ")";
    case ObjectType::kTable:
      return "table(" + object.label + ")";
    case ObjectType::kNotes: {
      std::string notes;
      for (const NoteEntry& entry : std::get<NotesContent>(object.content.get()).entries) {
        notes += (notes.empty() ? "" : ",") + entry.label.text + "=" + entry.value.text;
      }
      return "notes(" + notes + ")";
    }
    case ObjectType::kWarning:
      return object.label + "(" + std::get<MessageContent>(object.content.get()).text + ")";
    default:
      return "?";
  }
}

class DocumentSinkTest : public testing::Test {
 protected:
  void open(const std::string& name) { sink_.procedureOpened({name, 2}); }
  void close() { sink_.procedureClosed({"", 2}); }
  void addTable(const std::string& title) {
    auto table = std::make_shared<PivotTable>();
    table->title = plain(title);
    table->subtype = plain("subtype of " + title);
    sink_.table(table);
  }
  void addMessage(const std::string& text, int level = 3) {
    OutputMessageRecord message;
    message.message = plain(text);
    message.level = level;
    sink_.outputMessage(message);
  }
  void addNote(const std::string& label, const std::string& value) {
    sink_.note({2, plain(label), plain(value)});
  }
  void request(OutputControllerCommand command, const char* name) {
    VornwMsgOutputControllerResponse response;
    const VornwMsgOutputControllerRequest message(1, command, name, "",
                                                  OutputDocumentMinimized::kNotApplicable);
    ASSERT_TRUE(controller_.SendRequest(message, response));
  }
  void make(const char* name) { request(OutputControllerCommand::kNew, name); }
  const Document& document(std::ptrdiff_t index) const {
    return std::next(controller_.documents().begin(), index)->document;
  }

  std::string outlineOf(std::ptrdiff_t index) { return outline(document(index).root()); }
  const DocumentObject& firstObject() { return document(0).root().children.at(0); }

  OutputController controller_;
  DocumentSink sink_{controller_};
};

TEST_F(DocumentSinkTest, OutputWithoutADocumentMakesAnUnnamedOne) {
  sink_.setCommandLog("OUTPUT COMMENT", "output comment.");
  open("Output Comment");
  EXPECT_TRUE(controller_.documents().empty());
  addTable("t");
  close();
  ASSERT_EQ(controller_.documents().size(), 1u);
  EXPECT_EQ(controller_.activeDocument()->name(), "");
  EXPECT_EQ(outlineOf(0), "[Output Comment[log(output comment.) table(t)]]");
}

TEST_F(DocumentSinkTest, LogAloneMakesNoDocument) {
  sink_.setCommandLog("OUTPUT CLOSE", "output close all.");
  open("Output Close");
  close();
  EXPECT_TRUE(controller_.documents().empty());
  sink_.setCommandLog("OUTPUT COMMENT", "c");
  open("Output Comment");
  addTable("t");
  close();
  EXPECT_EQ(outlineOf(0), "[Output Comment[log(c) table(t)]]") << "the old log is gone";
}

TEST_F(DocumentSinkTest, LogOfACommandWithoutOutputStandsWhereTheCommandEnds) {
  make("a");
  sink_.setCommandLog("OUTPUT NEW", "output new name=b.");
  open("Output New");
  make("b");
  close();
  EXPECT_EQ(outlineOf(0), "[]");
  EXPECT_EQ(outlineOf(1), "[log(output new name=b.)]");
  const DocumentObject& log = document(1).root().children.at(0);
  EXPECT_EQ(log.command, "OUTPUT NEW");
  EXPECT_EQ(log.run, 1);
}

TEST_F(DocumentSinkTest, LogOfACommandThatClosesItsDocumentGoesToTheNextActiveOne) {
  make("a");
  make("b");
  sink_.setCommandLog("OUTPUT CLOSE", "output close *.");
  open("Output Close");
  request(OutputControllerCommand::kClose, "*");
  close();
  EXPECT_EQ(outlineOf(0), "[log(output close *.)]");
}

TEST_F(DocumentSinkTest, LogOfACommandWithoutProcedureIsPlacedBeforeTheNextOne) {
  make("a");
  sink_.setCommandLog("FREQUENCIES", "frequencies x.");
  sink_.setCommandLog("OUTPUT NEW", "output new.");
  EXPECT_EQ(outlineOf(0), "[log(frequencies x.)]");
}

TEST_F(DocumentSinkTest, EmptyLogMakesNoObject) {
  make("a");
  sink_.setCommandLog("OUTPUT COMMENT", "");
  open("Output Comment");
  addTable("t");
  close();
  EXPECT_EQ(outlineOf(0), "[Output Comment[table(t)]]");
}

TEST_F(DocumentSinkTest, ObjectsKnowCommandRunSubtypeAndLabel) {
  for (int run = 1; run <= 2; ++run) {
    sink_.setCommandLog("OUTPUT COMMENT", "c");
    open("Output Comment");
    addTable("Comment");
    close();
  }
  ASSERT_EQ(document(0).root().children.size(), 2u);
  const DocumentObject& heading = document(0).root().children[1];
  EXPECT_EQ(heading.command, "OUTPUT COMMENT");
  EXPECT_EQ(heading.run, 2);
  const DocumentObject& table = heading.children.at(1);
  EXPECT_EQ(table.type, ObjectType::kTable);
  EXPECT_EQ(table.command, "OUTPUT COMMENT");
  EXPECT_EQ(table.run, 2);
  EXPECT_EQ(table.label, "Comment");
  EXPECT_EQ(table.subtype, "subtype of Comment");
  EXPECT_EQ(renderText(std::get<TableContent>(table.content.get())->title), "Comment");
  EXPECT_EQ(firstObject().run, 1);
}

TEST_F(DocumentSinkTest, RunsAreCountedPerDocument) {
  sink_.setCommandLog("OUTPUT COMMENT", "c");
  open("Output Comment");
  addTable("t");
  close();
  make("b");
  sink_.setCommandLog("OUTPUT COMMENT", "c");
  open("Output Comment");
  addTable("t");
  close();
  EXPECT_EQ(document(1).root().children.at(0).run, 1);
}

TEST_F(DocumentSinkTest, MessagesBecomeWarningObjectsWithTheirSeverity) {
  struct Case {
    int level;
    MessageSeverity severity;
    const char* label;
  };
  for (const Case& c :
       {Case{1, MessageSeverity::kInformation, "Information"},
        Case{2, MessageSeverity::kWarning, "Warning"}, Case{3, MessageSeverity::kError, "Error"}}) {
    SCOPED_TRACE(c.label);
    sink_.setCommandLog("OUTPUT NAME", "n");
    open("Output Name");
    addMessage("text", c.level);
    close();
    const DocumentObject& heading = document(0).root().children.back();
    const DocumentObject& message = heading.children.back();
    EXPECT_EQ(message.type, ObjectType::kWarning);
    EXPECT_EQ(message.label, c.label);
    EXPECT_EQ(std::get<MessageContent>(message.content.get()).severity, c.severity);
    EXPECT_EQ(std::get<MessageContent>(message.content.get()).text, "text");
  }
}

TEST_F(DocumentSinkTest, ArgumentsOfAMessageAreFilledIn) {
  OutputMessageRecord record;
  record.message = plain("Output name ^1 is too long.");
  record.message.kind = CellText::Kind::kComposite;
  record.message.arguments.push_back(plain("x"));
  record.level = 3;
  sink_.outputMessage(record);
  EXPECT_EQ(std::get<MessageContent>(firstObject().children.at(0).content.get()).text,
            "Output name x is too long.");
}

TEST_F(DocumentSinkTest, ParserMessageKeepsTextSeverityAndPlace) {
  sink_.setCommandLog("OUTPUT NEW", "output new x=1.");
  open("Output New");
  ParserMessageRecord record;
  record.severity = MessageSeverity::kWarning;
  record.text = "X is ignored.";
  record.place = {4, 12};
  sink_.parserMessage(record);
  close();
  EXPECT_EQ(outlineOf(0), "[Output New[log(output new x=1.) Warning(X is ignored.)]]");
  const auto& message = std::get<MessageContent>(firstObject().children.at(1).content.get());
  EXPECT_EQ(message.severity, MessageSeverity::kWarning);
  EXPECT_EQ(message.place, (SourcePlace{4, 12}));
}

TEST_F(DocumentSinkTest, KeepsMessagesShortAndWithoutSecrets) {
  ParserMessageRecord parser;
  parser.text = "***";
  parser.uncovered = ParserMessageRecord::Texts{{}, "s3cret"};
  sink_.parserMessage(parser);
  parser.shortened = "short";
  sink_.parserMessage(parser);
  OutputMessageRecord output;
  output.message = plain("^1 ^2");
  output.message.kind = CellText::Kind::kComposite;
  output.message.arguments = {plain("s3cret"), plain(std::string(200, 'a'))};
  output.message.arguments.edit()[0].secret = true;
  output.level = 3;
  sink_.outputMessage(output);
  EXPECT_EQ(outlineOf(0), "[Messages[Error(***) Error(short) Error(*** " + std::string(28, 'a') +
                              " … 144 characters … " + std::string(28, 'a') + ")]]");
}

TEST_F(DocumentSinkTest, MessagesOutsideProceduresStandBelowTheCommandsName) {
  sink_.setCommandLog("FREQUENCIES", "frequencies x.");
  addMessage("unknown");
  addMessage("again");
  sink_.setCommandLog("DESCRIPTIVES", "descriptives x.");
  addMessage("unknown");
  EXPECT_EQ(outlineOf(0),
            "[FREQUENCIES[log(frequencies x.) Error(unknown) Error(again)] "
            "DESCRIPTIVES[log(descriptives x.) Error(unknown)]]");
  EXPECT_EQ(firstObject().command, "FREQUENCIES");
}

TEST_F(DocumentSinkTest, MessageBeforeAnyCommandStandsBelowMessages) {
  addMessage("early");
  EXPECT_EQ(outlineOf(0), "[Messages[Error(early)]]");
}

TEST_F(DocumentSinkTest, NotesAreGatheredBehindTheLog) {
  sink_.setCommandLog("OUTPUT EXPORT", "e");
  open("Output Export");
  addTable("t");
  addNote("a", "1");
  addMessage("m");
  addNote("b", "2");
  close();
  EXPECT_EQ(outlineOf(0), "[Output Export[log(e) notes(a=1,b=2) table(t) Error(m)]]");
  EXPECT_EQ(firstObject().children.at(1).label, "Notes");
  EXPECT_EQ(firstObject().children.at(1).command, "OUTPUT EXPORT");
}

TEST_F(DocumentSinkTest, NotesWithoutLogStandFirst) {
  open("Output Export");
  addTable("t");
  addNote("a", "1");
  close();
  EXPECT_EQ(outlineOf(0), "[Output Export[notes(a=1) table(t)]]");
  EXPECT_EQ(firstObject().command, "OUTPUT EXPORT") << "made from the procedure's name";
}

TEST_F(DocumentSinkTest, OutputFollowsTheActiveDocumentInsideAProcedure) {
  make("a");
  sink_.setCommandLog("X", "x");
  open("P");
  addTable("1");
  make("b");
  addTable("2");
  addTable("3");
  request(OutputControllerCommand::kActivate, "a");
  addTable("4");
  close();
  EXPECT_EQ(outlineOf(0), "[P[log(x) table(1) table(4)]]");
  EXPECT_EQ(outlineOf(1), "[P[table(2) table(3)]]");
}

TEST_F(DocumentSinkTest, OutputAfterItsDocumentWasClosedMakesANewHeading) {
  sink_.setCommandLog("X", "x");
  open("P");
  addTable("1");
  request(OutputControllerCommand::kClose, "ALL");
  addMessage("after");
  close();
  ASSERT_EQ(controller_.documents().size(), 1u);
  EXPECT_EQ(outlineOf(0), "[P[Error(after)]]");
}

TEST_F(DocumentSinkTest, NestedProceduresHaveHeadingsOfTheirOwnAndOneRun) {
  sink_.setCommandLog("X", "x");
  open("Outer");
  open("Inner");
  addTable("1");
  close();
  addTable("2");
  close();
  EXPECT_EQ(outlineOf(0), "[Inner[log(x) table(1)] Outer[table(2)]]");
  EXPECT_EQ(document(0).root().children.at(1).run, 1);
}

TEST_F(DocumentSinkTest, LogIsHeldBackUntilTheOutermostProcedureCloses) {
  make("a");
  sink_.setCommandLog("X", "x");
  open("Outer");
  open("Inner");
  close();
  EXPECT_EQ(outlineOf(0), "[]");
  addTable("1");
  close();
  EXPECT_EQ(outlineOf(0), "[Outer[log(x) table(1)]]");
}

TEST_F(DocumentSinkTest, EndOfAProcedureThatWasNeverSeenIsNoHarm) {
  close();
  open("P");
  addTable("1");
  close();
  EXPECT_EQ(outlineOf(0), "[P[table(1)]]");
}

TEST_F(DocumentSinkTest, ProceduresWithoutACommandsNameAreRunsOfTheirOwn) {
  for (int i = 0; i < 2; ++i) {
    open("Stb Print");
    addTable("t");
    close();
  }
  EXPECT_EQ(document(0).root().children.at(1).command, "STB PRINT");
  EXPECT_EQ(document(0).root().children.at(1).run, 2);
}

}  // namespace
}  // namespace vornwout
