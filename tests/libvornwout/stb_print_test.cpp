// STB PRINT: which tables it makes of which bundles.
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "libvornwout/stbprint/bundle_names.h"
#include "platform/message/parser_message.h"
#include "platform/parser/grammar_capture.h"
#include "platform/strings/language.h"
#include "platform/text/encoding.h"
#include "tests/support/command_run.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/scratch_directory.h"
#include "tests/support/text_bundle_bytes.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

/// The labels of a dimension's categories.
std::vector<std::string> labelsOf(const PivotDimension& dimension) {
  std::vector<std::string> labels;
  for (const PivotCategory& category : dimension.categories) {
    labels.push_back(renderText(category.label));
  }
  return labels;
}

/// "key, language: text" for each cell of a table of keys and languages.
std::vector<std::string> cellsOf(const PivotTable& table) {
  std::vector<std::string> cells;
  for (const PivotCell& cell : table.cells) {
    std::string text;
    for (std::size_t i = 0; i < table.dimensions.size(); ++i) {
      const PivotDimension& dimension = table.dimensions[i];
      const int node = categoryPath(dimension, cell.at[i]).at(0);
      if (i > 0) text += ", ";
      text += renderText(dimension.categories[static_cast<std::size_t>(node)].label);
    }
    cells.push_back(text + ": " + renderText(cell.value));
  }
  return cells;
}

std::vector<std::string> twelveLanguages() { return {kLanguages.begin(), kLanguages.end()}; }

/// An installation whose string tables are a test's own.
class StbPrint : public testing::Test {
 protected:
  void write(const std::string& language, const std::string& name, const std::string& bytes) {
    std::filesystem::create_directories(scratch_.file("lang/" + language));
    scratch_.write("lang/" + language + "/" + name, bytes);
  }
  void write(const std::string& language, const std::string& name,
             const std::vector<keyValueGloss>& entries) {
    write(language, name, textBundleBytes(entries));
  }

  CommandRun print(const std::string& keywords) {
    return {stbprint_, "STB PRINT " + keywords + ".", nullptr};
  }

  ScratchDirectory scratch_;
  ScopedEnvironment home_{"VORNWOUT_HOME", scratch_.path()};
};

TEST(StbPrintGrammar, IsOneSubcommandOfTwoRawKeywords) {
  const CommandDescriptor grammar = grammarOf(stbprint_);
  EXPECT_EQ(grammar.name(), "STB PRINT");
  EXPECT_EQ(grammar.title(), "Stb Print");
  EXPECT_THAT(grammar.groups(), IsEmpty());
  ASSERT_EQ(grammar.subcommands().size(), 1U);
  const SubComDescriptor& main = grammar.subcommands()[0];
  EXPECT_EQ(main.name(), "");
  EXPECT_EQ(main.spec(), 1);
  EXPECT_FALSE(main.required());
  EXPECT_FALSE(main.repeatable());
  ASSERT_EQ(main.params().size(), 2U);
  EXPECT_EQ(main.params()[0].name(), "PROCEDURE");
  EXPECT_EQ(main.params()[1].name(), "LANGUAGE");
  for (const ParamDescriptor& param : main.params()) {
    EXPECT_EQ(param.spec(), 2);
    EXPECT_FALSE(param.required());
    EXPECT_TRUE(param.standard());
    EXPECT_EQ(param.brackets(), 0);
  }
}

TEST(StbPrintNames, AreNinetyFourPlainCodesEachOnce) {
  EXPECT_EQ(std::set(kBundleNames.begin(), kBundleNames.end()).size(), 94U);
  EXPECT_THAT(kBundleNames, Each(testing::Truly([](std::string_view name) {
                return name.size() <= 12 && name.ends_with(".qbb") &&
                       name.find_first_not_of("abcdefghijklmnopqrstuvwxyz.") == name.npos;
              })));
  EXPECT_EQ(kBundleNames[2], "output.qbb");
}

