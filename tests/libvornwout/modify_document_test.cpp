// Modify documents as a whole: what commands make is valid by docs/modify-document.xsd, and that
// schema means what it says.
#include <cctype>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/parser/grammar_capture.h"
#include "tests/support/command_run.h"
#include "tests/support/file_content.h"
#include "tests/support/schema_check.h"
#include "tests/support/scratch_directory.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

/// Every subcommand, keyword and value, alone and together. "@" stands for the test's folder.
constexpr const char* kCommands[] = {
    // The command's own keywords.
    "",
    "DEBUG",
    "NAME=report /SELECT ALL",
    "NAME=ALL DEBUG /SELECT",
    "NAME='R&D <\"draft\">' /REPORT PRINTREPORT=YES /SELECT TABLES",
    "/REPORT PRINTREPORT=NO /SELECT TABLES",
    // SELECT.
    "/SELECT CHARTS HEADINGS LOGS MODELS TABLES TEXTS TREES WARNINGS OUTLINEHEADERS NOTES UNKNOWN "
    "OTHER PAGETITLES",
    "/SELECT ALL EXCEPT=CHARTS HEADINGS LOGS MODELS TABLES TEXTS TREES WARNINGS OUTLINEHEADERS "
    "NOTES UNKNOWN OTHER PAGETITLES",
    "/SELECT ALL EXCEPT=[TABLES, NOTES]",
    "/SELECT TABLES /SELECT CHARTS /SELECT",
    // IF.
    "/SELECT TABLES /IF",
    "/SELECT TABLES /IF COMMANDS=['Frequencies' 'Descriptives(2,3)' 'T-Test(LAST)' LAST]",
    "/SELECT TABLES /IF COMMANDS='' '(2)' 'Frequencies(0)'",
    "/SELECT TABLES /IF SUBTYPES=['Notes' 'Statistics' '']",
    "/SELECT TABLES /IF LABELS=EXACT('a') BEGINS('b' 'c') CONTAINS('d') ENDS('')",
    "/SELECT TABLES /IF INSTANCES=[1, 2147483647, LAST]",
    "/SELECT TABLES /IF INSTANCES=0 -5",
    "/SELECT TABLES /IF VISIBLEONLY=YES",
    "/SELECT TABLES /IF VISIBLEONLY=NO SUBTYPES='Notes' INSTANCES=1 COMMANDS='a' LABELS=ENDS('b')",
    "/SELECT ALL EXCEPT=TABLES /IF VISIBLEONLY=YES",
    // INDEXING.
    "/SELECT TABLES /INDEXING",
    "/SELECT TABLES /INDEXING INDEXTYPE=NUMBER INDEXSTART=-7",
    "/SELECT TABLES /INDEXING INDEXTYPE=LETTERLOW INDEXSTART=zz",
    "/SELECT TABLES /INDEXING INDEXTYPE=LETTERCAP INDEXSTART='A'",
    "/SELECT TABLES /INDEXING INDEXTYPE=ROMANLOW INDEXSTART=xiv",
    "/SELECT TABLES /INDEXING INDEXTYPE=ROMANCAP",
    // DELETEOBJECT.
    "/SELECT TABLES /DELETEOBJECT",
    "/SELECT TABLES /DELETEOBJECT DELETE=YES",
    "/SELECT TABLES /DELETEOBJECT DELETE=NO",
    // GRAPHS.
    "/SELECT CHARTS /GRAPHS",
    "/SELECT CHARTS /GRAPHS VIZSTYLESHEET='Corporate'",
    "/SELECT CHARTS /GRAPHS CTEMPLATE=['@/a.qgt' '@/plain.qgt']",
    "/SELECT CHARTS /GRAPHS CTEMPLATE='@/a.qgt' VIZSTYLESHEET=Corporate",
    // OBJECTPROPERTIES.
    "/SELECT CHARTS /OBJECTPROPERTIES",
    "/SELECT CHARTS /OBJECTPROPERTIES VISIBLE=ASIS OUTLINELABEL='a & b'",
    "/SELECT CHARTS /OBJECTPROPERTIES VISIBLE=YES SIZE=50 400 PERCENT",
    "/SELECT CHARTS /OBJECTPROPERTIES VISIBLE=NO SIZE=CENTIMETERS(PROPORTIONAL 3)",
    "/SELECT CHARTS /OBJECTPROPERTIES SIZE=INCHES(2, 1) OUTLINELABEL=')DATE at )ETIME'",
    "/SELECT CHARTS /OBJECTPROPERTIES SIZE=1 0.000001 POINTS",
    "/SELECT CHARTS /OBJECTPROPERTIES SIZE=0.5 1 POINTS",
    // TABLE.
    "/SELECT TABLES /TABLE",
    "/SELECT TABLES /TABLE TABLETITLE='a < b' TABLESUMMARY='\"c\" & ''d'''",
    "/SELECT TABLES /TABLE TABLETITLE='' TRANSPOSE=YES FORMAT='f8.2'",
    "/SELECT TABLES /TABLE TRANSPOSE=NO TLOOK=NONE",
    "/SELECT TABLES /TABLE TLOOK='@/a.qtt'",
    "/SELECT TABLES /TABLE SORT",
    "/SELECT TABLES /TABLE SORT=COLLABEL('Mean & more') SORTDIRECTION=ASCENDING",
    "/SELECT TABLES /TABLE SORT=COLPOSITION(3) SORTDIRECTION=DESCENDING",
    "/SELECT TABLES /TABLE SORTDIRECTION=DESCENDING",
    "/SELECT TABLES /TABLE SELECTEDLAYER=[1 'a' 'b' 2 'c' 'd>' ALL LAST '' '']",
    "/SELECT TABLES /TABLE TLOOK='@/a.qtt' SELECTEDLAYER=[1 1]",
    // TABLECELLS.
    "/SELECT TABLES /TABLECELLS SELECT=[]",
    "/SELECT TABLES /TABLECELLS SELECT=[CORRELATION COUNT MEAN MEDIAN PERCENT RESIDUAL "
    "SIGNIFICANCE BODY HEADERS FOOTNOTES TITLE CAPTION 'a & b' 'c' POSITION(1 -2, 3)]",
    "/SELECT TABLES /TABLECELLS SELECT=[CORRELATIONS RESIDUALS] SELECTDIMENSION=COLUMNS",
    "/SELECT TABLES /TABLECELLS SELECT=[''] SELECTDIMENSION=ROWS SELECTCONDITION=ALL",
    "/SELECT TABLES /TABLECELLS SELECT=[MEAN] SELECTDIMENSION=BOTH SELECTCONDITION=SYSMIS",
    "/SELECT TABLES /TABLECELLS SELECT=[MEAN] SELECTCONDITION=TOP(5)",
    "/SELECT TABLES /TABLECELLS SELECT=[MEAN] SELECTCONDITION=BOTTOM(1)",
    "/SELECT TABLES /TABLECELLS SELECT=[MEAN] SELECTCONDITION=[x < 0.05 & x > 0]",
    "/SELECT TABLES /TABLECELLS SELECT=[MEAN] COLUMNWIDTH=1 CENTIMETERS APPLYTO=CELL",
    "/SELECT TABLES /TABLECELLS SELECT=[MEAN] COLUMNWIDTH=INCHES(2) APPLYTO=COLUMN",
    "/SELECT TABLES /TABLECELLS SELECT=[MEAN] COLUMNWIDTH=72 POINTS APPLYTO=ROW",
    "/SELECT TABLES /TABLECELLS SELECT=[MEAN] REVERTTODEFAULT=YES APPLYTO=COLUMNDATA",
    "/SELECT TABLES /TABLECELLS SELECT=[MEAN] REVERTTODEFAULT=NO APPLYTO=ROWDATA",
    "/SELECT TABLES /TABLECELLS SELECT=[MEAN] FORMAT='pct6.1' APPLYTO=COLUMNHEADER",
    "/SELECT TABLES /TABLECELLS SELECT=[MEAN] FONT='Serif' FONTSIZE=10.5 APPLYTO=ROWHEADER",
    "/SELECT TABLES /TABLECELLS SELECT=[MEAN] STYLE=REGULAR BOLD ITALIC UNDERLINE",
    "/SELECT TABLES /TABLECELLS SELECT=[MEAN] TEXTCOLOR=BLACK BACKGROUNDCOLOR=BLUE"
    " /TABLECELLS SELECT=[MEAN] TEXTCOLOR=CYAN BACKGROUNDCOLOR=DARKGRAY"
    " /TABLECELLS SELECT=[MEAN] TEXTCOLOR=GRAY BACKGROUNDCOLOR=GREEN"
    " /TABLECELLS SELECT=[MEAN] TEXTCOLOR=LIGHTGRAY BACKGROUNDCOLOR=MAGENTA"
    " /TABLECELLS SELECT=[MEAN] TEXTCOLOR=ORANGE BACKGROUNDCOLOR=PINK"
    " /TABLECELLS SELECT=[MEAN] TEXTCOLOR=RED BACKGROUNDCOLOR=WHITE"
    " /TABLECELLS SELECT=[MEAN] TEXTCOLOR=YELLOW BACKGROUNDCOLOR=RGB(0 128 255)",
    "/SELECT TABLES /TABLECELLS SELECT=[MEAN] REPLACE='none'",
    "/SELECT TABLES /TABLECELLS SELECT=[MEAN] REPLACE=''",
    "/SELECT TABLES /TABLECELLS SELECT=[MEAN] REPLACE=-1.5e30",
    // TEXTS.
    "/SELECT TEXTS /TEXTS",
    "/SELECT TEXTS /TEXTS TEXT='a & <b> )SDATE' FONT='Serif' FONTSIZE=12 STYLE=BOLD",
    "/SELECT TEXTS /TEXTS STYLE=REGULAR, ITALIC, UNDERLINE TEXTCOLOR=RGB(1 2 3) FONTSIZE=-1",
    // Everything at once, back to front.
    "/SELECT ALL /TEXTS TEXT='t' /TABLECELLS SELECT=[MEAN] /TABLECELLS SELECT=[COUNT] /TABLE "
    "TLOOK='@/a.qtt' /OBJECTPROPERTIES VISIBLE=NO /GRAPHS CTEMPLATE='@/a.qgt' /DELETEOBJECT "
    "/INDEXING /IF INSTANCES=1 LABELS=EXACT('a') SUBTYPES='b' COMMANDS='c'",
};

