// xmlModifyOutput: the root of the modify document, which tells a host which objects to select and
// what to do to them. docs/modify-document.md has the whole format.
//
// The document has no XML declaration and no white space between elements; every writer appends to
// the one string that the command owns.
#pragma once

#include <string>

#include "libvornwout/modify/modify_select.h"
#include "libvornwout/modify/xml/xml_element.h"

namespace vornwout {

class xmlModifyOutput {
 public:
  /// Begins the document: its root element's start tag. `documentName` is in the current encoding
  /// and escaped already: it is converted to UTF-8 here and escaped no second time. Keeps
  /// references to all but the name.
  xmlModifyOutput(std::string& document, const std::string& documentName, ModifySelect& select,
                  const CommandSpec& spec, const ParserMessage& messages, bool debug);

  /// Writes all modify events and the root's end tag. The document is whole whatever the result;
  /// false says that it must not be sent.
  bool populateXML();

 private:
  XmlElement root_;
  ModifySelect& select_;
  const CommandSpec& spec_;
  const ParserMessage& messages_;
};

}  // namespace vornwout
