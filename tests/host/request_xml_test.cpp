// The text of a modify document as XML.
#include "host/changes/request_xml.h"

#include <string>

#include <gtest/gtest.h>

#include "host/changes/change_notes.h"
#include "platform/text/display_width.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

template <typename Call>
std::string refusalOf(const Call& call) {
  try {
    call();
  } catch (const ChangeError& error) {
    return error.what();
  }
  return "nothing was refused";
}

TEST(RequestXml, TextsStayAsTheyAre) {
  pugi::xml_document document;
  parseRequest("<a b=\"R&D &amp; <x>\n\"><![CDATA[c]]></a>", document);
  EXPECT_STREQ(document.child("a").attribute("b").value(), "R&D &amp; <x>\n");
  EXPECT_STREQ(document.child("a").child_value(), "c");
}

TEST(RequestXml, RefusalShowsAsMuchOfAForeignTextAsThereIsRoomFor) {
  EXPECT_EQ(refusalOf([] { refuseAt("here: ", "no {} is there", "cat"); }),
            "here: no cat is there");
  EXPECT_EQ(refusalOf([] { refuseAt("here: ", "nothing is there"); }), "here: nothing is there");
  EXPECT_EQ(refusalOf([] { refuseAt("{} ", "{}", "{}"); }), "{} {}");
  const std::string wide = refusalOf([] {
    std::string text;
    for (int i = 0; i < 100; ++i) text += "表";
    refuseAt("here: ", "no {} is there", text);
  });
  EXPECT_EQ(displayWidth(wide), kReasonColumns - 1) << "half a character is none";
  EXPECT_TRUE(wide.ends_with("表… is there")) << wide;
}

TEST(RequestXml, BytesAreShownWhateverTheyAre) {
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  EXPECT_EQ(shownBytes("\xC3\xBC"), "ü");
  EXPECT_EQ(shownBytes("\xFC"), "ü");
}

}  // namespace
}  // namespace vornwout
