// OUTPUT EXPORT: collects what is to be exported and how, ties the subcommands together, and lets
// the host carry it out.
//
// Entry point: outexport_(). Each subcommand is read into its part of one ExportSpec, EMF and
// TIF here, the others by classes of their own. Errors of one subcommand do not keep the others
// from being read or exported. The host is asked for by the run alone, perform_export.h.
#include <string>
#include <vector>

#include "libvornwout/export/export_file_keywords.h"
#include "libvornwout/export/output_export_bmp_data.h"
#include "libvornwout/export/output_export_contents_data.h"
#include "libvornwout/export/output_export_doc_data.h"
#include "libvornwout/export/output_export_eps_data.h"
#include "libvornwout/export/output_export_global_data.h"
#include "libvornwout/export/output_export_html_data.h"
#include "libvornwout/export/output_export_jpg_data.h"
#include "libvornwout/export/output_export_pdf_data.h"
#include "libvornwout/export/output_export_png_data.h"
#include "libvornwout/export/output_export_ppt_data.h"
#include "libvornwout/export/output_export_report_data.h"
#include "libvornwout/export/output_export_text_data.h"
#include "libvornwout/export/output_export_xls_data.h"
#include "libvornwout/export/perform_export.h"
#include "libvornwout/frame/blame.h"
#include "libvornwout/frame/command_frame.h"
#include "libvornwout/frame/constants.h"
#include "libvornwout/frame/output_commands.h"
#include "platform/exportspec/export_xml.h"
#include "platform/strings/localized.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

constexpr const char* kCommand = "OUTPUT EXPORT";
constexpr const char* kTitle = "Output Export";

constexpr const char* kSeveralImageTypes = localizable(
    "Exporting to more than one image type in a single OUTPUT EXPORT command is not allowed...");
constexpr const char* kSeveralDocumentTypes = localizable(
    "Exporting to more than one document type in a single OUTPUT EXPORT command is not allowed.");
// REPORT takes images as well; that the text names two types alone is deliberate.
constexpr const char* kNoImagesHere = localizable(
    "Image file formats cannot be specified for document types other than HTML and TEXT...");

/// EMF or TIF, which have nothing but what all types of image have.
template <typename Option>
class PlainImage {
 public:
  PlainImage(CommandDescriptor& command, Option& option, const char* name)
      : option_(option), name_(name) {
    SubComDescriptor subcommand = imageSubcommand(name);
    subcommand.addParamDesc(percentSizeKeyword());
    command.addSubComDesc(std::move(subcommand));
  }

  /// 1 when the subcommand was given and its values accepted, else 0.
  int populateSpecification(CommandSpec& spec, const ParserMessage& messages,
                            bool imageRootRequired, std::string& imageRoot) {
    const SubComObj* subcommand = spec.getSubComObj(name_);
    if (subcommand == nullptr) return 0;
    readImageRootInto(option_, imageRoot, *subcommand, messages, imageRootRequired);
    return countOption(option_, readPercentSize(*subcommand, messages, option_));
  }

 private:
  Option& option_;
  const char* name_;
};

/// The ExportSpec with the objects that fill it, in the order in which the subcommands are
/// declared.
struct Subcommands {
  explicit Subcommands(CommandDescriptor& command)
      : global(command, exportSpec.global),
        contents(command, exportSpec.contents),
        doc(command, exportSpec.doc),
        html(command, exportSpec.html),
        report(command, exportSpec.report),
        pdf(command, exportSpec.pdf),
        ppt(command, exportSpec.ppt),
        text(command, exportSpec.text),
        xls(command, exportSpec.xls, "XLS"),
        xlsx(command, exportSpec.xlsx, "XLSX"),
        xlsm(command, exportSpec.xlsm, "XLSM"),
        bmp(command, exportSpec.bmp),
        emf(command, exportSpec.emf, "EMF"),
        eps(command, exportSpec.eps),
        jpg(command, exportSpec.jpg),
        png(command, exportSpec.png),
        tif(command, exportSpec.tif, "TIF") {}

  ExportSpec exportSpec;
  OutputExportGlobalData global;
  OutputExportContentsData contents;
  OutputExportDocData doc;
  OutputExportHTMLData html;
  OutputExportReportData report;
  OutputExportPDFData pdf;
  OutputExportPPTData ppt;
  OutputExportTextData text;
  OutputExportXLSData xls;
  OutputExportXLSData xlsx;
  OutputExportXLSData xlsm;
  OutputExportBMPData bmp;
  PlainImage<ExportEMFSpec> emf;
  OutputExportEPSData eps;
  OutputExportJPGData jpg;
  OutputExportPNGData png;
  PlainImage<ExportTIFSpec> tif;
  // The last document and the last image that are given set these; more than one of a kind is
  // refused.
  std::string documentFile;
  std::string imageRoot;
};

