// The text of a modify document as XML.
#include "host/changes/request_xml.h"

#include <string>
#include <string_view>

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

TEST(RequestXml, ControlCharactersAreShownAsSigns) {
  EXPECT_EQ(shownBytes(std::string_view("a\0b", 3)), "a␀b");
  EXPECT_EQ(shownBytes("\t\n\x1F\x7F"), "␉␊␟␡");
  EXPECT_EQ(shownBytes("\xC2\x85 表"), "\uFFFD 表");
}

std::string utf16(std::string_view ascii, bool isBigEndian) {
  std::string bytes = isBigEndian ? "\xFE\xFF" : "\xFF\xFE";
  for (const char c : ascii) bytes += isBigEndian ? std::string{'\0', c} : std::string{c, '\0'};
  return bytes;
}

TEST(RequestXml, FileInAnotherEncodingIsNamed) {
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  const std::string look = "<tableProperties/>";
  for (const bool isBigEndian : {false, true}) {
    for (const std::size_t skipped : {0, 2, 3}) {
      const std::string content = utf16(look, isBigEndian).substr(skipped);
      const auto refusal = [](const std::string& xml) {
        return refusalOf([&] {
          pugi::xml_document document;
          parseRequest(xml, document);
        });
      };
      const std::string ofLook = refusal("<a><tableLook>" + content + "</tableLook></a>");
      EXPECT_TRUE(ofLook.starts_with("in the table look, not well-formed near \"")) << ofLook;
      EXPECT_NE(ofLook.find("␀"), std::string::npos) << ofLook;
      EXPECT_TRUE(ofLook.ends_with("\"")) << ofLook;
      const std::string ofTemplate =
          refusal("<a><modifyGraph><chartTemplate><b/></chartTemplate><chartTemplate>" + content +
                  "</chartTemplate></modifyGraph></a>");
      EXPECT_TRUE(ofTemplate.starts_with("in chart template 2, ")) << ofTemplate;
    }
  }
}

}  // namespace
}  // namespace vornwout
