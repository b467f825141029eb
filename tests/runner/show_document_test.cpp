#include "runner/show_document.h"

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "host/store/document_store.h"
#include "host/store/store_error.h"
#include "platform/adapter/progress_listener.h"
#include "tests/support/hostile_size.h"
#include "tests/support/pivot_tables.h"
#include "tests/support/program_run.h"
#include "tests/support/terminal_run.h"

namespace vornwout {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kChart =
    R"(<svg xmlns="http://www.w3.org/2000/svg" width="72pt" height="36pt"/>)";

/// Tells what is read of a document, and gives no part that is damaged.
class Source : public ContentSource {
 public:
  ObjectContent load(std::uint64_t id) override {
    ++loads;
    if (id == 0) throw StoreError(StoreError::Kind::kDamaged, "The part 0 is damaged.");
    return LogContent{"text " + std::to_string(id)};
  }
  int loads = 0;
};

DocumentObject object(ObjectType type, std::string label, LazyContent content = {}) {
  DocumentObject result;
  result.type = type;
  result.label = std::move(label);
  result.content = std::move(content);
  return result;
}

class ShowTest : public testing::Test {
 protected:
  ShowTest() {
    options_.file = "a.qxv";
    DocumentObject heading = object(ObjectType::kHeading, "Heading");
    DocumentObject hidden = object(ObjectType::kLog, "Hidden", part(2));
    hidden.visible = false;
    heading.children = {object(ObjectType::kLog, "Log", part(1)), hidden};
    document_.append(std::move(heading));
    document_.append(object(
        ObjectType::kChart, "Chart",
        LazyContent(MediaContent{"image/svg+xml", std::make_shared<const std::string>(kChart)})));
  }

  LazyContent part(std::uint64_t id) const { return LazyContent(LazyContent::Place{source_, id}); }
  void addDamaged() { document_.append(object(ObjectType::kTable, "Damaged", part(0))); }

  int show(bool isTerminal = false) {
    out_.str({});
    testing::internal::CaptureStderr();
    const int status =
        showDocument(out_, document_, options_, TerminalStyle{ColorDepth::kNone, 40}, isTerminal);
    err_ = testing::internal::GetCapturedStderr();
    return status;
  }

