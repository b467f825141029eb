#include "libvornwout/export/perform_export_data.h"

#include <array>
#include <cstddef>
#include <exception>

#include "libvornwout/frame/constants.h"
#include "libvornwout/frame/output_commands.h"
#include "platform/adapter/go_to_caller.h"
#include "platform/strings/localized.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

constexpr int kNotesNumber = 2;
constexpr int kMaxColumnWidth = 200;  // points
constexpr const char* kViewerLabel = localizable("Viewer");
constexpr const char* kDocumentFileLabel = localizable("Document File");

/// By the warning codes; all but the first are keys of the host's texts.
constexpr std::array<const char*, kWarningCodes> kWarningTexts = {
    localizable("The following pivot tables contain a very long row label..."),
    localizable("maxColLimitExceeded..."),
    localizable("cellCharacterLimitExceeded..."),
};

/// What takes the placeholder's place in the text of an error.
enum class ErrorArgument { kNone, kViewerName, kDocFileName, kImageRootName, kUnspecified };

struct ErrorText {
  const char* text;
  ErrorArgument argument = ErrorArgument::kNone;
};

constexpr const char* kFailedBecause = localizable("Failed to export output ^1...");

/// By the error codes from 1 on. The texts without a sentence are keys of the host's texts.
constexpr std::array kErrorTexts = {
    ErrorText{localizable("The OUTPUT EXPORT command requires an open Viewer document.")},
    ErrorText{localizable("The specified Viewer document ^1 does not exist."),
              ErrorArgument::kViewerName},
    ErrorText{localizable("The Viewer document is empty. There is nothing to export.")},
    ErrorText{localizable("It was requested that all visible items be exported but...")},
    ErrorText{
        localizable("It was requested that only graphics be exported but no graphics were found.")},
    ErrorText{localizable("^1 not a valid file name..."), ErrorArgument::kDocFileName},
    // OUTPUT EXPORT never sets the root's name, so that nothing is shown for it, deliberately.
    ErrorText{localizable("^1 is not a valid root name."), ErrorArgument::kImageRootName},
    ErrorText{localizable("Enhanced Metafile (EMF) format is available only on Windows systems.")},
    ErrorText{localizable("PowerPoint (PPT) format is available only on Windows systems.")},
    ErrorText{localizable(
        "In order to export to PowerPoint (PPT) format, PowerPoint must be installed.")},
    ErrorText{localizable("xlsMaxColumnsLimitExceeded...")},
    ErrorText{localizable("xlsMaxCellCharacterLimitExceeded...")},
    ErrorText{localizable("maxSheetNameCharacterLimitExceeded...")},
    ErrorText{localizable("xlsSheetNameInvalid...")},
    ErrorText{kFailedBecause, ErrorArgument::kUnspecified},
};

void reportFailure(const std::string& cause, bool isOurText = false) {
  OutputCommands::errorWarnAlways(kFailedBecause, cause, kLevelError, isOurText);
}

void reportUnknownFailure() {
  OutputCommands::ErrorWarn0("Failed to export output...", kLevelError);
}

void reportWarnings(const ResponseSpec& response) {
  for (std::size_t code = 0; code < kWarningTexts.size(); ++code) {
    const std::vector<std::string>& names = response.getWarnings(static_cast<WARNING_CODE>(code));
    if (names.empty()) continue;
    BpComposite message(kWarningTexts[code], true);
    message.Sublist();
    for (const std::string& name : names) message.Add(BpString(name, false));
    message.EndSublist();
    message.Finish();
    BpError(message, kShowMessage, kLevelWarning);
  }
}

}  // namespace

PerformExport::PerformExportData::PerformExportData(BpProcedure& procedure,
                                                    ExportGlobalSpec::PRINT_OPTION printOption,
                                                    void (*makeReady)())
    : procedure_(procedure), printOption_(printOption) {
  try {
    makeReady();
  } catch (const std::exception& exception) {
    reportFailure(exception.what());
  } catch (...) {
    reportUnknownFailure();
  }
}

