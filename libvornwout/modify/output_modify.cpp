// OUTPUT MODIFY: writes the modify document of its groups, hands it to the host, and tells what the
// host made of it.
//
// Entry point: outmodify_(). Nothing is sent unless every group was accepted. What the host throws
// is reported and leaves an empty answer; only its unwinding to the caller passes through.
#include <exception>
#include <iostream>
#include <string>

#include "libvornwout/frame/command_frame.h"
#include "libvornwout/frame/constants.h"
#include "libvornwout/frame/output_commands.h"
#include "libvornwout/modify/modify_result.h"
#include "libvornwout/modify/modify_select.h"
#include "libvornwout/modify/xml/xml_modify_output.h"
#include "libvornwout/modify/xml/xml_utilities.h"
#include "platform/adapter/go_to_caller.h"
#include "platform/files/path_factory.h"
#include "platform/strings/dictionary.h"
#include "platform/strings/localized.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

constexpr const char* kCommand = "OUTPUT MODIFY";
constexpr const char* kTitle = "Output Modify";
constexpr const char* kName = "NAME";
constexpr const char* kDebug = "DEBUG";
constexpr const char* kReport = "REPORT";
constexpr const char* kPrintReport = "PRINTREPORT";

/// What stands in the main subcommand and in REPORT.
struct Request {
  std::string documentName = "*";  ///< escaped; the active document when NAME is absent
  bool debug = false;
  bool printReport = false;
};

void declareGrammar(CommandDescriptor& command) {
  SubComDescriptor main("", UPSpecTypes::kKeywords, false, false);
  main.addParamDesc(kName, UPSpecTypes::kRawTokens, false, true);
  main.addParamDesc(kDebug, UPSpecTypes::kRawTokens, false, true);
  command.addSubComDesc(std::move(main));
  SubComDescriptor report(kReport, UPSpecTypes::kKeywords, false, false);
  ParamDescriptor printReport(kPrintReport, UPSpecTypes::kDeclaredValue, false, true);
  printReport.addStringValue(kNo);
  printReport.addStringValue(kYes);
  report.addParamDesc(std::move(printReport));
  command.addSubComDesc(std::move(report));
}

/// The name of the document, empty for ALL.
std::string readName(const ParamObj& name) {
  std::vector<TokenInfoObj> tokens;
  name.getTokenList(tokens);
  if (tokens.size() == 1 && tokens[0].getOperatorCode() == static_cast<int>(OperatorCode::kAll)) {
    return {};
  }
  return XMLUtilities::escapeHTML(name.getStringToken());
}

Request readRequest(const CommandSpec& spec) {
  Request request;
  const GroupComObj& global = spec.getGlobalGroupObj();
  if (const SubComObj* main = global.getSubComObj("")) {
    if (const ParamObj* name = main->getParamObj(kName)) request.documentName = readName(*name);
    request.debug = main->getParamObj(kDebug) != nullptr;
  }
  if (const SubComObj* report = global.getSubComObj(kReport)) {
    const ParamObj* print = report->getParamObj(kPrintReport);
    request.printReport = print != nullptr && print->isStringValueCase(kYes);
  }
  return request;
}

void reportFailure(const char* cause) {
  OutputCommands::ErrorWarn("Failed to modify output ^1...", cause, kLevelError);
}

/// Lets the host carry out the document. What it throws is reported, after which the answer is
/// empty; only its unwinding to the caller passes through.
std::string sendToHost(HostAdapter& host, const std::string& document) {
  try {
    return host.ModifyOutput(document);
  } catch (const VornGoToCaller&) {
    throw;
  } catch (const std::exception& exception) {
    reportFailure(exception.what());
  } catch (const char* text) {
    reportFailure(text);
  } catch (const std::string& text) {
    reportFailure(text.c_str());
  } catch (...) {
    OutputCommands::ErrorWarn0("Failed to modify output...", kLevelError);
  }
  return {};
}

void warnOfValues(const ModifyResult& result) {
  for (const std::string& format : result.invalidFormats) {
    OutputCommands::ErrorWarn("Value for FORMAT (^1) is not a valid display format.",
                              format.c_str(), kLevelWarning);
  }
  for (const std::string& font : result.invalidFonts) {
    OutputCommands::ErrorWarn("Specified FONT (^1) is not installed.", font.c_str(), kLevelWarning);
  }
}

void writeSummary(BpProcedure& procedure, const ModifyResult& result) {
  FacSTDictionary dictionary(
      PathFactory::getPathInstance(PathFactory::kInstallation).getStringTableLocation());
  dictionary.SetProcedure(kTitle);
  BpPivotTable table = procedure.PivotTable(BpString("Output Modify Summary Table", true),
                                            BpString("Output Modify Summary", true));
  BpDimension counts = table.Dimension(BpString(dictionary.LookUp("E60801"), true), kSortAsMade);
  counts.Position(kPlaceRows, kFirstInPlace, true, false);
  const auto addCount = [&](const char* label, long count) {
    counts.Category(BpString(label, true))
        .Cell(BpNumber(static_cast<double>(count), procedure.Count()));
  };
  addCount(localizable("Objects Selected"), result.selected);
  addCount(localizable("Objects Modified"), result.modified);
  addCount(localizable("Objects Deleted"), result.deleted);
}

void outputModify() {
  CommandFrame frame({kCommand, kTitle, kTitle});
  declareGrammar(frame.grammar());
  ModifySelect& select = frame.makePart<ModifySelect>();
  if (!frame.parse()) return;
  HostAdapter* const host = GetAdapter();
  if (host == nullptr) return OutputCommands::ErrorWarn(kNotImplemented, kCommand, kLevelError);

  const Request request = readRequest(frame.spec());
  std::string document;
  const bool accepted = xmlModifyOutput(document, request.documentName, select, frame.spec(),
                                        frame.messages(), request.debug)
                            .populateXML();
  if (request.debug) std::cout << document << std::endl;
  if (!accepted) return;
  const std::string answer = sendToHost(*host, document);
  if (request.debug) std::cout << "\n\nReturned Value is : " << answer << std::endl;
  const ModifyResult result = readModifyResult(answer);
  warnOfValues(result);
  if (request.printReport && result.hasCounts) writeSummary(frame.procedure(), result);
}

}  // namespace
}  // namespace vornwout

void outmodify_() { vornwout::outputModify(); }