TEST_F(StbPrint, WithoutKeywordsMakesTwoTablesPerBundleOverTwelveLanguages) {
  const CommandRun run = print("");
  ASSERT_EQ(run.tables.size(), 188U);
  for (std::size_t i = 0; i < kBundleNames.size(); ++i) {
    const std::string name(kBundleNames[i]);
    EXPECT_EQ(renderText(run.tables[2 * i]->title), name);
    EXPECT_EQ(renderText(run.tables[2 * i + 1]->title), name + " Help");
  }
  for (const auto& table : run.tables) {
    EXPECT_EQ(labelsOf(table->dimensions.at(1)), twelveLanguages());
    EXPECT_THAT(table->cells, IsEmpty());
  }
}

TEST(StbPrintLanguages, StandInTheirOrder) {
  EXPECT_THAT(twelveLanguages(), ElementsAre("de", "en", "es", "fr", "it", "ja", "ko", "pl",
                                             "pt_BR", "ru", "zh_CN", "zh_TW"));
}

TEST_F(StbPrint, WithAProcedureMakesItsTwoTablesOverTwelveLanguages) {
  write("de", "mine", {{"a", "eins", "Hilfe"}, {"b", "zwei", ""}});
  write("zh_TW", "mine", {{"b", "\xE4\xBA\x8C", ""}, {"c", "\xE4\xB8\x89", ""}});
  write("nl", "mine", {{"a", "een", ""}});
  const CommandRun run = print("PROCEDURE='mine'");
  ASSERT_EQ(run.tables.size(), 2U);
  EXPECT_EQ(labelsOf(run.tables[0]->dimensions.at(1)), twelveLanguages());
  EXPECT_EQ(labelsOf(run.tables[1]->dimensions.at(1)), twelveLanguages());
  EXPECT_THAT(labelsOf(run.tables[0]->dimensions.at(0)), ElementsAre("a", "b", "c"));
  EXPECT_THAT(cellsOf(*run.tables[0]),
              testing::UnorderedElementsAre("a, de: eins", "b, de: zwei", "b, zh_TW: \xE4\xBA\x8C",
                                            "c, zh_TW: \xE4\xB8\x89"));
  EXPECT_THAT(cellsOf(*run.tables[1]), ElementsAre("a, de: Hilfe"));
}

TEST_F(StbPrint, WithALanguageMakesAllTablesOfThatLanguage) {
  write("xx", "output.qbb", {{"a", "b", "c"}});
  const CommandRun run = print("LANGUAGE=xx");
  ASSERT_EQ(run.tables.size(), 188U);
  for (const auto& table : run.tables) {
    EXPECT_THAT(labelsOf(table->dimensions.at(1)), ElementsAre("xx"));
  }
  EXPECT_THAT(cellsOf(*run.tables[4]), ElementsAre("a, xx: b"));
  EXPECT_THAT(cellsOf(*run.tables[5]), ElementsAre("a, xx: c"));
}

TEST_F(StbPrint, WithBothMakesTwoTablesOfOneLanguage) {
  write("de", "mine", {{"z", "eins", "Hilfe"}, {"a", "zwei", "mehr"}});
  const CommandRun run = print("LANGUAGE=\"de\" PROCEDURE=mine");
  ASSERT_EQ(run.tables.size(), 2U);
  EXPECT_THAT(cellsOf(*run.tables[0]), ElementsAre("z, de: eins", "a, de: zwei"));
  EXPECT_THAT(cellsOf(*run.tables[1]), ElementsAre("z, de: Hilfe", "a, de: mehr"));
}

TEST_F(StbPrint, AnEmptyTextShowsItsKeyAndAnEmptyHelpTextNothing) {
  write("de", "mine", {{"no text", "", "help"}, {"no help", "text", ""}, {"neither", "", ""}});
  const CommandRun run = print("PROCEDURE='mine' LANGUAGE='de'");
  ASSERT_EQ(run.tables.size(), 2U);
  EXPECT_THAT(cellsOf(*run.tables[0]),
              ElementsAre("no text, de: no text", "no help, de: text", "neither, de: neither"));
  EXPECT_THAT(cellsOf(*run.tables[1]), ElementsAre("no text, de: help"));
  EXPECT_THAT(labelsOf(run.tables[1]->dimensions.at(0)), ElementsAre("no text"));
}

