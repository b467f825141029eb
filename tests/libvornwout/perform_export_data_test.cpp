// The run of an export: every answer that a host can give, under every print option.
#include "libvornwout/export/perform_export_data.h"

#include <stdexcept>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/encoding.h"
#include "tests/support/command_run.h"
#include "tests/support/recording_sink.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Print = ExportGlobalSpec::PRINT_OPTION;

constexpr Print kPrintOptions[] = {Print::ALWAYS, Print::NEVER, Print::ERRORS};

/// A run with a host that answers `answer`.
struct AnsweredRun {
  AnsweredRun(const std::string& answer, Print print) {
    host.exportAnswer = answer;
    const AdapterRegistration adapter(&host);
    BpProcedure procedure("Output Export", 2);
    PerformExport::PerformExportData data(procedure, print);
    data.setDocFileName("f.pdf");
    data.setImageRootName("img");
    data.process("<outputExport/>");
  }
  AnsweredRun(const ExportResponse& answer, Print print)
      : AnsweredRun(exportResponseXml(answer), print) {}

  /// "3: text" for every message, with its level.
  std::vector<std::string> said() const {
    std::vector<std::string> texts;
    for (const OutputMessageRecord& record : sink.messages) {
      EXPECT_EQ(record.show, 2);
      texts.push_back(fmt::format("{}: {}", record.level, renderText(record.message)));
    }
    return texts;
  }

  /// "2 label: value" for every note.
  std::vector<std::string> notes() const {
    std::vector<std::string> texts;
    for (const NoteRecord& note : sink.notes) {
      texts.push_back(
          fmt::format("{} {}: {}", note.number, renderText(note.label), renderText(note.value)));
    }
    return texts;
  }

  RecordingSink sink;
  FakeHost host;
};

ExportResponse failure(int code, const std::string& name = "") {
  ExportResponse response;
  response.success = false;
  response.errorCode = code;
  response.name = name;
  return response;
}

/// "Image Files > Format: PNG" for every cell of a table of one dimension.
std::vector<std::string> cellsOf(const PivotTable& table) {
  std::vector<std::string> cells;
  for (const PivotCell& cell : table.cells) {
    std::string label;
    for (const int node : categoryPath(table.dimensions.at(0), cell.at[0])) {
      if (!label.empty()) label += " > ";
      label +=
          renderText(table.dimensions.at(0).categories.at(static_cast<std::size_t>(node)).label);
    }
    cells.push_back(label + ": " + renderText(cell.value));
  }
  return cells;
}

TEST(PerformExport, HandsTheDocumentToTheHostAsItIs) {
  const AnsweredRun run(ExportResponse(), Print::ALWAYS);
  EXPECT_THAT(run.host.exportDocuments, ElementsAre("<outputExport/>"));
}

struct ErrorCase {
  int code;
  const char* text;  ///< null for none
};

const ErrorCase kErrors[] = {
    {0, nullptr},
    {1, "3: The OUTPUT EXPORT command requires an open Viewer document."},
    {2, "3: The specified Viewer document doc1 does not exist."},
    {3, "3: The Viewer document is empty. There is nothing to export."},
    {4, "3: It was requested that all visible items be exported but..."},
    {5, "3: It was requested that only graphics be exported but no graphics were found."},
    {6, "3: f.pdf not a valid file name..."},
    {7, "3: img is not a valid root name."},
    {8, "3: Enhanced Metafile (EMF) format is available only on Windows systems."},
    {9, "3: PowerPoint (PPT) format is available only on Windows systems."},
    {10, "3: In order to export to PowerPoint (PPT) format, PowerPoint must be installed."},
    {11, "3: xlsMaxColumnsLimitExceeded..."},
    {12, "3: xlsMaxCellCharacterLimitExceeded..."},
    {13, "3: maxSheetNameCharacterLimitExceeded..."},
    {14, "3: xlsSheetNameInvalid..."},
    {15, "3: Failed to export output Unspecified error..."},
    {16, nullptr},
    {99, nullptr},
    {-1, nullptr},
};

