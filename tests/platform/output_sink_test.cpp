// What sinks are told of messages: whole, and short enough for a person to read.
#include "platform/adapter/output_sink.h"

#include <gtest/gtest.h>

namespace vornwout {
namespace {

CellText stringCell(std::string text) {
  CellText cell;
  cell.text = std::move(text);
  return cell;
}

TEST(BriefText, OfAnOutputMessageShortensItsArgumentsAndNothingElse) {
  const std::string longText(200, 'a');
  const std::string shortText =
      std::string(28, 'a') + " … 144 characters … " + std::string(28, 'a');
  OutputMessageRecord record;
  record.message = stringCell(longText + " ^1 ^2:");
  record.message.kind = CellText::Kind::kComposite;
  record.message.arguments = {stringCell(longText), stringCell("b")};
  record.message.hasSublist = true;
  record.message.sublist = {stringCell(longText)};
  EXPECT_EQ(record.shownText(), longText + " " + longText + " b: " + longText);
  EXPECT_EQ(record.briefText(), longText + " " + shortText + " b: " + shortText);
}

TEST(BriefText, OfAnEmptyOutputMessageSaysThatThereIsNoReason) {
  EXPECT_EQ(OutputMessageRecord().briefText(), "The host refused the command and gave no reason.");
}

TEST(BriefText, OfAParserMessageIsItsTextUnlessThereIsAShorterOne) {
  ParserMessageRecord record;
  record.text = "whole";
  EXPECT_EQ(record.briefText(), "whole");
  record.shortened = "short";
  EXPECT_EQ(record.briefText(), "short");
}

}  // namespace
}  // namespace vornwout