TEST_F(StbPrint, BuildsItsTablesAsTheInterfaceHasThem) {
  write("de", "mine", {{"key", "text", "help"}});
  const CommandRun run = print("PROCEDURE='mine' LANGUAGE='de'");
  EXPECT_THAT(run.events,
              ElementsAre("open Stb Print 2", "table mine", "table mine Help", "close Stb Print"));
  ASSERT_EQ(run.tables.size(), 2U);
  for (const auto& table : run.tables) {
    EXPECT_FALSE(table->title.translatable);
    EXPECT_EQ(table->subtype, table->title);
    EXPECT_EQ(table->flag, true);
    EXPECT_FALSE(table->titleHidden);
    EXPECT_EQ(table->maxDataColumnWidth, std::nullopt);
    ASSERT_EQ(table->dimensions.size(), 2U);
    const PivotDimension& keys = table->dimensions[0];
    EXPECT_EQ(keys.label.text, "Key");
    EXPECT_EQ(keys.position, (PivotPosition{0, 1, false, false}));
    const PivotDimension& languages = table->dimensions[1];
    EXPECT_EQ(languages.label.text, "Language");
    EXPECT_EQ(languages.position, (PivotPosition{1, 1, false, false}));
    for (const PivotDimension& dimension : table->dimensions) {
      EXPECT_TRUE(dimension.label.translatable);
      EXPECT_EQ(dimension.sort, 2);
      ASSERT_EQ(dimension.categories.size(), 1U);
      EXPECT_FALSE(dimension.categories[0].label.translatable);
    }
    ASSERT_EQ(table->cells.size(), 1U);
    EXPECT_FALSE(table->cells[0].value.translatable);
  }
  EXPECT_EQ(run.tables[0]->minDataColumnWidth, 150);
  EXPECT_EQ(run.tables[1]->minDataColumnWidth, std::nullopt);
}

TEST_F(StbPrint, WhatCannotBeReadHasColumnsWithoutRows) {
  write("de", "cut", textBundleBytes({{"a", "b", "c"}}).substr(0, 60));
  std::filesystem::create_directories(scratch_.file("lang/de/folder"));
  for (const char* name : {"cut", "folder", "missing", "..", "/etc/passwd"}) {
    const CommandRun run = print(std::string("PROCEDURE='") + name + "' LANGUAGE='de'");
    ASSERT_EQ(run.tables.size(), 2U) << name;
    for (const auto& table : run.tables) {
      ASSERT_EQ(table->dimensions.size(), 2U) << name;
      EXPECT_THAT(table->dimensions[0].categories, IsEmpty()) << name;
      EXPECT_THAT(labelsOf(table->dimensions[1]), ElementsAre("de")) << name;
      EXPECT_THAT(table->cells, IsEmpty()) << name;
    }
    EXPECT_THAT(run.outputMessages, IsEmpty()) << name;
    EXPECT_THAT(run.parserMessages, IsEmpty()) << name;
  }
}

TEST_F(StbPrint, ABundleThatIsMissingInOneLanguageLeavesTheOthers) {
  write("ru", "mine", {{"a", "b", ""}});
  write("it", "mine", std::string("no bundle"));
  const CommandRun run = print("PROCEDURE='mine'");
  ASSERT_EQ(run.tables.size(), 2U);
  EXPECT_THAT(cellsOf(*run.tables[0]), ElementsAre("a, ru: b"));
}

TEST_F(StbPrint, BundlesStandBesideTheCurrentLanguages) {
  write("de", "mine", {{"a", "b", ""}});
  const ScopedLanguage language("pt_BR");
  const ScopedEnvironment home("VORNWOUT_HOME", scratch_.path() + "//");
  const CommandRun run = print("PROCEDURE='mine' LANGUAGE='de'");
  ASSERT_EQ(run.tables.size(), 2U);
  EXPECT_THAT(cellsOf(*run.tables[0]), ElementsAre("a, de: b"));
}