TEST(PerformExport, TellsWhyAnExportFailedUnlessItIsNeverToTell) {
  for (const ErrorCase& test : kErrors) {
    for (const Print print : kPrintOptions) {
      const AnsweredRun run(failure(test.code, "doc1"), print);
      std::vector<std::string> expected;
      if (test.text != nullptr && print != Print::NEVER) expected.emplace_back(test.text);
      EXPECT_EQ(run.said(), expected) << test.code << " " << static_cast<int>(print);
      EXPECT_THAT(run.sink.tables, IsEmpty());
      EXPECT_THAT(run.sink.notes, IsEmpty());
    }
  }
}

TEST(PerformExport, TellsTheErrorOfASuccessOnlyWhereErrorsAloneAreTold) {
  for (const ErrorCase& test : kErrors) {
    ExportResponse response = failure(test.code, "doc1");
    response.success = true;
    EXPECT_THAT(AnsweredRun(response, Print::ALWAYS).said(), IsEmpty()) << test.code;
    EXPECT_THAT(AnsweredRun(response, Print::NEVER).said(), IsEmpty()) << test.code;
    std::vector<std::string> expected;
    if (test.text != nullptr) expected.emplace_back(test.text);
    EXPECT_EQ(AnsweredRun(response, Print::ERRORS).said(), expected) << test.code;
  }
}

TEST(PerformExport, FillsPlaceholdersThatHaveNoArgumentWithNothing) {
  const AnsweredRun run(failure(2), Print::ALWAYS);
  EXPECT_THAT(run.said(), ElementsAre("3: The specified Viewer document  does not exist."));
}

TEST(PerformExport, KeepsTheTextsOfOthersApartFromItsOwn) {
  const AnsweredRun named(failure(2, "doc1"), Print::ALWAYS);
  ASSERT_EQ(named.sink.messages.size(), 1U);
  EXPECT_EQ(named.sink.messages[0].message.text,
            "The specified Viewer document ^1 does not exist.");
  EXPECT_TRUE(named.sink.messages[0].message.translatable);
  EXPECT_FALSE(named.sink.messages[0].message.arguments.at(0).translatable);
  for (const std::string& answer : {exportResponseXml(failure(15)), std::string()}) {
    const AnsweredRun own(answer, Print::ALWAYS);
    ASSERT_EQ(own.sink.messages.size(), 1U);
    EXPECT_EQ(own.sink.messages[0].message.text, "Failed to export output ^1...");
    EXPECT_TRUE(own.sink.messages[0].message.arguments.at(0).translatable);
  }
}

TEST(PerformExport, ReportsAMissingAnswerWhateverThePrintOption) {
  for (const Print print : kPrintOptions) {
    EXPECT_THAT(AnsweredRun("", print).said(),
                ElementsAre("3: Failed to export output Response not received from Client..."));
  }
}

TEST(PerformExport, ReportsWhyAnAnswerCannotBeReadWhateverThePrintOption) {
  for (const char* const answer :
       {"x", "<", "<outputExportResponse/>", "<outputExportResponse success=\"maybe\"/>",
        "<outputExport/>", "<!DOCTYPE a><a/>"}) {
    ResponseSpec response;
    ASSERT_FALSE(response.processResponse(answer));
    const std::string expected = "3: Failed to export output " + response.getParserError() + "...";
    for (const Print print : kPrintOptions) {
      EXPECT_THAT(AnsweredRun(answer, print).said(), ElementsAre(expected)) << answer;
    }
  }
}

TEST(PerformExport, ReportsTheDecodersTextInTheJobsEncoding) {
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  const std::string answer = "<outputExportResponse \xC3\xA4=\"1\"/>";
  ResponseSpec response;
  ASSERT_FALSE(response.processResponse(answer));
  EXPECT_THAT(AnsweredRun(answer, Print::ALWAYS).said(),
              ElementsAre("3: Failed to export output " + response.getParserError() + "..."));
}