class ModifyDocumentTest : public testing::Test {
 protected:
  void SetUp() override {
    folder_.write("a.qtt", "<?xml version='1.0'?>\n<tableProperties><cell/>text</tableProperties>");
    folder_.write("a.qgt", "<?xml version='1.0'?>\n<template xmlns='urn:t'><fill/></template>");
    folder_.write("plain.qgt", "no template, but a text");
  }

  std::string documentOf(std::string arguments) const {
    for (std::size_t at = arguments.find('@'); at != std::string::npos; at = arguments.find('@')) {
      arguments.replace(at, 1, folder_.path());
    }
    FakeHost host;
    const CommandRun run(outmodify_, "OUTPUT MODIFY " + arguments + ".", &host);
    EXPECT_EQ(host.modifyDocuments.size(), 1U) << arguments;
    return host.modifyDocuments.empty() ? std::string() : host.modifyDocuments.front();
  }

  ScratchDirectory folder_;
  SchemaCheck schema_{"modify-document.xsd"};
};

TEST_F(ModifyDocumentTest, WhatCommandsMakeIsValidByTheSchema) {
  std::vector<std::string> documents;
  for (const char* arguments : kCommands) documents.push_back(documentOf(arguments));
  EXPECT_EQ(schema_.refusal(documents), "");
}

