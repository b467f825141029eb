#include "runner/build_document.h"

#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include "host/store/document_store.h"
#include "host/store/file_lock.h"
#include "host/store/store_error.h"
#include "tests/support/program_run.h"

namespace vornwout {
namespace {

using testing::HasSubstr;

const std::string kSales = "region,city,year,amount\nNorth,Kiel,2023,1\nNorth,Kiel,2024,2\n";

ProgramResult build(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "build");
  return runProgram(std::move(arguments));
}

TEST(BuildDocument, ObjectsOfTheCommandLineStandInItsOrder) {
  const ScratchDirectory scratch;
  const std::string csv = scratch.write("sales.csv", kSales);
  const std::string svg = scratch.write("trend.svg", "<svg/>");
  const std::string text = scratch.write("intro.md", "# Hello");
  const std::string out = scratch.file("a.qxv");
  const ProgramResult result = build(
      {"--text",      text,      "--table",   csv,       "--rows",  "region/city", "--columns",
       "year",        "--value", "amount",    "--title", "First",   "--format",    "F8.2",
       "--statistic", "mean",    "--chart",   svg,       "--label", "Trend",       "--table",
       csv,           "--rows",  "city,year", "--value", "amount",  "--title",     "Second",
       "--caption",   "C",       "-o",        out});
  ASSERT_EQ(result.status, 0) << result.err;
  const auto document = openDocument(out);
  const auto& objects = document->root().children;
  ASSERT_EQ(objects.size(), 4U);
  EXPECT_EQ(objects[0].type, ObjectType::kText);
  EXPECT_EQ(objects[0].label, "intro");
  EXPECT_EQ(objects[1].label, "First");
  const PivotTable& first = **objects[1].content.as<TableContent>();
  ASSERT_EQ(first.dimensions.size(), 2U);
  EXPECT_EQ(first.dimensions[0].label.text, "region / city");
  EXPECT_EQ(renderText(first.cells.at(1).value), "2.00");
  EXPECT_EQ(first.dimensions[1].categories[0].statistic, StatisticKind::kMean);
  EXPECT_EQ(objects[2].type, ObjectType::kChart);
  EXPECT_EQ(objects[2].label, "Trend");
  const PivotTable& second = **objects[3].content.as<TableContent>();
  EXPECT_EQ(second.title.text + second.caption.text, "SecondC");
  EXPECT_EQ(second.dimensions.size(), 2U);
  EXPECT_EQ(renderText(second.cells.at(1).value), "2");
}

TEST(BuildDocument, ManifestNamesFilesOfItsFolderOnlyUnlessAllowed) {
  const ScratchDirectory scratch;
  std::filesystem::create_directory(scratch.file("in"));
  scratch.write("intro.md", "text");
  const std::string manifest = scratch.write(
      "in/m.json", "{\"objects\": [{\"type\": \"text\", \"markdown\": \"../intro.md\"}]}");
  const std::string out = scratch.file("a.qxv");
  const ProgramResult refused = build({manifest, "-o", out});
  EXPECT_EQ(refused.status, 2);
  EXPECT_NE(refused.err.find("outside the manifest's folder"), std::string::npos) << refused.err;
  EXPECT_FALSE(std::filesystem::exists(out));
  const ProgramResult allowed = build({manifest, "--allow-outside", "-o", out});
  EXPECT_EQ(allowed.status, 0) << allowed.err;
  EXPECT_EQ(openDocument(out)->root().children.size(), 1U);
}

TEST(BuildDocument, PasswordComesFromAFile) {
  const ScratchDirectory scratch;
  const std::string text = scratch.write("a.md", "text");
  const std::string out = scratch.file("a.qxv");
  const ProgramResult result =
      build({"--text", text, "--password-file", scratch.write("p", "secret\n"), "-o", out});
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_THROW(openDocument(out), StoreError);
  EXPECT_EQ(openDocument(out, {{"secret"}})->root().children.size(), 1U);
}

TEST(BuildDocument, MistakeInAFileIsSaidAtItsPlaceAndWritesNothing) {
  const ScratchDirectory scratch;
  const std::string csv = scratch.write("a.csv", "k,v\nx,1\ny,n/a\n");
  const std::string out = scratch.write("a.qxv", "old");
  const ProgramResult result = build({"--table", csv, "--rows", "k", "--value", "v", "-o", out});
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.err.find("a.csv:3:3: error: \"n/a\" is no number."), std::string::npos)
      << result.err;
  EXPECT_EQ(scratch.read("a.qxv"), "old");
}