/// Reads HTML, REPORT and TEXT, with which images may be given; how many were accepted.
int readDocumentsWithImages(Subcommands& subcommands, CommandSpec& spec,
                            const ParserMessage& messages) {
  std::string& file = subcommands.documentFile;
  int count = subcommands.html.populateSpecification(spec, messages, file);
  count += subcommands.report.populateSpecification(spec, messages, file);
  count += subcommands.text.populateSpecification(spec, messages, file);
  return count;
}

int readImages(Subcommands& subcommands, CommandSpec& spec, const ParserMessage& messages,
               bool rootRequired) {
  std::string& root = subcommands.imageRoot;
  int count = subcommands.bmp.populateSpecification(spec, messages, rootRequired, root);
  count += subcommands.emf.populateSpecification(spec, messages, rootRequired, root);
  count += subcommands.eps.populateSpecification(spec, messages, rootRequired, root);
  count += subcommands.jpg.populateSpecification(spec, messages, rootRequired, root);
  count += subcommands.png.populateSpecification(spec, messages, rootRequired, root);
  count += subcommands.tif.populateSpecification(spec, messages, rootRequired, root);
  return count;
}

/// Reads the documents with which no images may be given.
int readOtherDocuments(Subcommands& subcommands, CommandSpec& spec, const ParserMessage& messages) {
  std::string& file = subcommands.documentFile;
  int count = subcommands.doc.populateSpecification(spec, messages, file);
  count += subcommands.pdf.populateSpecification(spec, messages, file);
  count += subcommands.ppt.populateSpecification(spec, messages, file);
  count += subcommands.xls.populateSpecification(spec, messages, file);
  count += subcommands.xlsx.populateSpecification(spec, messages, file);
  count += subcommands.xlsm.populateSpecification(spec, messages, file);
  return count;
}

void dropImages(ExportSpec& spec) {
  spec.bmp.setOptionPresent(false);
  spec.emf.setOptionPresent(false);
  spec.eps.setOptionPresent(false);
  spec.jpg.setOptionPresent(false);
  spec.png.setOptionPresent(false);
  spec.tif.setOptionPresent(false);
}

/// Fills the ExportSpec; true when there is something to export, false after reporting.
bool readCommand(Subcommands& subcommands, CommandSpec& spec, const ParserMessage& messages) {
  subcommands.global.populateSpecification(spec, messages);
  subcommands.contents.populateSpecification(spec, messages);
  const int withImages = readDocumentsWithImages(subcommands, spec, messages);
  const int images = readImages(subcommands, spec, messages, withImages == 0);
  if (images > 1) OutputCommands::ErrorWarn0(kSeveralImageTypes, kLevelWarning);
  const int withoutImages = readOtherDocuments(subcommands, spec, messages);
  if (withoutImages != 0 && images != 0) {
    OutputCommands::ErrorWarn0(kNoImagesHere, kLevelWarning);
    dropImages(subcommands.exportSpec);
  }
  const int documents = withImages + withoutImages;
  if (documents > 1) {
    OutputCommands::ErrorWarn0(kSeveralDocumentTypes, kLevelError);
    return false;
  }
  if (documents + images > 0) return true;
  // It is the whole command that lacks something, not the value that was read last.
  blame(nullptr);
  messages.SubComRequired({"DOC", "HTML", "REPORT", "PDF", "PPT", "TEXT", "XLS", "XLSX", "XLSM",
                           "BMP", "EMF", "EPS", "JPG", "PNG", "TIF"});
  return false;
}

void outputExport() {
  CommandNames names{kCommand, kCommand, kTitle};
  names.titledDescriptor = true;
  names.asksController = false;
  names.messagesLast = true;
  CommandFrame frame(names);
  Subcommands& subcommands = frame.makePart<Subcommands>();
  if (!frame.parse()) return;
  if (!readCommand(subcommands, frame.spec(), frame.messages())) return;

  std::string xml;
  ExportXML().convertToXML(subcommands.exportSpec, xml);
  PerformExport exportRun(frame.procedure(), subcommands.exportSpec.global.getPrintOption());
  exportRun.setDocFileName(subcommands.documentFile);
  exportRun.process(xml);
}

}  // namespace
}  // namespace vornwout

void outexport_() { vornwout::outputExport(); }