  std::shared_ptr<Source> source_ = std::make_shared<Source>();
  Document document_{1, "", false};
  ShowOptions options_;
  std::ostringstream out_;
  std::string err_;
};

TEST_F(ShowTest, OutlineComesFirstAndThenWhatIsNotHidden) {
  EXPECT_EQ(show(), 0);
  EXPECT_EQ(out_.str(),
            "── a.qxv ───────────────────────────────\n\n"
            "1 ├─ Heading    heading\n"
            "2 │  ├─ Log     log\n"
            "3 │  └─ Hidden  log, hidden\n"
            "4 └─ Chart      chart\n"
            "\nHeading\n\ntext 1\n\n"
            "Chart: Chart (SVG, 72 × 36 points, 68\n       bytes)\n"
            "  vornwout show a.qxv --object 4 --raw > chart.svg\n");
}

TEST_F(ShowTest, OutlineReadsNothing) {
  addDamaged();
  options_.outline = true;
  EXPECT_EQ(show(), 0);
  EXPECT_THAT(out_.str(), HasSubstr("5 └─ Damaged"));
  EXPECT_THAT(out_.str(), Not(HasSubstr("text 1")));
  EXPECT_EQ(source_->loads, 0);
}

TEST_F(ShowTest, OneObjectIsShownHiddenOrNotAndNothingElseIsRead) {
  addDamaged();
  options_.object = 3;
  EXPECT_EQ(show(), 0);
  EXPECT_EQ(out_.str(), "text 2\n");
  EXPECT_EQ(source_->loads, 1);
  options_.object = 1;
  EXPECT_EQ(show(), 0);
  EXPECT_EQ(out_.str(), "Heading\n\ntext 1\n") << "below it hidden objects stay hidden";
  options_.outline = true;
  EXPECT_EQ(show(), 0);
  EXPECT_THAT(out_.str(), HasSubstr("1 └─ Heading    heading\n2    ├─ Log"));
}

TEST_F(ShowTest, ObjectThatIsNotThereIsRefused) {
  for (const std::int64_t number :
       {std::int64_t{0}, std::int64_t{5}, std::int64_t{-1}, INT64_MAX}) {
    options_.object = number;
    EXPECT_EQ(show(), 2);
    EXPECT_EQ(err_, "vornwout: error: There is no object " + std::to_string(number) +
                        "; the document has 4.\n");
  }
  document_ = Document(1, "", false);
  EXPECT_EQ(show(), 2);
  EXPECT_EQ(err_, "vornwout: error: The document has no objects.\n");
}

TEST_F(ShowTest, PartThatCannotBeReadIsReportedInItsPlace) {
  addDamaged();
  document_.append(object(ObjectType::kLog, "After", part(3)));
  EXPECT_EQ(show(), 1);
  EXPECT_THAT(out_.str(),
              testing::EndsWith("\nObject 5 cannot be read. The part 0 is\ndamaged.\n\ntext 3\n"));
  options_.json = true;
  EXPECT_EQ(show(), 1);
  const auto json = nlohmann::json::parse(out_.str());
  EXPECT_EQ(json["objects"][2]["error"], "The part 0 is damaged.");
  EXPECT_EQ(json["objects"][3]["content"]["text"], "text 3");
}

TEST_F(ShowTest, NothingThatWasReadIsKept) {
  EXPECT_EQ(show(), 0);
  EXPECT_EQ(source_->loads, 1);
  EXPECT_EQ(show(), 0);
  EXPECT_EQ(source_->loads, 2);
}

TEST_F(ShowTest, RawWritesTheBytesOfAMedium) {
  options_.raw = true;
  options_.object = 4;
  EXPECT_EQ(show(), 0);
  EXPECT_EQ(out_.str(), kChart);
  EXPECT_EQ(show(true), 2);
  EXPECT_EQ(out_.str(), "");
  EXPECT_THAT(err_, HasSubstr("--raw does not write to a terminal"));
  options_.object = 2;
  EXPECT_EQ(show(), 2);
  EXPECT_EQ(err_, "vornwout: error: Object 2 is a log; --raw writes charts and models.\n");
  addDamaged();
  options_.object = 5;
  EXPECT_EQ(show(), 1);
  EXPECT_EQ(err_, "vornwout: error: Object 5 cannot be read. The part 0 is damaged.\n");
}

TEST_F(ShowTest, JsonOnATerminalIsAscii) {
  document_.append(object(ObjectType::kLog,
                          "\xC2\x9B"
                          "31m"));
  options_.json = true;
  options_.outline = true;
  EXPECT_EQ(show(true), 0);
  EXPECT_THAT(out_.str(), HasSubstr("\\u009b31m"));
}

TEST_F(ShowTest, EmptyDocumentSaysSo) {
  document_ = Document(1, "", false);
  EXPECT_EQ(show(), 0);
  EXPECT_THAT(out_.str(), HasSubstr("\n\nThe document has no objects.\n"));
}

TEST_F(ShowTest, TellsHowFarItIs) {
  class Recorder : public ProgressListener {
   public:
    void progress(std::string_view what, std::uint64_t done, std::uint64_t total) override {
      reports.push_back(std::string(what) + " " + std::to_string(done) + "/" +
                        std::to_string(total));
    }
    std::vector<std::string> reports;
  };
  const std::vector<std::string> expected = {"Showing a.qxv 0/4", "Showing a.qxv 1/4",
                                             "Showing a.qxv 2/4", "Showing a.qxv 3/4",
                                             "Showing a.qxv 4/4"};
  options_.file = "folder/a.qxv";
  for (const bool isJson : {false, true}) {
    options_.json = isJson;
    Recorder recorder;
    const ProgressRegistration registration(recorder);
    show();
    EXPECT_EQ(recorder.reports, expected);
  }
  // A large table tells of itself.
  auto table = std::make_shared<PivotTable>();
  std::vector<std::string> labels;
  for (int i = 0; i < 10'000; ++i) labels.push_back(std::to_string(i));
  table->dimensions = {makeDimension("Rows", PivotPlace::kRows, 1, labels)};
  for (int i = 0; i < 10'000; ++i) addCell(*table, {i}, numberCell(i));
  document_.append(object(ObjectType::kTable, "Numbers", LazyContent(TableContent(table))));
  for (const bool isJson : {false, true}) {
    options_.json = isJson;
    Recorder recorder;
    const ProgressRegistration registration(recorder);
    show();
    EXPECT_THAT(recorder.reports,
                testing::Contains(StartsWith("Showing a.qxv 4")).Times(testing::Gt(2)));
    EXPECT_EQ(recorder.reports.back(), "Showing a.qxv 5/5");
  }
}

/// A file with a document, and the program that shows it.
class ShowProgram : public testing::Test {
 protected:
  std::string save(const std::string& name, const SaveOptions& options = {}) const {
    Document document(1, "", false);
    auto table = std::make_shared<PivotTable>();
    table->title = textCell("Numbers");
    table->dimensions = {makeDimension("Rows", PivotPlace::kRows, 1, {"a", "b"})};
    addCell(*table, {0}, numberCell(1.5));
    addCell(*table, {1}, numberCell(2));
    document.append(object(ObjectType::kTable, "Numbers", LazyContent(TableContent(table))));
    document.append(object(ObjectType::kLog, "Log", LazyContent(LogContent{"OUTPUT NEW."})));
    saveDocument(document, scratch_.file(name), options);
    return scratch_.file(name);
  }

  ScratchDirectory scratch_;
};

TEST_F(ShowProgram, FileIsShown) {
  const std::string file = save("a.qxv");
  const ProgramResult result = runProgram({"show", file});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_THAT(result.out, HasSubstr("1 ├─ Numbers  table\n2 └─ Log      log\n\nNumbers\n┌"));
  EXPECT_THAT(result.out, HasSubstr("1.5"));
  EXPECT_THAT(result.out, testing::EndsWith("\n\nOUTPUT NEW.\n"));
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(runProgram({"show", file, "--object", "2"}).out, "OUTPUT NEW.\n");
  EXPECT_EQ(nlohmann::json::parse(runProgram({"show", file, "--json"}).out)["objects"].size(), 2U);
  EXPECT_THAT(runProgram({"show", file, "--color", "always"}).out, HasSubstr("\x1b[1mNumbers"));
  // Where the name is cut hangs on what the scratch directory is called.
  EXPECT_THAT(runProgram({"show", file, "--width", "20", "--outline"}).out,
              testing::AllOf(StartsWith("── "), HasSubstr("… ─"), HasSubstr("─\n\n1 ")));
}

TEST_F(ShowProgram, PasswordComesFromAFile) {
  SaveOptions options;
  options.password = "secret";
  const std::string file = save("a.qxv", options);
  const std::string right = scratch_.write("right", "secret\n");
  const std::string wrong = scratch_.write("wrong", "sesame\n");
  EXPECT_EQ(runProgram({"show", file, "--password-file", right}).status, 0);
  ProgramSetup typed;
  typed.input = "secret\n";
  EXPECT_EQ(runProgram({"show", file, "--password-file", "-"}, typed).status, 0);
  const ProgramResult missing = runProgram({"show", file});
  EXPECT_EQ(missing.status, 2);
  EXPECT_THAT(missing.err, HasSubstr("Give its password with --password-file."));
  const ProgramResult refused = runProgram({"show", file, "--password-file", wrong});
  EXPECT_EQ(refused.status, 2);
  EXPECT_THAT(refused.err, StartsWith("vornwout: error: " + file + " cannot be opened. "));
  EXPECT_THAT(refused.err, Not(HasSubstr("sesame")));
  EXPECT_EQ(runProgram({"show", file, "--password-file", "/nowhere"}).status, 2);
}

TEST_F(ShowProgram, ObjectsOfAnEncryptedFileAreHadWithItsPassword) {
  Document document(1, "", false);
  document.append(object(
      ObjectType::kChart, "Chart",
      LazyContent(MediaContent{"image/svg+xml", std::make_shared<const std::string>(kChart)})));
  SaveOptions options;
  options.password = "secret";
  saveDocument(document, scratch_.file("a.qxv"), options);
  const std::string password = scratch_.write("my password", "secret");
  const std::string file = scratch_.file("a.qxv");
  EXPECT_THAT(runProgram({"show", file, "--password-file", password}).out,
              HasSubstr("  vornwout show " + file + " --object 1 --password-file '" + password +
                        "' --raw > chart.svg\n"));
}

TEST_F(ShowProgram, AnObjectThatIsNotThereIsNamedAsItWasWritten) {
  const std::string file = save("a.qxv");
  for (const char* number : {"-1", "0", "3", "9000000000000000000"}) {
    const ProgramResult result = runProgram({"show", file, "--object", number});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, "vornwout: error: There is no object " + std::string(number) +
                              "; the document has 2.\n");
  }
}

/// The most memory in bytes that the program takes at a time.
long peakOf(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), VORN_BUILD_DIR "/runner/vornwout");
  std::vector<char*> argv;
  for (std::string& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDOUT_FILENO);
    execv(argv[0], argv.data());
    _exit(127);
  }
  int status = 0;
  struct rusage usage {};
  EXPECT_EQ(wait4(child, &status, 0, &usage), child);
  EXPECT_EQ(status, 0);
  return usage.ru_maxrss * 1024;
}

