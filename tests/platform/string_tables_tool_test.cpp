// The tool that checks the sources of the string tables: each mistake, with its file and line.
#include <array>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include "platform/strings/text_bundle.h"
#include "tests/support/file_content.h"
#include "tests/support/scratch_directory.h"

namespace vornwout {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::HasSubstr;

using Files = std::map<std::string, std::string>;

constexpr const char* kLanguages = "en complete\nde complete\n";
constexpr const char* kOneKey = "key a\ntext x\n";

struct ToolRun {
  int status = 0;
  std::string output;
};

/// Runs the tool and keeps what it says.
ToolRun runTool(const std::string& arguments) {
  const std::string command = VORN_BUILD_DIR "/platform/string_tables " + arguments + " 2>&1";
  std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  std::string output;
  std::array<char, 4096> buffer{};
  while (std::fgets(buffer.data(), buffer.size(), pipe.get()) != nullptr) output += buffer.data();
  const int status = pclose(pipe.release());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
}

/// A folder of sources, and one for what is made of them.
class Sources {
 public:
  explicit Sources(const Files& files) {
    fs::create_directories(scratch_.file("S"));
    for (const auto& [name, content] : files) {
      fs::create_directories(fs::path(scratch_.file("S/" + name)).parent_path());
      scratch_.write("S/" + name, content);
    }
  }

  ToolRun check() const {
    ToolRun run = runTool(scratch_.file("S") + " " + scratch_.file("T"));
    const std::string folder = scratch_.path() + "/";
    for (std::size_t at = run.output.find(folder); at != std::string::npos;
         at = run.output.find(folder)) {
      run.output.erase(at, folder.size());
    }
    return run;
  }
  bool hasMade(const std::string& name) const { return fs::exists(scratch_.file("T/" + name)); }
  std::string made(const std::string& name) const { return scratch_.read("T/" + name); }
  std::string path(const std::string& name) const { return scratch_.file(name); }

