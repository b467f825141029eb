// The lines of a trace, read back by a JSON parser.
#include "platform/trace/trace_writer.h"

#include <array>
#include <chrono>
#include <fstream>
#include <limits>
#include <sstream>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

#include "platform/pivot/bp_procedure.h"
#include "platform/text/encoding.h"
#include "tests/support/hostile_size.h"

namespace vornwout {
namespace {

using Json = nlohmann::ordered_json;

/// A writer with what it wrote.
class TraceWriterTest : public testing::Test {
 protected:
  /// Every line, parsed; fails when one is no JSON or the last has no end.
  std::vector<Json> lines() const {
    const std::string text = stream_.str();
    EXPECT_TRUE(text.empty() || text.back() == '\n');
    std::vector<Json> parsed;
    std::istringstream input(text);
    for (std::string line; std::getline(input, line);) {
      parsed.push_back(Json::parse(line, nullptr, false));
      EXPECT_FALSE(parsed.back().is_discarded()) << line;
    }
    return parsed;
  }
  Json onlyLine() const {
    const std::vector<Json> all = lines();
    EXPECT_EQ(all.size(), 1U);
    return all.empty() ? Json() : all.front();
  }

  std::ostringstream stream_;
  TraceWriter trace_{stream_};
};

/// Names of the fields in the order in which they stand.
std::vector<std::string> fields(const Json& line) {
  std::vector<std::string> names;
  for (const auto& [name, value] : line.items()) names.push_back(name);
  return names;
}

using Fields = std::vector<std::string>;

// Compares dumped text, so that the order of the fields counts.
void expectLine(const Json& line, const char* expected) {
  EXPECT_EQ(line.dump(), Json::parse(expected).dump());
}

TEST_F(TraceWriterTest, WritesTheCallsOfEntries) {
  trace_.enter("outnew_", "OUTPUT NEW", 3);
  trace_.leave("outnew_", "OUTPUT NEW", 3);
  trace_.unwind("outmodify_");
  const auto all = lines();
  ASSERT_EQ(all.size(), 3U);
  expectLine(all[0], R"({"event":"enter","entry":"outnew_","command":"OUTPUT NEW","line":3})");
  expectLine(all[1], R"({"event":"leave","entry":"outnew_","command":"OUTPUT NEW","line":3})");
  expectLine(all[2], R"({"event":"unwind","entry":"outmodify_"})");
}

TEST_F(TraceWriterTest, WritesWhatASinkSees) {
  const SinkRegistration registration(trace_);
  {
    BpProcedure procedure("Output New", 2);
    bp_flushlog_();
    AddNotes(2, BpString("Viewer", true), BpString("doc1", false));
    AddNotes(2, BpString("Image File Count", true), BpNumber(4, procedure.Count()));
  }
  const auto all = lines();
  ASSERT_EQ(all.size(), 4U);  // a closing procedure is no event
  expectLine(all[0], R"({"event":"procedure","name":"Output New","number":2})");
  expectLine(all[1], R"({"event":"flush_log"})");
  expectLine(all[2], R"({"event":"note","number":2,"label":"Viewer","value":"doc1"})");
  expectLine(all[3], R"({"event":"note","number":2,"label":"Image File Count","value":4})");
}

TEST_F(TraceWriterTest, WritesAShortRequest) {
  trace_.request({7, OutputControllerCommand::kName, "doc1", "", OutputDocumentMinimized::kYes});
  expectLine(onlyLine(),
             R"({"event":"request","form":"short","id":7,"command":3,"name":"doc1","text":"",
                 "minimized":1})");
}

VornwMsgOutputControllerRequest longRequest(const char* password) {
  return {8,
          OutputControllerCommand::kSave,
          "doc1",
          "\\a\\b.qxv",
          OutputDocumentLock::kUnspecified,
          OutputDocumentMinimized::kNotApplicable,
          OutputDocumentType::kQxw,
          password,
          OutputDocumentEncryptPW::kYes,
          YesNoEnum::kYes};
}

TEST_F(TraceWriterTest, WritesALongRequestWithoutItsPassword) {
  trace_.request(longRequest("secret"));
  expectLine(onlyLine(),
             R"({"event":"request","form":"long","id":8,"command":6,"name":"doc1",
                 "path":"\\a\\b.qxv","lock":2,"minimized":2,"type":1,"password":"***",
                 "encrypt_password":1,"store_model":1})");
  EXPECT_EQ(stream_.str().find("secret"), std::string::npos);
}

TEST_F(TraceWriterTest, LeavesAnEmptyPasswordEmpty) {
  trace_.request(longRequest(""));
  EXPECT_EQ(onlyLine().at("password"), "");
}