TEST_F(StbPrint, ValuesAreTakenAsTheyAreWritten) {
  write("de", "mine", {{"a", "b", ""}});
  // Not folded, not cut, no extension added; what is no one text counts as none.
  EXPECT_EQ(renderText(print("PROCEDURE='Mine ' LANGUAGE='DE'").tables.at(0)->title), "Mine ");
  EXPECT_THAT(print("PROCEDURE='MINE' LANGUAGE='de'").tables.at(0)->cells, IsEmpty());
  EXPECT_EQ(print("PROCEDURE='' LANGUAGE='de'").tables.size(), 188U);
  EXPECT_EQ(print("PROCEDURE LANGUAGE=de").tables.size(), 188U);
  EXPECT_EQ(labelsOf(print("PROCEDURE=mine LANGUAGE=''").tables.at(0)->dimensions.at(1)),
            twelveLanguages());
}

TEST_F(StbPrint, ASyntaxErrorIsTheParsersAndNothingIsMade) {
  for (const char* text : {"/PROCEDURE='a'", "PROCEDUR='a'", "LANGUAGE='de", "NAME='a'",
                           "PROCEDURE='a' PROCEDURE='b'", "/TEXT LANGUAGE='de'"}) {
    const CommandRun run(stbprint_, std::string("STB PRINT ") + text + ".", nullptr);
    EXPECT_FALSE(run.parserMessages.empty()) << text;
    EXPECT_THAT(run.tables, IsEmpty()) << text;
    EXPECT_THAT(run.outputMessages, IsEmpty()) << text;
    EXPECT_THAT(run.events, testing::Not(testing::Contains("flush"))) << text;
  }
}

/// Looks at each table whether the command has a ParserMessage.
class MessageWatch : public CommandRun {
 public:
  void table(const std::shared_ptr<const PivotTable>& finished) override {
    hadMessages = hadMessages || ParserMessage::current() != nullptr;
    CommandRun::table(finished);
  }
  bool hadMessages = false;
};

TEST_F(StbPrint, AsksNoHostAndMakesNoParserMessage) {
  FakeHost host;
  bool asked = false;
  host.whenControllerAsked = [&] { asked = true; };
  MessageWatch watch;
  watch.run(stbprint_, "STB PRINT PROCEDURE='a'.", &host);
  EXPECT_EQ(watch.tables.size(), 2U);
  EXPECT_FALSE(asked);
  EXPECT_THAT(host.requests, IsEmpty());
  EXPECT_FALSE(watch.hadMessages);
}

TEST_F(StbPrint, TextsAndNamesAreOfTheCurrentEncoding) {
  write("de", "m\xC3\xA4rz", {{"k\xC3\xB6nig", "M\xC3\xA4rz", "\xC3\xBC"}});
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  const CommandRun run = print("PROCEDURE='m\xE4rz' LANGUAGE=de");
  ASSERT_EQ(run.tables.size(), 2U);
  EXPECT_EQ(renderText(run.tables[1]->title), "m\xC3\xA4rz Help");
  EXPECT_THAT(cellsOf(*run.tables[0]), ElementsAre("k\xC3\xB6nig, de: M\xC3\xA4rz"));
  EXPECT_THAT(cellsOf(*run.tables[1]), ElementsAre("k\xC3\xB6nig, de: \xC3\xBC"));
}

TEST(StbPrintOfThisBuild, ShowsTheMonthsOfTwoLanguages) {
  const ScopedEnvironment home("VORNWOUT_HOME", std::nullopt);
  const CommandRun run(stbprint_, "STB PRINT PROCEDURE='output.qbb'.", nullptr);
  ASSERT_EQ(run.tables.size(), 2U);
  const std::vector<std::string> cells = cellsOf(*run.tables[0]);
  EXPECT_THAT(cells, testing::Contains("TFOMarch, de: M\xC3\xA4rz"));
  EXPECT_THAT(cells, testing::Contains("TFOMarch, en: March"));
  EXPECT_THAT(cells, testing::Contains("E60801, en: Objects"));
}

}  // namespace
}  // namespace vornwout
