// DELETEOBJECT: when it deletes.
#include "libvornwout/modify/modify_delete.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/modify_grammar.h"
#include "tests/support/modify_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;

TEST(ModifyDelete, DeclaresItsSubcommand) {
  EXPECT_THAT(modifyGrammarOf("DELETEOBJECT"),
              ElementsAre("DELETEOBJECT 1 ff", "DELETE 3 ff 0 {YES NO}"));
  const CommandDescriptor grammar = grammarOf(outmodify_);
  EXPECT_TRUE(grammar.groups().at(0).findSubCom("DELETEOBJECT")->emptyAllowed());
}

TEST(ModifyDelete, WritesItsElementUnlessToldNo) {
  const struct {
    const char* text;
    const char* element;
  } cases[] = {{"/DELETEOBJECT", "<deleteObject/>"},
               {"/DELETEOBJECT DELETE=YES", "<deleteObject/>"},
               {"/deleteobject delete=yes", "<deleteObject/>"},
               {"/DELETEOBJECT DELETE='YES'", "<deleteObject/>"},
               {"/DELETEOBJECT DELETE=NO", ""},
               {"/DELETEOBJECT DELETE=no", ""},
               {"", ""}};
  for (const auto& test : cases) EXPECT_EQ(elementOf(test.text), test.element) << test.text;
}

TEST(ModifyDelete, RefusesAnythingElse) {
  EXPECT_THAT(refusalsOf("/DELETEOBJECT DELETE=MAYBE"),
              ElementsAre("InvalidParamValue(MAYBE, DELETE, DELETEOBJECT)"));
  EXPECT_THAT(refusalsOf("/DELETEOBJECT DELETE"),
              ElementsAre("ParamValueRequired(DELETE, DELETEOBJECT)"));
  EXPECT_THAT(refusalsOf("/DELETEOBJECT DELETE=YES DELETE=NO"),
              ElementsAre("ParamRepeated(DELETE, DELETEOBJECT)"));
}

TEST(ModifyDelete, ForgetsTheGroupBefore) {
  const std::string deleting = "<modifyEvent logs=\"true\"><deleteObject/></modifyEvent>";
  const std::string plain = "<modifyEvent logs=\"true\"></modifyEvent>";
  const std::string document = documentOf(
      "/SELECT LOGS /DELETEOBJECT /SELECT LOGS /SELECT LOGS /DELETEOBJECT "
      "/SELECT LOGS /DELETEOBJECT DELETE=NO");
  EXPECT_THAT(document, testing::HasSubstr(">" + deleting + plain + deleting + plain + "<"));
}

}  // namespace
}  // namespace vornwout
