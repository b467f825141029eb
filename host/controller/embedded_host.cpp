#include "host/controller/embedded_host.h"

#include <stdexcept>
#include <utility>

namespace vornwout {

std::string EmbeddedHost::ExportOutput(const std::string&) {
  throw std::runtime_error("This version cannot export output documents.");
}

std::string EmbeddedHost::ModifyOutput(const std::string&) {
  throw std::runtime_error("This version cannot change output documents.");
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
