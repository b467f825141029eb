// The root of the modify document and the document as a whole.
#include "libvornwout/modify/xml/xml_modify_output.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/encoding.h"
#include "tests/support/modify_run.h"
#include "tests/support/parsed_command.h"

namespace vornwout {
namespace {

/// A writer with what it refers to.
class WrittenDocument {
 public:
  WrittenDocument(const std::string& name, const std::string& groups, bool debug)
      : select_(descriptor_),
        parsed_(descriptor_, groups),
        writer_(text, name, select_, parsed_.spec(), parsed_.messages(), debug) {}

  std::string text = "";
  bool populate() { return writer_.populateXML(); }

 private:
  CommandDescriptor descriptor_{"PROBE"};
  ModifySelect select_;
  ParsedCommand parsed_;
  xmlModifyOutput writer_;
};

TEST(ModifyOutputDocument, BeginsAtOnceWithItsRoot) {
  const struct {
    const char* name;
    bool debug;
    const char* root;
  } cases[] = {
      {"*", false, "<modifyOutputObject documentName=\"*\">"},
      {"*", true, "<modifyOutputObject documentName=\"*\" debug=\"true\">"},
      {"", false, "<modifyOutputObject documentName=\"\">"},
      // Escaped by the command already.
      {"a&amp;b&quot;", false, "<modifyOutputObject documentName=\"a&amp;b&quot;\">"},
  };
  for (const auto& test : cases) {
    WrittenDocument document(test.name, "", test.debug);
    EXPECT_EQ(document.text, test.root);
    EXPECT_TRUE(document.populate());
    EXPECT_EQ(document.text, std::string(test.root) + "</modifyOutputObject>");
  }
}

TEST(ModifyOutputDocument, HasItsNameInUtf8) {
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  EXPECT_EQ(WrittenDocument("\xE4&lt;", "", false).text,
            "<modifyOutputObject documentName=\"\xC3\xA4&lt;\">");
}

TEST(ModifyOutputDocument, HoldsOneEventPerGroup) {
  WrittenDocument document("d", "/SELECT TABLES /SELECT ALL.", false);
  EXPECT_TRUE(document.populate());
  EXPECT_EQ(document.text,
            "<modifyOutputObject documentName=\"d\"><modifyEvent tables=\"true\"></modifyEvent>"
            "<modifyEvent all=\"true\"></modifyEvent></modifyOutputObject>");
}

TEST(ModifyOutputDocument, IsWholeThoughAGroupFails) {
  WrittenDocument document("d", "/SELECT TABLES EXCEPT=LOGS /SELECT LOGS.", false);
  EXPECT_FALSE(document.populate());
  EXPECT_EQ(document.text,
            "<modifyOutputObject documentName=\"d\"><modifyEvent tables=\"true\"></modifyEvent>"
            "<modifyEvent logs=\"true\"></modifyEvent></modifyOutputObject>");
}

TEST(ModifyOutputDocument, HasNothingBetweenItsElements) {
  const struct {
    const char* groups;
    const char* document;
  } cases[] = {
      {"/SELECT TABLES /TABLE TABLETITLE='t' TRANSPOSE=YES",
       "<modifyOutputObject documentName=\"*\"><modifyEvent tables=\"true\">"
       "<modifyTable title=\"t\" transpose=\"true\"/></modifyEvent></modifyOutputObject>"},
      {"/SELECT ALL",
       "<modifyOutputObject documentName=\"*\"><modifyEvent all=\"true\"></modifyEvent>"
       "</modifyOutputObject>"},
      {"NAME=doc /SELECT LOGS /IF COMMANDS='c(LAST)' INSTANCES=0",
       "<modifyOutputObject documentName=\"doc\"><modifyEvent logs=\"true\">"
       "<command commandName=\"c\" last=\"true\"/><instance last=\"true\"/></modifyEvent>"
       "</modifyOutputObject>"},
      // Not well-formed, deliberately: a host says so.
      {"/SELECT LOGS /IF LABELS=EXACT('\"')",
       "<modifyOutputObject documentName=\"*\"><modifyEvent logs=\"true\">"
       "<label expression=\"\"\" exact=\"true\"/></modifyEvent></modifyOutputObject>"},
  };
  for (const auto& test : cases) EXPECT_EQ(documentOf(test.groups), test.document) << test.groups;
}

}  // namespace
}  // namespace vornwout