TEST_F(TraceWriterTest, ShowsPasswordsWhenAskedTo) {
  TraceWriter open(stream_, TraceWriter::Secrets::kShown);
  open.request(longRequest("secret"));
  EXPECT_EQ(onlyLine().at("password"), "secret");
}

TEST_F(TraceWriterTest, ConvertsTheTextsOfARequestFromTheCurrentEncoding) {
  const ScopedEncoding scope(Encoding::find("windows-1252"));
  trace_.request({1, OutputControllerCommand::kNew, "\xE4", nullptr, OutputDocumentMinimized::kNo});
  EXPECT_EQ(onlyLine().at("name"), "\xC3\xA4");
  EXPECT_EQ(onlyLine().at("text"), "");
}

TEST_F(TraceWriterTest, WritesXmlAsTheUtf8ThatItIs) {
  const ScopedEncoding scope(Encoding::find("windows-1252"));
  trace_.modify("<a b=\"\xC3\xA4\"/>");
  trace_.exportXml("<c/>\n");
  const auto all = lines();
  ASSERT_EQ(all.size(), 2U);
  expectLine(all[0], "{\"event\":\"modify\",\"xml\":\"<a b=\\\"\xC3\xA4\\\"/>\"}");
  expectLine(all[1], R"({"event":"export","xml":"<c/>\n"})");
}

TEST_F(TraceWriterTest, ShowsInvalidBytesAsTheReplacementCharacter) {
  trace_.modify("a\xFF\xC3z");
  trace_.procedureOpened({"p\xFF", 1});
  const auto all = lines();
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].at("xml"), "a\xEF\xBF\xBD\xEF\xBF\xBDz");
  EXPECT_EQ(all[1].at("name"), "p\xEF\xBF\xBD");
}

TEST_F(TraceWriterTest, UncoversAMessageOfTheParserOnlyWhenAskedTo) {
  ParserMessageRecord message;
  message.operation = "InvalidParamValue";
  message.arguments = {"***"};
  message.text = "*** is not valid.";
  message.shortened = "short";
  message.uncovered = ParserMessageRecord::Texts{{"s3cret"}, "s3cret is not valid."};
  trace_.parserMessage(message);
  TraceWriter open(stream_, TraceWriter::Secrets::kShown);
  open.parserMessage(message);
  message.uncovered.reset();
  open.parserMessage(message);
  const auto all = lines();
  ASSERT_EQ(all.size(), 3U);
  for (const std::size_t covered : {0U, 2U}) {
    EXPECT_EQ(all[covered].at("arguments").at(0), "***");
    EXPECT_EQ(all[covered].at("text"), "*** is not valid.");
  }
  EXPECT_EQ(all[1].at("arguments").at(0), "s3cret");
  EXPECT_EQ(all[1].at("text"), "s3cret is not valid.");
}

TEST_F(TraceWriterTest, WritesAMessageOfTheParserWithTheFieldsItHas) {
  ParserMessageRecord message;
  message.operation = "WrongValueType";
  message.arguments = {"NAME", ""};
  message.text = "Wrong value for NAME.";
  trace_.parserMessage(message);

  message.operation = "GenericWarning";
  message.arguments = {"TEXT"};
  message.messageTemplate = "Subcommand ^1";
  message.severity = MessageSeverity::kWarning;
  message.text = "Subcommand TEXT";
  message.place = {4, 12};
  trace_.parserMessage(message);

  message.place.column = 0;
  trace_.parserMessage(message);

  const auto all = lines();
  ASSERT_EQ(all.size(), 3U);
  expectLine(all[0],
             R"({"event":"message","by":"parser","operation":"WrongValueType",
                 "arguments":["NAME",""],"severity":"error","text":"Wrong value for NAME."})");
  expectLine(all[1],
             R"({"event":"message","by":"parser","operation":"GenericWarning",
                 "arguments":["TEXT"],"template":"Subcommand ^1","severity":"warning",
                 "text":"Subcommand TEXT","line":4,"column":12})");
  EXPECT_EQ(all[2].at("line"), 4);
  EXPECT_FALSE(all[2].contains("column"));
}