TEST(BuildDocument, ExitStatusTellsAMistakeFromAFileThatCannotBeRead) {
  const ScratchDirectory scratch;
  struct Case {
    std::string file;
    int status;
  };
  // Some of these mistakes have no place in their file.
  const std::string png("\x89PNG\r\n\x1A\n\0\0\0", 11);
  const Case cases[] = {
      {scratch.write("a.svg", "text"), 1},
      {scratch.write("b.svg", "<html/>"), 1},
      {scratch.write("c.svg", "<svg xmlns=\"http://www.w3.org/2000/svg\"><g></svg>"), 1},
      {scratch.write("d.png", png), 1},
      {scratch.file("none.svg"), 2},
      {scratch.file(""), 2},
  };
  for (const Case& c : cases) {
    const ProgramResult result = build({"--chart", c.file, "-o", scratch.file("a.qxv")});
    EXPECT_EQ(result.status, c.status) << c.file << ": " << result.err;
    EXPECT_NE(result.err.find("error"), std::string::npos) << result.err;
  }
}

TEST(BuildDocument, WrongUsageIsRefusedWithTheReason) {
  const ScratchDirectory scratch;
  const std::string csv = scratch.write("a.csv", "k,v\nx,1\n");
  struct Case {
    std::vector<std::string> arguments;
    const char* reason;
  };
  const Case cases[] = {
      {{"-o", "a.qxv"}, "A manifest or --table, --chart or --text is missing."},
      {{"m.json", "--text", "a.md", "-o", "a.qxv"}, "A manifest and --text exclude each other."},
      {{"--text", "a.md", "-o", "a.pdf"}, "The document a.pdf must end with .qxv or .qxw."},
      {{"--text", "a.md"}, "--output is required"},
      {{"--rows", "k", "--table", csv, "-o", "a.qxv"},
       "--rows stands before the object that it is for."},
      {{"--text", "a.md", "--rows", "k", "-o", "a.qxv"}, "--rows is about tables"},
      {{"--table", csv, "--rows", "k", "-o", "a.qxv"}, "needs --value"},
      {{"--table", csv, "--value", "v", "-o", "a.qxv"}, "needs --rows, --columns or --layers"},
      {{"--table", csv, "--rows", "k,", "--value", "v", "-o", "a.qxv"},
       "--rows has an empty column name."},
      {{"--table", csv, "--rows", "k", "--value", "v", "--format", "X", "-o", "a.qxv"},
       "X is no display format"},
      {{"--table", csv, "--rows", "k", "--value", "v", "--statistic", "x", "-o", "a.qxv"},
       "x is no statistic"},
      {{"--table", csv, "--rows", "k", "--value", "v", "--separator", "x", "-o", "a.qxv"},
       "--separator cannot be \"x\". It is one of , ; | or the word tab."},
      {{"--table", csv, "--rows", "k", "--value", "v", "--decimal", "x", "-o", "a.qxv"},
       "--decimal cannot be \"x\".\n"},
      {{"--table", csv, "--rows", "k", "--value", "v", "--encoding", "", "-o", "a.qxv"},
       "--encoding needs the name of an encoding."},
      {{"--table", csv, "--rows", "k", "--value", "v", "--encoding", "x", "-o", "a.qxv"},
       "There is no encoding x."},
      {{"--table", csv, "--rows", "q", "--value", "v", "-o", "a.qxv"}, "--rows: "},
      {{"--table", "/nowhere.csv", "--rows", "q", "--value", "v", "-o", "a.qxv"},
       "No such file or directory"},
      {{"--table", csv, "--rows", "k", "--value", "v", "-o", "/nowhere/a.qxv"},
       "/nowhere/a.qxv cannot be written: "},
  };
  for (const Case& c : cases) {
    const ProgramResult result = build(c.arguments);
    EXPECT_EQ(result.status, 2) << c.reason;
    EXPECT_NE(result.err.find(c.reason), std::string::npos) << result.err;
  }
}

TEST(BuildDocument, FileThatAnotherProcessHoldsIsNotReplaced) {
  const ScratchDirectory scratch;
  const std::string text = scratch.write("intro.md", "# Hello");
  const std::string out = scratch.write("a.qxv", "held");
  const auto lock = FileLock::tryLock(out);
  ASSERT_TRUE(lock);
  const ProgramResult result = build({"--text", text, "-o", out});
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.err, HasSubstr("The file " + out + " is locked by another process."));
  EXPECT_EQ(scratch.read("a.qxv"), "held");
}

TEST(BuildDocument, FileThatGrowsBeyondTheUsersLimitIsAnError) {
  const ScratchDirectory scratch;
  const std::string text = scratch.write("intro.md", "# Hello");
  const std::string out = scratch.file("a.qxv");
  ProgramSetup setup;
  setup.prepare = [] {
    const rlimit limit{256, 256};
    setrlimit(RLIMIT_FSIZE, &limit);
  };
  const ProgramResult result = runProgram({"build", "--text", text, "-o", out}, setup);
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.err, HasSubstr("The new file could not be written: File too large."));
  EXPECT_EQ(scratch.entryCount(), 1U);
}

}  // namespace
}  // namespace vornwout