void collect(const ParamDescriptor& param, std::set<std::string>& words) {
  words.insert(param.name());
  words.insert(param.values().begin(), param.values().end());
  for (const ParamDescriptor& qualifier : param.qualifiers()) collect(qualifier, words);
}

void collect(const SubComDescriptor& subcommand, std::set<std::string>& words) {
  if (!subcommand.name().empty()) words.insert(subcommand.name());
  for (const ParamDescriptor& param : subcommand.params()) collect(param, words);
}

/// The words of the commands above.
std::set<std::string> usedWords() {
  std::set<std::string> words;
  std::string word;
  for (const std::string command : kCommands) {
    for (const char character : command + " ") {
      if (std::isalpha(static_cast<unsigned char>(character)) != 0) {
        word += character;
      } else {
        words.insert(std::move(word));
        word.clear();
      }
    }
  }
  return words;
}

TEST_F(ModifyDocumentTest, TheCommandsUseEveryWordOfTheGrammar) {
  const CommandDescriptor grammar = grammarOf(outmodify_);
  std::set<std::string> words;
  for (const SubComDescriptor& own : grammar.subcommands()) collect(own, words);
  for (const GroupComDescriptor& group : grammar.groups()) {
    for (const SubComDescriptor& member : group.subcommands()) collect(member, words);
  }
  // Declared, but deliberately refused when they are read.
  for (const char* refused : {"GREY", "DARKGREY", "LIGHTGREY"}) words.erase(refused);
  const std::set<std::string> used = usedWords();
  for (const std::string& word : words) EXPECT_EQ(used.count(word), 1U) << word;
}