TEST_F(TraceWriterTest, WritesAMessageInTheOutput) {
  const SinkRegistration registration(trace_);
  BpError(BpString("No output documents are open.", true), 2, 2);
  BpComposite tooLong("Output name ^1 is too long.", true);
  tooLong.Add(BpString("n", false)).Finish();
  BpError(tooLong, 2, 3);
  BpComposite labels("Long labels:", true);
  labels.Sublist().Add(BpString("T1", false)).Add(BpString("T2", false)).EndSublist().Finish();
  BpError(labels, 2, 2);
  const auto all = lines();
  ASSERT_EQ(all.size(), 3U);
  expectLine(all[0],
             R"({"event":"message","by":"output","template":"No output documents are open.",
                 "arguments":[],"show":2,"level":2,"text":"No output documents are open."})");
  expectLine(all[1],
             R"({"event":"message","by":"output","template":"Output name ^1 is too long.",
                 "arguments":["n"],"show":2,"level":3,"text":"Output name n is too long."})");
  expectLine(all[2],
             R"({"event":"message","by":"output","template":"Long labels:","arguments":[],
                 "sublist":["T1","T2"],"show":2,"level":2,"text":"Long labels: T1, T2"})");
}

TEST_F(TraceWriterTest, WritesATableWithEveryField) {
  const SinkRegistration registration(trace_);
  {
    BpProcedure procedure("p", 2);
    BpPivotTable table =
        procedure.PivotTable(BpString("Title", true), BpString("Sub", true), false);
    table.HideTitle();
    table.MinDataColumnWidth(150);
    BpDimension contents = table.Dimension(BpString("Contents", true), 2);
    contents.Position(0, 1, true, false);
    BpDimension columns = table.Dimension(BpString("C", true), 3);
    columns.Category(BpNumber(0.5, BpFormatSpec{}));
    contents.Category(BpNumber(0, procedure.Count())).Cell(BpString("a.pdf", false));
    BpGroup images = contents.Group(BpString("Image Files", true), true, 2);
    BpCategory count = images.Category(BpString("E60352", true));
    count.Cell(BpNumber(3, procedure.Count()));
    count.CellNote(BpAnnotation(BpString("note", true)));
    count.CellNote(BpAnnotation(BpNumber(2.25, BpFormatSpec{})));
    count.TextColor("red");
    count.BackgroundColor("#0000ff");
    count.Bold();
    contents.Category(BpString("", false)).Cell(BpString("", false));
  }
  const auto all = lines();
  ASSERT_EQ(all.size(), 2U);
  expectLine(all[1],
             R"({"event":"table","title":"Title","subtype":"Sub","flag":false,"title_hidden":true,
                 "min_data_column_width":150,"max_data_column_width":null,
                 "dimensions":[
                   {"label":"Contents","sort":2,"position":[0,1,true,false],
                    "categories":[[0],["Image Files","E60352"],[""]]},
                   {"label":"C","sort":3,"position":null,"categories":[[0.5]]}],
                 "cells":[
                   {"at":[[0],[0.5]],"value":"a.pdf"},
                   {"at":[["Image Files","E60352"],[0.5]],"value":3,"notes":["note",2.25],
                    "text_color":"red","background_color":"#0000ff","bold":true},
                   {"at":[[""],[0.5]]}]})");
}

TEST_F(TraceWriterTest, WritesTheFlagOfATableOnlyWhereGiven) {
  trace_.table(std::make_shared<const PivotTable>());
  EXPECT_EQ(fields(onlyLine()),
            (Fields{"event", "title", "subtype", "title_hidden", "min_data_column_width",
                    "max_data_column_width", "dimensions", "cells"}));
  EXPECT_EQ(onlyLine().at("title"), "");
  EXPECT_EQ(onlyLine().at("title_hidden"), false);
  EXPECT_TRUE(onlyLine().at("min_data_column_width").is_null());
  EXPECT_EQ(onlyLine().at("cells"), Json::array());
}

TEST_F(TraceWriterTest, WritesNumbersAsTheyAre) {
  struct Case {
    double number;
    const char* written;
  };
  const Case cases[] = {
      {0, "0"},
      {-0.0, "0"},
      {-3, "-3"},
      {0.1, "0.1"},
      {9007199254740992.0, "9007199254740992"},
      {1e300, "1e+300"},
      {std::numeric_limits<double>::infinity(), "null"},
      {std::numeric_limits<double>::quiet_NaN(), "null"},
  };
  const SinkRegistration registration(trace_);
  for (const Case& c : cases) {
    stream_.str("");
    AddNotes(1, BpString("", true), BpNumber(c.number, BpFormatSpec{}));
    EXPECT_NE(stream_.str().find(std::string("\"value\":") + c.written + "}"), std::string::npos)
        << stream_.str();
  }
}

TEST_F(TraceWriterTest, KeepsALineOnOneLine) {
  trace_.modify("a\nb\r\n\x01");
  EXPECT_EQ(onlyLine().at("xml"), "a\nb\r\n\x01");
}

