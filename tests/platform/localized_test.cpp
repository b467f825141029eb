#include "platform/strings/localized.h"

#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/message/parser_message.h"
#include "platform/pivot/bp_cell_text.h"
#include "platform/pivot/localized_content.h"
#include "platform/strings/language.h"
#include "platform/strings/language_texts.h"
#include "platform/text/encoding.h"
#include "tests/support/recording_sink.h"
#include "tests/support/scratch_directory.h"
#include "tests/support/text_bundle_bytes.h"

namespace vornwout {
namespace {

using testing::ElementsAre;

TEST(Localized, EnglishIsTheOriginal) {
  const std::string original = "The value must be ^1.";
  EXPECT_EQ(localizedText(original).data(), original.data()) << "nothing is looked up";
  EXPECT_EQ(localized(original, "5"), "The value must be 5.");
}

TEST(Localized, EveryLanguageHasItsOwnText) {
  for (const std::string_view language : kLanguages) {
    const ScopedLanguage scope(language);
    const std::string_view text = localizedText("The value must be ^1.");
    EXPECT_EQ(text == "The value must be ^1.", language == kOriginalLanguage) << language;
    EXPECT_NE(text.find("^1"), std::string_view::npos) << language;
  }
}

TEST(Localized, ArgumentsAreFilledInAndNotLookedAtAgain) {
  EXPECT_EQ(localized("^2 of ^1, ^3 and ^4", "^2", 7, 'x', 2.5), "7 of ^2, x and 2.5");
  const ScopedLanguage german("de");
  EXPECT_EQ(localized("There is no text like this: ^1.", "a"), "There is no text like this: a.");
  EXPECT_EQ(localizedText(""), "");
}

class LanguageTextsTest : public testing::Test {
 protected:
  void write(const std::string& table, const std::vector<keyValueGloss>& entries) {
    folder_.write(table, TextBundleBytes(entries).bytes());
  }

  ScratchDirectory folder_;
  LanguageTexts texts_{folder_.path() + "/"};
};

TEST_F(LanguageTextsTest, TablesAreReadUntilTheTextIsFound) {
  write("output.qbb", {{"Name", "Nom", ""}});
  EXPECT_EQ(texts_.find("Name"), "Nom");
  // Written after the first lookup: had it been read with the others, it would not be found.
  write("parser.qbb", {{"Value", "Valeur", ""}, {"Name", "Autre", ""}});
  EXPECT_EQ(texts_.find("Value"), "Valeur");
  EXPECT_EQ(texts_.find("Name"), "Nom") << "the first table has the say";
}

TEST_F(LanguageTextsTest, AKeyWithoutATextIsItsOwn) {
  write("host.qbb", {{"Open", "", ""}});
  EXPECT_EQ(texts_.find("Open"), "Open");
}

TEST_F(LanguageTextsTest, WhatIsMissingOrDamagedComesAsTheOriginal) {
  folder_.write("output.qbb", "no bundle");
  write("program.qbb", {{"Help", "Aide", ""}});
  EXPECT_EQ(texts_.find("Help"), "Aide");
  EXPECT_EQ(texts_.find("Nothing"), "Nothing");
}

TEST_F(LanguageTextsTest, ManyThreadsMayAsk) {
  write("output.qbb", {{"Name", "Nom", ""}});
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < 1000; ++round) EXPECT_EQ(texts_.find("Name"), "Nom");
    });
  }
  for (std::thread& thread : threads) thread.join();
}

TEST(LocalizedContent, TheSystemsTextsAloneAreLocalized) {
  const ScopedLanguage german("de");
  BpComposite message("Output name ^1 is too long.", true);
  message.Add(BpString("Name", false));
  message.Finish();
  EXPECT_EQ(renderText(localizedContent(message.data())),
            "Der Name des Ausgabedokuments ist zu lang: Name.");
  EXPECT_EQ(renderText(localizedContent(BpString("Name", true).data())), "Name");
  EXPECT_EQ(renderText(localizedContent(BpString("Language", true).data())), "Sprache");
  EXPECT_EQ(renderText(localizedContent(BpString("Language", false).data())), "Language");
  EXPECT_EQ(localizedContent(BpString("Language", true).data()).translatable, true);
}

TEST(LocalizedContent, ATableKeepsItsSubtypeAndTheUsersTexts) {
  auto table = std::make_shared<PivotTable>();
  table->title = BpString("Export Summary", true).data();
  table->subtype = BpString("Export Summary", true).data();
  table->caption = BpString("Contents", true).data();
  table->footnotes = {BpString("Active output document", true).data()};
  PivotDimension& dimension = table->dimensions.emplace_back();
  dimension.label = BpString("Key", true).data();
  dimension.categories.emplace_back().label = BpString("Language", false).data();
  dimension.categories.emplace_back().label = BpString("Language", true).data();
  PivotCell& cell = table->cells.emplace_back();
  cell.value = BpString("(unnamed)", true).data();
  cell.notes = {BpString("Format", true).data()};
  EXPECT_EQ(localizedTable(table), table) << "the same one in English";

  const ScopedLanguage german("de");
  const auto localizedOne = localizedTable(table);
  EXPECT_EQ(table->title.text, "Export Summary") << "a trace still sees the original";
  EXPECT_NE(localizedOne->title.text, "Export Summary");
  EXPECT_EQ(localizedOne->subtype.text, "Export Summary");
  EXPECT_NE(localizedOne->caption.text, "Contents");
  EXPECT_NE(localizedOne->footnotes.front().text, "Active output document");
  EXPECT_NE(localizedOne->dimensions.front().label.text, "Key");
  EXPECT_EQ(localizedOne->dimensions.front().categories[0].label.text, "Language");
  EXPECT_EQ(localizedOne->dimensions.front().categories[1].label.text, "Sprache");
  EXPECT_NE(localizedOne->cells.front().value.text, "(unnamed)");
}

TEST(LocalizedMessages, AreShownInTheLanguageAndKeepTheirTemplate) {
  const ScopedLanguage german("de");
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  RecordingSink sink;
  const ParserMessage messages;
  messages.ParenRequired("K\xD6");
  messages.GenericError("File ^1 has no access...", "x");
  EXPECT_EQ(sink.parserMessages[0].operation, "ParenRequired");
  EXPECT_THAT(sink.parserMessages[0].arguments, ElementsAre("KÖ"));
  EXPECT_NE(sink.parserMessages[0].text, "KÖ needs its values in parentheses.");
  EXPECT_NE(sink.parserMessages[0].text.find("KÖ"), std::string::npos);
  EXPECT_NE(sink.parserMessages[0].remedy, "Put the values between ( and ).");
  EXPECT_EQ(sink.parserMessages[1].messageTemplate, "File ^1 has no access...");
  EXPECT_NE(sink.parserMessages[1].text, "File x has no access...");
}

}  // namespace
}  // namespace vornwout
