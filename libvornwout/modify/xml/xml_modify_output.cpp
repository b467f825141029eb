#include "libvornwout/modify/xml/xml_modify_output.h"

#include "libvornwout/modify/xml/xml_utilities.h"

namespace vornwout {

xmlModifyOutput::xmlModifyOutput(std::string& document, const std::string& documentName,
                                 ModifySelect& select, const CommandSpec& spec,
                                 const ParserMessage& messages, bool debug)
    : root_(document, "modifyOutputObject"), select_(select), spec_(spec), messages_(messages) {
  root_.attribute("documentName", XMLUtilities::genericToUTF8(documentName));
  if (debug) root_.attribute("debug", true);
  root_.beginContent();
}

bool xmlModifyOutput::populateXML() {
  const bool accepted = select_.populateSpecification(spec_, messages_, root_.document());
  root_.end();
  return accepted;
}

}  // namespace vornwout