/// Takes `room` bytes, then fails.
class FullBuffer : public std::streambuf {
 public:
  explicit FullBuffer(std::size_t room) : room_(room) {}
  void makeRoom(std::size_t room) { room_ = room; }
  int flushes = 0;
  std::string taken;

 protected:
  std::streamsize xsputn(const char* text, std::streamsize count) override {
    const auto size = std::min(static_cast<std::size_t>(count), room_ - taken.size());
    taken.append(text, size);
    return static_cast<std::streamsize>(size);
  }
  int overflow(int) override { return traits_type::eof(); }
  int sync() override {
    ++flushes;
    return 0;
  }

 private:
  std::size_t room_;
};

TEST(TraceWriterOutput, FlushesEveryEvent) {
  FullBuffer buffer(1000);
  std::ostream stream(&buffer);
  TraceWriter trace(stream);
  trace.unwind("a");
  EXPECT_EQ(buffer.flushes, 1);
  trace.unwind("b");
  EXPECT_EQ(buffer.flushes, 2);
  EXPECT_FALSE(trace.failed());
  EXPECT_EQ(trace.error(), "");
}

TEST(TraceWriterOutput, EndsAtTheFirstFailureAndTellsOfIt) {
  FullBuffer buffer(50);
  std::ostream stream(&buffer);
  TraceWriter trace(stream);
  trace.unwind("first");
  EXPECT_FALSE(trace.failed());
  trace.unwind("second, which does not fit any more");
  EXPECT_TRUE(trace.failed());
  const std::string error = trace.error();
  EXPECT_FALSE(error.empty());
  // Even with room again nothing follows: the trace would have a gap.
  stream.clear();
  buffer.makeRoom(1000);
  const std::size_t written = buffer.taken.size();
  trace.unwind("x");
  EXPECT_EQ(buffer.taken.size(), written);
  EXPECT_EQ(trace.error(), error);
}

TEST(TraceWriterOutput, NamesTheReasonOfTheSystem) {
  const int full = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
  ASSERT_GE(full, 0);
  TraceWriter trace(full);
  trace.unwind("a");
  EXPECT_TRUE(trace.failed());
  EXPECT_EQ(trace.error(), "No space left on device");
  ::close(full);

  std::ofstream stream("/dev/full");
  TraceWriter streamTrace(stream);
  streamTrace.unwind("a");
  EXPECT_EQ(streamTrace.error(), "No space left on device");
}

TEST(TraceWriterOutput, WritesWholeLinesToANonBlockingPipe) {
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe2(ends.data(), O_NONBLOCK | O_CLOEXEC), 0);
  std::string received;
  std::thread reader([&] {
    ASSERT_EQ(::fcntl(ends[0], F_SETFL, 0), 0);
    std::array<char, 4096> block;
    for (ssize_t size = 0; (size = ::read(ends[0], block.data(), block.size())) > 0;) {
      received.append(block.data(), static_cast<std::size_t>(size));
    }
  });
  const std::string xml(1'000'000, 'x');
  TraceWriter trace(ends[1]);
  trace.modify(xml);
  EXPECT_FALSE(trace.failed()) << trace.error();
  ::close(ends[1]);
  reader.join();
  ::close(ends[0]);
  EXPECT_EQ(Json::parse(received).at("xml").get<std::string>(), xml);
}

TEST(TraceWriterScale, WritesManyRowsInLinearTime) {
  const auto seconds = [](int rows) {
    std::ostringstream stream;
    TraceWriter trace(stream);
    const SinkRegistration registration(trace);
    const auto start = std::chrono::steady_clock::now();
    {
      BpProcedure procedure("p", 2);
      BpPivotTable table = procedure.PivotTable(BpString("T", true), BpString("S", true));
      BpDimension keys = table.Dimension(BpString("Key", true), 2);
      for (int i = 0; i < rows; ++i) {
        keys.Category(BpString(std::to_string(i), false)).Cell(BpString("text", false));
      }
    }
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    const std::string text = stream.str();
    const Json table = Json::parse(text.substr(text.find('\n') + 1));
    EXPECT_EQ(table.at("cells").size(), static_cast<std::size_t>(rows));
    EXPECT_EQ(table.at("cells").back().at("at"), Json::array({{std::to_string(rows - 1)}}));
    return taken.count();
  };
  const double small = seconds(kHostileCount / 10);
  const double large = seconds(kHostileCount);
  EXPECT_LT(large, 40 * small + 0.5);
  EXPECT_LT(large, 20);
}

}  // namespace
}  // namespace vornwout