TEST_F(ShowProgram, ALongTextTakesNoMoreThanAFewTimesItsMemory) {
  if (kIsSanitized) GTEST_SKIP() << "the sanitizer's own memory is larger";
  constexpr long kSize = 24'000'000;
  const std::string text(kSize, 'x');
  const std::string words = [] {
    std::string made;
    while (made.size() < kSize) made += "wörd ";
    return made;
  }();
  for (const std::string& label : {text, words}) {
    Document document(1, "", false);
    auto table = std::make_shared<PivotTable>();
    table->dimensions = {makeDimension("Rows", PivotPlace::kRows, 1, {label, "b"})};
    addCell(*table, {0}, numberCell(1.5));
    document.append(object(ObjectType::kTable, "Numbers", LazyContent(TableContent(table))));
    document.append(object(ObjectType::kLog, "Log", LazyContent(LogContent{label})));
    saveDocument(document, scratch_.file("a.qxv"), {});
    EXPECT_LT(peakOf({"show", scratch_.file("a.qxv"), "--object", "1"}), 14 * kSize);
    EXPECT_LT(peakOf({"show", scratch_.file("a.qxv"), "--object", "2", "--width", "80"}),
              14 * kSize);
  }
}

TEST_F(ShowProgram, WrongUsageAndFilesThatAreNoneAreRefused) {
  const std::string file = save("a.qxv");
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{"show"},
                                             {"show", "/nowhere.qxv"},
                                             {"show", scratch_.write("no.qxv", "no zip")},
                                             {"show", file, "--raw"},
                                             {"show", file, "--raw", "--json", "--object", "1"},
                                             {"show", file, "--object", "-1"},
                                             {"show", file, "--object", "x"},
                                             {"show", file, "--width", "0"},
                                             {"show", file, "--width", "10001"},
                                             {"show", file, "--color", "blue"}}) {
    SCOPED_TRACE(testing::PrintToString(arguments));
    const ProgramResult result = runProgram(arguments);
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.err, StartsWith("vornwout: error: "));
    EXPECT_EQ(result.out, "");
  }
}