TEST(PerformExport, SummarisesADocument) {
  ExportResponse response;
  response.name = "doc1";
  response.documentFile = "/out/a.pdf";
  const AnsweredRun run(response, Print::ALWAYS);
  EXPECT_THAT(run.said(), IsEmpty());
  EXPECT_THAT(run.notes(), ElementsAre("2 Viewer: doc1", "2 Document File: /out/a.pdf",
                                       "2 Image File Count: 0", "2 Image File Root Name: "));
  ASSERT_EQ(run.sink.tables.size(), 1U);
  const PivotTable& table = *run.sink.tables.front();
  EXPECT_EQ(renderText(table.title), "Export Summary");
  EXPECT_EQ(renderText(table.subtype), "ExportSummary");
  EXPECT_EQ(table.maxDataColumnWidth, 200);
  EXPECT_EQ(table.minDataColumnWidth, std::nullopt);
  ASSERT_EQ(table.dimensions.size(), 1U);
  EXPECT_EQ(renderText(table.dimensions[0].label), "Contents");
  EXPECT_EQ(table.dimensions[0].sort, 2);
  EXPECT_EQ(table.dimensions[0].position, (PivotPosition{0, 1, true, false}));
  EXPECT_THAT(cellsOf(table), ElementsAre("Viewer: doc1", "Document File: /out/a.pdf"));
}

TEST(PerformExport, SummarisesImagesAlone) {
  ExportResponse response;
  response.imageRoot = "/out/img";
  response.imageFormat = "PNG";
  response.imageCount = 3;
  const AnsweredRun run(response, Print::ALWAYS);
  EXPECT_THAT(run.notes(),
              ElementsAre("2 Image File Count: 3", "2 Image File Root Name: /out/img"));
  ASSERT_EQ(run.sink.tables.size(), 1U);
  EXPECT_THAT(cellsOf(*run.sink.tables.front()),
              ElementsAre("Image Files > E60352: 3", "Image Files > Root Name: /out/img",
                          "Image Files > Format: PNG"));
  const CellText& count = run.sink.tables.front()->cells.front().value;
  EXPECT_EQ(count.kind, CellText::Kind::kNumber);
  EXPECT_EQ(count.format, BpFormatSpec{BpFormatSpec::Type::kCount});
}

TEST(PerformExport, SummarisesWhatIsThereAndNoMore) {
  ExportResponse response;
  response.documentFile = "a.html";
  response.imageRoot = "img";
  EXPECT_THAT(cellsOf(*AnsweredRun(response, Print::ALWAYS).sink.tables.at(0)),
              ElementsAre("Document File: a.html", "Image Files > Root Name: img",
                          "Image Files > Format: "));
  response.imageRoot.clear();
  response.imageFormat = "PNG";
  response.imageCount = 0;
  EXPECT_THAT(cellsOf(*AnsweredRun(response, Print::ALWAYS).sink.tables.at(0)),
              ElementsAre("Document File: a.html"));
  EXPECT_THAT(AnsweredRun(ExportResponse(), Print::ALWAYS).sink.tables.at(0)->cells, IsEmpty());
}

TEST(PerformExport, SummarisesOnlyWhereEverythingIsTold) {
  ExportResponse response;
  response.name = "doc1";
  response.warnings[0] = {"Table 1"};
  for (const Print print : {Print::NEVER, Print::ERRORS}) {
    const AnsweredRun run(response, print);
    EXPECT_THAT(run.sink.tables, IsEmpty());
    EXPECT_THAT(run.sink.notes, IsEmpty());
    EXPECT_THAT(run.said(), IsEmpty());
  }
}