void PerformExport::PerformExportData::process(const std::string& exportXml) {
  try {
    run(exportXml);
  } catch (const VornGoToCaller&) {
    throw;
  } catch (const std::exception& exception) {
    reportFailure(exception.what());
  } catch (...) {
    reportUnknownFailure();
  }
}

void PerformExport::PerformExportData::run(const std::string& exportXml) {
  // No host at all is to a user what a host is that does not answer.
  HostAdapter* const host = GetAdapter();
  const std::string responseXml = host == nullptr ? std::string() : host->ExportOutput(exportXml);
  if (responseXml.empty())
    return reportFailure(localizable("Response not received from Client"), true);
  ResponseSpec response;
  if (!response.processResponse(responseXml)) {
    return reportFailure(currentEncoding().fromUtf8(response.getParserError()));
  }
  createPivotTables(response, responseXml);
}

void PerformExport::PerformExportData::createPivotTables(const ResponseSpec& response,
                                                         const std::string& /*responseXml*/) {
  using enum ExportGlobalSpec::PRINT_OPTION;
  if (response.getSuccessCode() && printOption_ == ALWAYS) {
    if (response.warningsFound()) reportWarnings(response);
    writeSummary(response);
  } else if (printOption_ != NEVER) {
    reportError(response);
  }
}

void PerformExport::PerformExportData::writeSummary(const ResponseSpec& response) {
  const BpString viewer(kViewerLabel, true);
  const BpString viewerName(response.getName(), false);
  const BpString document(kDocumentFileLabel, true);
  const BpString documentFile(response.getDocumentFile(), false);
  const BpString imageRoot(response.getImageRoot(), false);
  const BpNumber imageCount(response.getImageCount(), procedure_.Count());

  if (!response.getName().empty()) AddNotes(kNotesNumber, viewer, viewerName);
  if (!response.getDocumentFile().empty()) AddNotes(kNotesNumber, document, documentFile);
  // Deliberately also where there are no images.
  AddNotes(kNotesNumber, BpString("Image File Count", true), imageCount);
  AddNotes(kNotesNumber, BpString("Image File Root Name", true), imageRoot);

  BpPivotTable table = procedure_.PivotTable(BpString("Export Summary", true),
                                             BpString("ExportSummary", true), false);
  table.MaxDataColumnWidth(kMaxColumnWidth);
  BpDimension contents = table.Dimension(BpString("Contents", true), kSortAsMade);
  contents.Position(kPlaceRows, kFirstInPlace, true, false);
  if (!response.getName().empty()) contents.Category(viewer).Cell(viewerName);
  if (!response.getDocumentFile().empty()) contents.Category(document).Cell(documentFile);
  if (response.getImageRoot().empty()) return;
  BpGroup images = contents.Group(BpString("Image Files", true), true, kSortAsMade);
  if (response.isImageCountPresent()) {
    // A key in place of a text is what stands there, deliberately.
    images.Category(BpString("E60352", true)).Cell(imageCount);
  }
  images.Category(BpString("Root Name", true)).Cell(imageRoot);
  images.Category(BpString("Format", true)).Cell(BpString(response.getImageFormat(), false));
}

void PerformExport::PerformExportData::reportError(const ResponseSpec& response) const {
  const int code = response.getErrorCode();
  // Other codes have no text and say nothing, deliberately; 0 is a success.
  if (code < 1 || code > static_cast<int>(kErrorTexts.size())) return;
  const ErrorText& error = kErrorTexts[static_cast<std::size_t>(code) - 1];
  switch (error.argument) {
    case ErrorArgument::kNone:
      return OutputCommands::ErrorWarn0(error.text, kLevelError);
    case ErrorArgument::kViewerName:
      return OutputCommands::errorWarnAlways(error.text, response.getName(), kLevelError);
    case ErrorArgument::kDocFileName:
      return OutputCommands::errorWarnAlways(error.text, docFileName_, kLevelError);
    case ErrorArgument::kImageRootName:
      return OutputCommands::errorWarnAlways(error.text, imageRootName_, kLevelError);
    case ErrorArgument::kUnspecified:
      return OutputCommands::errorWarnAlways(error.text, localizable("Unspecified error"),
                                             kLevelError, true);
  }
}

}  // namespace vornwout