struct OnTerminal {
  std::vector<std::string> options;
  std::vector<std::pair<std::string, std::string>> environment;
  const char* expected;  // a part of what is shown
};

TEST_F(ShowProgram, PagesAreTurnedOnATerminalOnly) {
  const std::string file = save("a.qxv");
  const OnTerminal cases[] = {
      {{}, {{"VORNWOUT_PAGER", "sed s/OUTPUT/PAGED/"}, {"PAGER", "false"}}, "PAGED NEW."},
      {{}, {{"PAGER", "sed s/OUTPUT/PAGED/"}}, "PAGED NEW."},
      {{}, {{"PAGER", "sed s/OUTPUT/PAGED/ | cat"}}, "PAGED NEW."},
      {{"--no-pager"}, {{"PAGER", "sed s/OUTPUT/PAGED/"}}, "OUTPUT NEW."},
      {{}, {{"PAGER", ""}}, "OUTPUT NEW."},
      {{}, {{"PAGER", "/nowhere/pager"}}, "OUTPUT NEW."},
      {{}, {{"PAGER", "head -n 1"}}, "──"},
  };
  for (const OnTerminal& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.environment));
    ProgramSetup setup;
    setup.environment = c.environment;
    std::vector<std::string> arguments = {"show", file};
    arguments.insert(arguments.end(), c.options.begin(), c.options.end());
    const auto result = runOnTerminal(arguments, setup);
    if (!result) GTEST_SKIP() << "this machine has no pseudo terminals";
    EXPECT_EQ(result->status, 0);
    EXPECT_THAT(result->out, HasSubstr(c.expected));
  }
  ProgramSetup setup;
  setup.environment = {{"PAGER", "sed s/OUTPUT/PAGED/"}};
  EXPECT_THAT(runProgram({"show", file}, setup).out, HasSubstr("OUTPUT NEW."));
}

TEST_F(ShowProgram, TerminalGetsColoursAndItsWidth) {
  const std::string file = save("a.qxv");
  ProgramSetup setup;
  setup.environment = {{"PAGER", "cat"}};
  const auto result = runOnTerminal({"show", file}, setup, 30);
  if (!result) GTEST_SKIP() << "this machine has no pseudo terminals";
  EXPECT_THAT(result->out, HasSubstr("\x1b[1mNumbers\x1b[0m"));
  setup.environment.emplace_back("NO_COLOR", "1");
  EXPECT_THAT(runOnTerminal({"show", file}, setup, 30)->out, Not(HasSubstr("\x1b")));
}

}  // namespace
}  // namespace vornwout
