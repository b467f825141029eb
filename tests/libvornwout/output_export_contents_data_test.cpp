// OUTPUT EXPORT /CONTENTS: which objects, layers and views are exported.
#include "libvornwout/export/output_export_contents_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/export_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;

std::vector<SentCase> withPdf(std::vector<SentCase> cases) {
  for (SentCase& test : cases) {
    test.arguments = "/CONTENTS " + test.arguments + " /PDF DOCUMENTFILE='f'";
    test.elements = "<contents " + test.elements + "/><pdf documentFile=\"f\"/>";
  }
  return cases;
}

TEST(OutputExportContentsData, DeclaresItsGrammar) {
  EXPECT_THAT(exportGrammarOf("CONTENTS"),
              ElementsAre("CONTENTS 1 ff", "EXPORT 3 ft 0 {ALL VISIBLE}",
                          "LAYERS 3 ft 0 {PRINTSETTING ALL VISIBLE}",
                          "MODELVIEWS 3 ft 0 {PRINTSETTING ALL VISIBLE}"));
}

TEST(OutputExportContentsData, SetsWhatIsGivenAndTheViewsAlways) {
  const std::string views = "modelViews=\"PRINTSETTING\"";
  expectSent(withPdf({
      {"", views},
      {"EXPORT=ALL", "export=\"ALL\" " + views},
      {"EXPORT='all'", "export=\"ALL\" " + views},
      {"export=visible", "export=\"VISIBLE\" " + views},
      {"LAYERS=PRINTSETTING", "layers=\"PRINTSETTING\" " + views},
      {"LAYERS=ALL", "layers=\"ALL\" " + views},
      {"LAYERS=VISIBLE", "layers=\"VISIBLE\" " + views},
      {"MODELVIEWS=PRINTSETTING", views},
      {"MODELVIEWS=ALL", "modelViews=\"ALL\""},
      {"MODELVIEWS=VISIBLE", "modelViews=\"VISIBLE\""},
      {"MODELVIEWS=VISIBLE LAYERS=ALL EXPORT=VISIBLE",
       "export=\"VISIBLE\" layers=\"ALL\" modelViews=\"VISIBLE\""},
  }));
}

TEST(OutputExportContentsData, AloneIsNothingToExport) {
  expectRefused({{"/CONTENTS EXPORT=ALL", {}, "OUTPUT"}, {"/CONTENTS", {}}});
}

TEST(OutputExportContentsData, RefusesOtherValues) {
  expectNotParsed({
      {"/CONTENTS EXPORT=PRINTSETTING", {"InvalidParamValue(PRINTSETTING, EXPORT, CONTENTS)"}},
      {"/CONTENTS LAYERS=SOME", {"InvalidParamValue(SOME, LAYERS, CONTENTS)"}},
      {"/CONTENTS MODELVIEWS=*", {"InvalidParamValue(*, MODELVIEWS, CONTENTS)"}},
  });
}

TEST(OutputExportContentsData, CountsOnlyWhereItWasGiven) {
  CommandDescriptor command("GO");
  ExportContentsSpec option;
  OutputExportContentsData data(command, option);
  const ParserMessage messages;
  CommandSpec empty;
  EXPECT_EQ(data.populateSpecification(empty, messages), 0);
  EXPECT_FALSE(option.isPresent());
}

}  // namespace
}  // namespace vornwout
