#include "host/controller/embedded_host.h"

#include <stdexcept>
#include <utility>

#include <fmt/format.h>

#include "host/changes/change_engine.h"
#include "host/changes/installed_fonts.h"
#include "host/changes/modify_request_reader.h"
#include "host/export/export_output.h"
#include "platform/exportspec/export_xml.h"
#include "platform/exportspec/schema_reader.h"
#include "platform/strings/localized.h"
#include "platform/text/encoding.h"
#include "platform/text/shortened_text.h"

namespace vornwout {
namespace {

constexpr int kShownColumns = 24;  ///< of a name in a message

}  // namespace

std::string EmbeddedHost::ExportOutput(const std::string& exportXml) {
  try {
    return exportResponseXml(exportOutput(readExportXml(exportXml), controller_));
  } catch (const XmlError& error) {
    throw std::runtime_error(currentEncoding().fromUtf8(
        localized("because the export document cannot be read: ^1", error.what())));
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(currentEncoding().fromUtf8(error.what()));
  }
}

std::string EmbeddedHost::ModifyOutput(const std::string& modifyXml) {
  // What the user sees is "Failed to modify output because ...".
  try {
    return modify(readModifyRequest(modifyXml));
  } catch (const ChangeError& error) {
    throw std::runtime_error(currentEncoding().fromUtf8(localized("because ^1", error.what())));
  }
}

std::string EmbeddedHost::modify(const ModifyRequest& request) {
  const std::vector<Document*> documents = controller_.documentsNamed(request.documentName);
  if (documents.empty()) {
    const bool isName = !request.documentName.empty() && request.documentName != "*";
    throw ChangeError(isName ? localized("there is no open output document named ^1",
                                         textHead(request.documentName, kShownColumns))
                             : localized("no output document is open"));
  }
  ChangeEngine engine(request, isFontInstalled);
  for (Document* document : documents) engine.apply(*document);
  const ChangeCounts counts = engine.counts();
  // The counts come first: the first parentheses of the answer are theirs.
  std::string answer = fmt::format("({},{},{})", counts.selected, counts.modified, counts.deleted);
  for (const std::string& note : engine.notes()) answer += " " + note;
  std::string encoded = currentEncoding().fromUtf8(answer);
  for (const ChangeEngine::Removed& removed : engine.commit()) {
    sink_.objectsRemoved(removed.documentNumber, removed.positions);
  }
  return encoded;
}

void EmbeddedHost::setCommandLog(std::string commandName, std::string sourceText) {
  sink_.setCommandLog(std::move(commandName), std::move(sourceText));
}

std::vector<const Document*> EmbeddedHost::documents() const {
  std::vector<const Document*> result;
  for (const OpenDocument& opened : controller_.documents()) result.push_back(&opened.document);
  return result;
}

std::optional<std::string> EmbeddedHost::activeDocumentLabel() const {
  const Document* active = activeDocument();
  if (active == nullptr) return std::nullopt;
  if (!active->name().empty()) return active->name();
  if (controller_.documents().size() == 1) return std::nullopt;
  return "unnamed document " + std::to_string(active->number());
}

}  // namespace vornwout
