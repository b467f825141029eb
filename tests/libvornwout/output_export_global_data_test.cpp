// OUTPUT EXPORT: which document is exported, and how much is told about it.
#include "libvornwout/export/output_export_global_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/encoding.h"
#include "tests/support/export_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;

constexpr const char* kPdf = " /PDF DOCUMENTFILE='f'";
constexpr const char* kPdfElement = "<pdf documentFile=\"f\"/>";

TEST(OutputExportGlobalData, DeclaresNameAndPrintInOneSubcommandThatIsHandedOverTwice) {
  EXPECT_THAT(exportGrammarOf(""),
              ElementsAre(" 1 ff", "NAME 2 ft 0", "PRINT 3 ft 0 {ALWAYS NEVER ERRORS}"));
  EXPECT_EQ(grammarOf(outexport_).subcommands().front().name(), "");
}

TEST(OutputExportGlobalData, NamesTheDocumentEscapedAndTakesThePrintOption) {
  const struct {
    const char* arguments;
    const char* element;
  } cases[] = {
      {"", ""},
      {"NAME=doc1", "<global name=\"doc1\"/>"},
      {"name='my doc'", "<global name=\"my doc\"/>"},
      {"NAME=*", "<global name=\"*\"/>"},
      {"NAME=5", "<global name=\"5\"/>"},
      {"NAME=''", "<global name=\"\"/>"},
      // Escaped for HTML, and then as an attribute.
      {"NAME='a&b'", "<global name=\"a&amp;amp;b\"/>"},
      {"NAME='<'", "<global name=\"&amp;lt;\"/>"},
      {"PRINT=ALWAYS", "<global printOption=\"ALWAYS\"/>"},
      {"PRINT=NEVER", "<global printOption=\"NEVER\"/>"},
      {"print=errors", "<global printOption=\"ERRORS\"/>"},
      {"PRINT='ERRORS'", "<global printOption=\"ERRORS\"/>"},
      {"PRINT=NEVER NAME=a", "<global name=\"a\" printOption=\"NEVER\"/>"},
  };
  for (const auto& test : cases) {
    expectSent({{test.arguments + std::string(kPdf), test.element + std::string(kPdfElement)}});
  }
}

TEST(OutputExportGlobalData, IgnoresANameThatIsNoSingleText) {
  for (const char* name : {"NAME", "NAME=a b", "NAME=(a)"}) {
    expectSent({{name + std::string(kPdf), "<global/>" + std::string(kPdfElement)}});
    expectSent({{name + std::string(" PRINT=ERRORS") + kPdf,
                 "<global printOption=\"ERRORS\"/>" + std::string(kPdfElement)}});
  }
}

TEST(OutputExportGlobalData, TakesTheNameInTheJobsEncoding) {
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  expectSent({{"NAME='\xE4'" + std::string(kPdf),
               "<global name=\"\xC3\xA4\"/>" + std::string(kPdfElement)}});
}

TEST(OutputExportGlobalData, RefusesOtherValues) {
  expectNotParsed({
      {"PRINT=SOMETIMES /PDF", {"InvalidParamValue(SOMETIMES, PRINT, )"}},
      {"PRINT /PDF", {"ParamValueRequired(PRINT, )"}},
      {"NAME= /PDF", {"ParamValueRequired(NAME, )"}},
      {"NAMES=a /PDF", {"UnknownParam(NAMES, )"}},
  });
}

TEST(OutputExportGlobalData, CountsOnlyWhereItWasGiven) {
  CommandDescriptor command("GO");
  ExportGlobalSpec option;
  OutputExportGlobalData data(command, option);
  const ParserMessage messages;
  CommandSpec empty;
  EXPECT_EQ(data.populateSpecification(empty, messages), 0);
  EXPECT_FALSE(option.isPresent());
  EXPECT_EQ(option.getPrintOption(), ExportGlobalSpec::PRINT_OPTION::ALWAYS);
}

}  // namespace
}  // namespace vornwout