 private:
  ScratchDirectory scratch_;
};

TEST(StringTablesTool, WritesWhatIcusCompilerReads) {
  const Sources sources({{"languages.txt", "# Two.\n\nen complete\nde partial\n"},
                         {"en/mod_1.txt",
                          "# A table.\nkey b ^1\ntext say \"^1\" \\\\ \\n\\s\n"
                          "help h\n\nkey a\ntext\n"},
                         {"de/mod_1.txt", "key a\ntext \xC3\xA4\n"}});
  const ToolRun run = sources.check();
  EXPECT_EQ(run.output, "");
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(sources.made("en/mod_1.txt"),
              HasSubstr("\nmod_1:table(nofallback) {\n"
                        "  Keys:array {\n    \"b ^1\",\n    \"a\",\n  }\n"
                        "  Texts:array {\n    \"say \\\"^1\\\" \\\\ \\n \",\n    \"\",\n  }\n"
                        "  Helps:array {\n    \"h\",\n    \"\",\n  }\n}\n"));
  EXPECT_THAT(sources.made("de/mod_1.txt"), HasSubstr("    \"\xC3\xA4\",\n"));
}

TEST(StringTablesTool, WhatItWritesIsCompiledToTheSameEntries) {
  const Sources sources(
      {{"languages.txt", "en complete\n"},
       {"en/m.txt",
        "key it's \"^1\" {x} // y\ntext \\\\u0041 \\\\n \\n\\s\nhelp \xF0\x9D\x84\x9E\n"
        "key a\ntext\n"}});
  ASSERT_EQ(sources.check().status, 0);
  const std::string command = "genrb --quiet --formatVersion 1 --encoding UTF-8 --destdir " +
                              sources.path("T/en") + " " + sources.path("T/en/m.txt");
  ASSERT_EQ(std::system(command.c_str()), 0);
  const auto entries = readTextBundle(fileContent(sources.path("T/en/m.res")));
  ASSERT_TRUE(entries);
  EXPECT_THAT(*entries, ElementsAre(keyValueGloss{"it's \"^1\" {x} // y", "\\u0041 \\n \n ",
                                                  "\xF0\x9D\x84\x9E"},
                                    keyValueGloss{"a", "", ""}));
}

struct Mistake {
  const char* name;
  Files files;
  const char* output;
};

TEST(StringTablesTool, TellsEachMistakeWithItsFileAndLine) {
  const Mistake mistakes[] = {
      {"a key that is missing in a complete language",
       {{"languages.txt", kLanguages},
        {"en/m.txt", "key a\ntext x\n\nkey b\ntext y\n"},
        {"de/m.txt", kOneKey}},
       "S/de/m.txt:1: error: The key \"b\" of S/en/m.txt:4 is missing.\n"},
      {"a table that is missing in a complete language",
       {{"languages.txt", kLanguages},
        {"en/m.txt", kOneKey},
        {"en/n.txt", kOneKey},
        {"de/m.txt", kOneKey}},
       "S/languages.txt:2: error: The language de is complete, but has no n.txt.\n"},
      {"a key that English has not",
       {{"languages.txt", kLanguages},
        {"en/m.txt", kOneKey},
        {"de/m.txt", "key a\ntext x\nkey c\ntext x\n"}},
       "S/de/m.txt:3: error: S/en/m.txt has no key \"c\".\n"},
      {"a table that English has not",
       {{"languages.txt", kLanguages},
        {"en/m.txt", kOneKey},
        {"de/m.txt", kOneKey},
        {"de/n.txt", kOneKey}},
       "S/de/n.txt:1: error: There is no such table in English.\n"},
      {"a placeholder that is missing",
       {{"languages.txt", kLanguages},
        {"en/m.txt", "key a\ntext ^2 of ^1\n"},
        {"de/m.txt", "key a\ntext ^1 ^1\n"}},
       "S/de/m.txt:2: error: The placeholders are ^1, in S/en/m.txt:2 they are ^1^2.\n"},
      {"a placeholder too many, in a help text",
       {{"languages.txt", kLanguages},
        {"en/m.txt", "key a\ntext x\nhelp h ^ ^0\n"},
        {"de/m.txt", "key a\ntext x\nhelp h ^9\n"}},
       "S/de/m.txt:3: error: The placeholders are ^9, in S/en/m.txt:3 they are none.\n"},
      {"a key twice",
       {{"languages.txt", "en complete\n"},
        {"en/m.txt", "key a\ntext x\nkey b\ntext y\nkey a\ntext z\nhelp z\n"}},
       "S/en/m.txt:5: error: The key \"a\" is there already, in line 1.\n"},
      {"bytes that are no UTF-8",
       {{"languages.txt", "en complete\n"}, {"en/m.txt", "key a\ntext x\nhelp \xE4\n"}},
       "S/en/m.txt:3: error: The line is no valid UTF-8.\n"},
      {"a control character",
       {{"languages.txt", "en complete\n"}, {"en/m.txt", "key a\ntext x\thelp\n"}},
       "S/en/m.txt:1: error: The key \"a\" has no text.\n"
       "S/en/m.txt:2: error: The line holds a control character; a line end in a text is written "
       "\\n.\n"},
      {"a carriage return",
       {{"languages.txt", "en complete\n"}, {"en/m.txt", "key a\ntext x\n# y\r\n"}},
       "S/en/m.txt:3: error: The line holds a control character; a line end in a text is written "
       "\\n.\n"},
      {"a blank at the end",
       {{"languages.txt", "en complete\n"}, {"en/m.txt", "key a\ntext x\nhelp x \n"}},
       "S/en/m.txt:3: error: The line ends with a blank; one that is meant is written \\s.\n"},
      {"an unknown escape",
       {{"languages.txt", "en complete\n"}, {"en/m.txt", "key a\ntext x\nhelp \\t\n"}},
       "S/en/m.txt:3: error: A backslash stands before n, s or a backslash.\n"},
      {"a backslash at the end",
       {{"languages.txt", "en complete\n"}, {"en/m.txt", "key a\ntext x\nhelp \\\n"}},
       "S/en/m.txt:3: error: A backslash stands before n, s or a backslash.\n"},
      {"a word of no meaning",
       {{"languages.txt", "en complete\n"}, {"en/m.txt", "key a\ntext x\ngloss y\n"}},
       "S/en/m.txt:3: error: A line starts with key, text, help or #, not with \"gloss\".\n"},
      {"a byte order mark",
       {{"languages.txt", "en complete\n"}, {"en/m.txt", "\xEF\xBB\xBFkey a\n"}},
       "S/en/m.txt:1: error: A line starts with key, text, help or #, not with \"\xEF\xBB\xBFkey\""
       ".\n"},
      {"an empty key",
       {{"languages.txt", "en complete\n"}, {"en/m.txt", "key\ntext x\n"}},
       "S/en/m.txt:1: error: The key is empty.\n"},
      {"a key without a text",
       {{"languages.txt", "en complete\n"}, {"en/m.txt", "key a\nhelp x\nkey b\n"}},
       "S/en/m.txt:1: error: The key \"a\" has no text.\n"
       "S/en/m.txt:3: error: The key \"b\" has no text.\n"},
      {"two texts",
       {{"languages.txt", "en complete\n"}, {"en/m.txt", "key a\ntext x\ntext y\nhelp\nhelp\n"}},
       "S/en/m.txt:3: error: The key \"a\" has another text already.\n"
       "S/en/m.txt:5: error: The key \"a\" has another help already.\n"},
      {"a text without a key",
       {{"languages.txt", "en complete\n"}, {"en/m.txt", "text x\n"}},
       "S/en/m.txt:1: error: There is no key before this text.\n"},
      {"no list of languages",
       {},
       "S/languages.txt:1: error: The file cannot be read.\n"
       "S/languages.txt:1: error: English, en, which the others are compared with, is missing.\n"},
      {"languages that are none, twice, and in no state",
       {{"languages.txt", "en complete\nnl complete\nen partial\nde\n"}, {"en/m.txt", kOneKey}},
       "S/languages.txt:2: error: There is no language nl.\n"
       "S/languages.txt:3: error: The language en is there already, in line 1.\n"
       "S/languages.txt:4: error: A language is complete or partial.\n"},
      {"a language without a folder",
       {{"languages.txt", "en complete\nde partial\n"}, {"en/m.txt", kOneKey}},
       "S/languages.txt:2: error: There is no folder S/de.\n"},
      {"a folder that is not listed",
       {{"languages.txt", "en complete\n"}, {"en/m.txt", kOneKey}, {"de/m.txt", kOneKey}},
       "S/languages.txt:1: error: de is not listed.\n"},
      {"a file that is no table",
       {{"languages.txt", "en complete\n"}, {"en/M.txt", kOneKey}},
       "S/en/M.txt:1: error: A string table is called MODULE.txt, MODULE in small letters, digits "
       "and _.\n"},
  };
  for (const Mistake& mistake : mistakes) {
    const Sources sources(mistake.files);
    const ToolRun run = sources.check();
    EXPECT_EQ(run.status, 1) << mistake.name;
    EXPECT_EQ(run.output, mistake.output) << mistake.name;
    EXPECT_FALSE(sources.hasMade("en/m.txt")) << mistake.name;
  }
}

TEST(StringTablesTool, APartialLanguageMayLackKeysAndTablesAndHelpTexts) {
  const Sources sources({{"languages.txt", "en complete\nde partial\nfr complete\n"},
                         {"en/m.txt", "key a\ntext ^1 ^2\nhelp ^1\nkey b\ntext y\n"},
                         {"en/n.txt", kOneKey},
                         {"de/m.txt", "key a\ntext ^2 ^1\n"},
                         {"fr/m.txt", "key b\ntext y\nkey a\ntext ^2, ^1\n"},
                         {"fr/n.txt", kOneKey}});
  const ToolRun run = sources.check();
  EXPECT_EQ(run.output, "");
  EXPECT_EQ(run.status, 0);
}

TEST(StringTablesTool, TheTablesOfThisTreeAreInOrder) {
  EXPECT_EQ(runTool(VORN_SOURCE_DIR "/strings").output, "");
}

TEST(StringTablesTool, SaysHowItIsCalled) {
  const ToolRun run = runTool("");
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.output, "usage: string_tables SOURCE [TARGET]\n");
}

TEST(StringTablesTool, SaysWhatItCannotWrite) {
  const Sources sources({{"languages.txt", "en complete\n"}, {"en/m.txt", kOneKey}});
  const ToolRun run = runTool(sources.path("S") + " " + sources.path("S/languages.txt"));
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.output, HasSubstr("/en/m.txt: error: The file cannot be written.\n"));
}

}  // namespace
}  // namespace vornwout
