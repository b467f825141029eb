// The export document: what OUTPUT EXPORT hands to a host.
//
// ExportXML::convertToXML() writes an ExportSpec, readExportXml() gives a host the ExportSpec back;
// docs/export-documents.md has the format, docs/export-document.xsd its schema. One attribute
// stands for each setting that was set, one element for each subcommand that was given.
#pragma once

#include <string>
#include <string_view>

#include "platform/exportspec/export_spec.h"

namespace vornwout {

class ExportXML {
 public:
  /// Appends nothing to `xml` but makes it the document, UTF-8. The texts of `spec` are in the
  /// current encoding; a character that XML cannot hold becomes U+FFFD.
  void convertToXML(const ExportSpec& spec, std::string& xml) const;
};

/// The ExportSpec that a document gives; its texts are UTF-8. Throws XmlError for what the
/// schema does not allow.
ExportSpec readExportXml(std::string_view xml);

}  // namespace vornwout