TEST_F(ModifyDocumentTest, TheSchemaRefusesWhatNoCommandMakes) {
  const std::string event = "<modifyOutputObject documentName=\"*\"><modifyEvent>";
  const std::string end = "</modifyEvent></modifyOutputObject>";
  ASSERT_EQ(schema_.refusal(event + "<deleteObject/>" + end), "");
  for (const std::string& document : std::vector<std::string>{
           "<modifyOutputObject/>",
           "<modifyOutputObject documentName=\"*\" debug=\"false\"/>",
           "<modifyOutputObject documentName=\"*\"><modifyEvent "
           "all=\"false\"/></modifyOutputObject>",
           event + "<modifyText/><modifyTable/>" + end,
           event + "<deleteObject/><indexObject type=\"number\" indexStart=\"1\"/>" + end,
           event + "<modifyTable/><modifyTable/>" + end,
           event + "<indexObject type=\"romanCAP\" indexStart=\"1\"/>" + end,
           event + "<label exact=\"true\"/>" + end,
           event + "<tableCells/>" + end,
           event + "<tableCells selectColumns=\"rows\"/>" + end,
           event + "<tableCells selectColumns=\"both\" textRed=\"256\"/>" + end,
           event + "<tableCells selectColumns=\"both\" selectPosition=\"1;\"/>" + end,
           event + "<objectProperties sizeWidth=\"0\"/>" + end,
           event + "<instance instance=\"0\"/>" + end,
           event + "text" + end,
       }) {
    EXPECT_NE(schema_.refusal(document), "") << document;
  }
}

/// The first block in docs/modify-document.md that starts with `start`, without it.
std::string blockOf(const std::string& page, const std::string& start) {
  const std::size_t begin = page.find(start);
  if (begin == std::string::npos) return {};
  return page.substr(begin + start.size(), page.find("```", begin + 3) - begin - start.size());
}

TEST(ModifyDocumentPage, ShowsWhatItsExampleSends) {
  const std::string page = fileContent(VORN_SOURCE_DIR "/docs/modify-document.md");
  const std::string command = blockOf(page, "```\n");
  // Broken into lines for the reader, with blanks in front.
  const std::string shown =
      std::regex_replace(blockOf(page, "```xml\n"), std::regex("\\s*\n\\s*"), "");
  ASSERT_FALSE(shown.empty());
  FakeHost host;
  const CommandRun run(outmodify_, command, &host);
  EXPECT_EQ(host.modifyDocuments, std::vector{shown});
}

/// Where a text, or a keyword that is written twice, makes a document that is not well-formed. A
/// host must bear with these, deliberately.
TEST_F(ModifyDocumentTest, IsDeliberatelyNotWellFormedInTheDocumentedCases) {
  for (const char* arguments : {
           "/SELECT ALL EXCEPT=TABLES TABLES",
           "/SELECT TABLES /TABLECELLS SELECT=[MEAN] SELECTCONDITION=TOP(1) BOTTOM(2)",
           "/SELECT TABLES /IF COMMANDS='a & b'",
           "/SELECT TABLES /IF SUBTYPES='a < b'",
           "/SELECT TABLES /IF LABELS=EXACT('\"a\"')",
           "/SELECT CHARTS /GRAPHS VIZSTYLESHEET='a & b'",
           "/SELECT TABLES /TABLE FORMAT='a & b'",
           "/SELECT TABLES /TABLECELLS SELECT=[MEAN] FORMAT='<'",
           "/SELECT TABLES /TABLECELLS SELECT=[MEAN] FONT='a & b'",
           "/SELECT TABLES /TABLECELLS SELECT=[MEAN] REPLACE='\"'",
           "/SELECT TEXTS /TEXTS FONT='a & b'",
       }) {
    EXPECT_THAT(schema_.refusal(documentOf(arguments)), testing::HasSubstr("parser error"))
        << arguments;
  }
}

/// Texts that are not escaped may hold markup of their own, deliberately; a document that is
/// well-formed, and even valid, may so say what no command says.
TEST_F(ModifyDocumentTest, CarriesTheMarkupInATextThatIsNotEscaped) {
  const std::string injected = documentOf(
      "/SELECT TABLES /IF SUBTYPES='a\"/><instance last=\"true\"/><deleteObject/><modifyGraph "
      "styleSheet=\"b'");
  EXPECT_NE(injected.find("<deleteObject/>"), std::string::npos) << injected;
  EXPECT_EQ(schema_.refusal(injected), "") << injected;
}

}  // namespace
}  // namespace vornwout
