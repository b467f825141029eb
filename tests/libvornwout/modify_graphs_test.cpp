// OUTPUT MODIFY /GRAPHS: its grammar, the templates and the style sheet that it writes.
#include "libvornwout/modify/modify_graphs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/encoding.h"
#include "tests/support/look_folders.h"
#include "tests/support/modify_grammar.h"
#include "tests/support/modify_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;

struct GraphCase {
  std::string text;  // behind "/GRAPHS "
  std::string element;
};

void expectElements(const std::vector<GraphCase>& cases) {
  for (const GraphCase& test : cases) {
    EXPECT_EQ(elementOf("/GRAPHS " + test.text), test.element) << test.text;
  }
}

std::string graphOf(const std::string& children) {
  return "<modifyGraph>" + children + "</modifyGraph>";
}

std::string templateOf(const std::string& content) {
  return "<chartTemplate>" + content + "</chartTemplate>";
}

TEST(ModifyGraphs, DeclaresItsGrammar) {
  EXPECT_THAT(modifyGrammarOf("GRAPHS"),
              ElementsAre("GRAPHS 1 ff", "CTEMPLATE 6 ft 2", "VIZSTYLESHEET 4 ft 0"));
}

TEST(ModifyGraphs, WritesAStyleSheet) {
  expectElements({
      {"VIZSTYLESHEET='Traditional'", "<modifyGraph styleSheet=\"Traditional\"/>"},
      {"VIZSTYLESHEET=Traditional", "<modifyGraph styleSheet=\"Traditional\"/>"},
      // Written as it stands, deliberately.
      {"VIZSTYLESHEET='a<\"&'", "<modifyGraph styleSheet=\"a<\"&\"/>"},
      // Without a style sheet even an empty element has its end tag, deliberately.
      {"", "<modifyGraph></modifyGraph>"},
      {"VIZSTYLESHEET=''", "<modifyGraph></modifyGraph>"},
  });
}

TEST(ModifyGraphs, EmbedsTemplatesFromTheirStartTagOnInTheirOrder) {
  const LookFolders folders;
  const std::string absolute =
      folders.write("one.qgt", "<?xml version=\"1.0\"?>\n<template a=\"1\"/><template/>\n");
  folders.write("plain.qgt", "no chart & <all>");
  folders.install("Blue.qgt", "<template>installed</template>");
  folders.keepForUser("Mine.qgt", "<template>mine</template>");
  const std::string one = templateOf("<template a=\"1\"/><template/>\n");
  const std::string blue = templateOf("<template>installed</template>");
  expectElements({
      {"CTEMPLATE='one.qgt'", graphOf(one)},
      {"CTEMPLATE='" + absolute + "'", graphOf(one)},
      {"CTEMPLATE='looks/one.qgt'", graphOf(one)},
      {"CTEMPLATE=['Blue']", graphOf(blue)},
      {"CTEMPLATE='Mine'", graphOf(templateOf("<template>mine</template>"))},
      {"CTEMPLATE='plain.qgt'", graphOf(templateOf("no chart & <all>"))},
      {"CTEMPLATE='one.qgt' 'Blue'", graphOf(one + blue)},
      {"CTEMPLATE=['Blue', 'one.qgt' 'Blue']", graphOf(blue + one + blue)},
      {"CTEMPLATE='Blue' VIZSTYLESHEET='s'",
       "<modifyGraph styleSheet=\"s\">" + blue + "</modifyGraph>"},
  });
}

TEST(ModifyGraphs, RefusesTheFirstTemplateThatIsNone) {
  const LookFolders folders;
  folders.write("one.qgt", "<template/>");
  folders.write("empty.qgt", "");
  folders.install("Look.qtt", "<tableProperties/>");
  const struct {
    const char* text;
    const char* message;
  } cases[] = {
      {"CTEMPLATE='nowhere'", "FileNameInvalid(nowhere)"},
      {"CTEMPLATE='empty.qgt'", "FileNameInvalid(empty.qgt)"},
      {"CTEMPLATE='Look'", "FileNameInvalid(Look)"},
      {"CTEMPLATE=''", "FileNameInvalid()"},
      // What stands behind it is not looked at.
      {"CTEMPLATE='one.qgt' 'nowhere' 'neither'", "FileNameInvalid(nowhere)"},
      {"VIZSTYLESHEET='s' CTEMPLATE=['nowhere']", "FileNameInvalid(nowhere)"},
      {"CTEMPLATE=one.qgt", "ParamNeedLiteral(one.qgt, CTEMPLATE, GRAPHS)"},
      {"CTEMPLATE=['one.qgt' 5]", "ParamNeedLiteral(5, CTEMPLATE, GRAPHS)"},
      {"CTEMPLATE", "ParamValueRequired(CTEMPLATE, GRAPHS)"},
      {"CTEMPLATE=[]", "ParamValueRequired(CTEMPLATE, GRAPHS)"},
      {"CTEMPLATE=[,]", "ParamValueRequired(CTEMPLATE, GRAPHS)"},
      {"VIZSTYLESHEET='a' 'b'", "UnexpectedToken(b, VIZSTYLESHEET)"},
      {"/GRAPHS", "SubComRepeated(GRAPHS)"},
  };
  for (const auto& test : cases) {
    EXPECT_THAT(refusalsOf(std::string("/GRAPHS ") + test.text), ElementsAre(test.message))
        << test.text;
  }
}

TEST(ModifyGraphs, WritesStyleSheetAndTemplatesInUtf8) {
  const LookFolders folders;
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  folders.write("one.qgt", "\x80<template>\xE4</template>");
  expectElements({{"CTEMPLATE='one.qgt' VIZSTYLESHEET='\xF6'",
                   "<modifyGraph styleSheet=\"\xC3\xB6\">" +
                       templateOf("<template>\xC3\xA4</template>") + "</modifyGraph>"}});
}

TEST(ModifyGraphs, FillsInNoDates) {
  expectElements({{"VIZSTYLESHEET=')DATE'", "<modifyGraph styleSheet=\")DATE\"/>"}});
}

}  // namespace
}  // namespace vornwout
