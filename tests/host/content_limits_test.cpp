#include "host/store/content_limits.h"

#include <string>

#include <gtest/gtest.h>

#include "host/store/content_reader.h"
#include "host/store/store_error.h"
#include "host/store/xml_reader.h"

namespace vornwout {
namespace {

std::string repeated(const std::string& text, std::size_t count) {
  std::string all;
  all.reserve(text.size() * count);
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

std::string refusal(std::string bytes) {
  pugi::xml_document xml;
  parseXml(bytes, xml);
  try {
    readContent(xml.document_element());
    return {};
  } catch (const StoreError& error) {
    return error.what();
  }
}

TEST(ContentLimits, SmallThingsAreCountedWhereverTheyStand) {
  EXPECT_EQ(textElementCount("<text><paragraph level=\"1\"><run>a</run><run/></paragraph></text>"),
            3u);
  EXPECT_EQ(textElementCount("<notes><note><label kind=\"composite\"><template/><argument/><item>"
                             "</item></label></note></notes>"),
            3u);
  EXPECT_EQ(textElementCount("<table><cell at=\"0\"><content/><footnote>x</footnote></cell>"
                             "<runs/><notes></table>"),
            1u);
}

TEST(ContentLimits, MoreOfThemThanMemoryShouldHoldAreRefused) {
  constexpr std::size_t kMost = 1'000'000;
  EXPECT_EQ(refusal("<text>" + repeated("<paragraph/>", kMost) + "</text>"), "");
  const std::pair<std::string, std::string> cases[] = {
      {"text", repeated("<paragraph/>", kMost + 1)},
      {"text", "<paragraph>" + repeated("<run/>", kMost) + "</paragraph>"},
      {"table", repeated("<footnote/>", kMost + 1)},
      {"table", "<title kind='composite'>" + repeated("<argument/>", kMost + 1) + "</title>"},
      {"table", "<title kind='composite'>" + repeated("<item/>", kMost + 1) + "</title>"},
      {"notes", repeated("<note/>", kMost + 1)},
  };
  for (const auto& [element, body] : cases) {
    EXPECT_EQ(refusal("<" + element + ">" + body + "</" + element + ">"),
              element + ": it holds more than 1,000,000 runs, footnotes and the like");
  }
}

}  // namespace
}  // namespace vornwout