TEST(PerformExport, WarnsOfTablesBeforeItSummarises) {
  constexpr const char* kTexts[] = {"The following pivot tables contain a very long row label...",
                                    "maxColLimitExceeded...", "cellCharacterLimitExceeded..."};
  for (unsigned set = 0; set < 8; ++set) {
    ExportResponse response;
    std::vector<std::string> events = {"open Output Export"};
    for (std::size_t code = 0; code < kWarningCodes; ++code) {
      if ((set >> code & 1U) == 0) continue;
      response.warnings[code] = {"Table " + std::to_string(code), "Other"};
      events.emplace_back(kTexts[code]);
    }
    const AnsweredRun run(response, Print::ALWAYS);
    std::size_t at = 0;
    for (std::size_t code = 0; code < kWarningCodes; ++code) {
      if ((set >> code & 1U) == 0) continue;
      ASSERT_LT(at, run.sink.messages.size());
      const OutputMessageRecord& record = run.sink.messages[at++];
      EXPECT_EQ(record.show, 2);
      EXPECT_EQ(record.level, 2);
      EXPECT_EQ(record.message.text, kTexts[code]);
      EXPECT_TRUE(record.message.translatable);
      EXPECT_TRUE(record.message.arguments.empty());
      ASSERT_EQ(record.message.sublist.size(), 2U);
      EXPECT_EQ(record.message.sublist[0].text, "Table " + std::to_string(code));
      EXPECT_FALSE(record.message.sublist[0].translatable);
      EXPECT_EQ(record.message.sublist[1].text, "Other");
      EXPECT_TRUE(run.sink.events[at].starts_with("message ")) << "before notes and tables";
    }
    EXPECT_EQ(run.sink.messages.size(), at);
    EXPECT_EQ(run.sink.tables.size(), 1U);
  }
}

TEST(PerformExport, WarnsOfNothingWhenTheExportFailed) {
  ExportResponse response = failure(3);
  response.warnings[1] = {"Table 1"};
  EXPECT_THAT(AnsweredRun(response, Print::ALWAYS).said(),
              ElementsAre("3: The Viewer document is empty. There is nothing to export."));
}

TEST(PerformExport, ReadsTextsIntoTheJobsEncoding) {
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  ExportResponse response;
  response.name = "\xC3\xA4";
  response.warnings[0] = {"\xC3\xB6"};
  const AnsweredRun run(response, Print::ALWAYS);
  EXPECT_THAT(cellsOf(*run.sink.tables.at(0)), ElementsAre("Viewer: \xC3\xA4"));
  EXPECT_EQ(run.sink.messages.at(0).message.sublist.at(0).text, "\xC3\xB6");
}

TEST(PerformExport, ReportsAnXmlPlatformThatCannotBeMadeReady) {
  BpProcedure procedure("Output Export", 2);
  const RecordingSink sink;
  const PerformExport::PerformExportData standard(procedure, Print::NEVER,
                                                  [] { throw std::runtime_error("no parser"); });
  const PerformExport::PerformExportData other(procedure, Print::NEVER, [] { throw 1; });
  ASSERT_EQ(sink.messages.size(), 2U);
  EXPECT_EQ(renderText(sink.messages[0].message), "Failed to export output no parser...");
  EXPECT_EQ(renderText(sink.messages[1].message), "Failed to export output...");
  for (const OutputMessageRecord& record : sink.messages) {
    EXPECT_EQ(record.show, 2);
    EXPECT_EQ(record.level, 3);
  }
}

TEST(PerformExport, ReportsWhatASinkThrowsAtTheSummary) {
  class FailingSink : public OutputSink {
    void note(const NoteRecord&) override { throw std::runtime_error("no room"); }
  };
  FailingSink failing;
  const SinkRegistration registration(failing);
  const AnsweredRun run(ExportResponse(), Print::ALWAYS);
  EXPECT_THAT(run.said(), ElementsAre("3: Failed to export output no room..."));
}

TEST(PerformExport, PassesItsNamesAndItsDocumentOn) {
  FakeHost host;
  host.exportAnswer = exportResponseXml(failure(6));
  const AdapterRegistration adapter(&host);
  const RecordingSink sink;
  BpProcedure procedure("Output Export", 2);
  PerformExport run(procedure, Print::ALWAYS);
  run.setDocFileName("a.pdf");
  run.setImageRootName("img");
  run.process("<x/>");
  host.exportAnswer = exportResponseXml(failure(7));
  run.process("<y/>");
  EXPECT_THAT(host.exportDocuments, ElementsAre("<x/>", "<y/>"));
  ASSERT_EQ(sink.messages.size(), 2U);
  EXPECT_EQ(renderText(sink.messages[0].message), "a.pdf not a valid file name...");
  EXPECT_EQ(renderText(sink.messages[1].message), "img is not a valid root name.");
}

}  // namespace
}  // namespace vornwout
