#include "libvornwout/modify/xml/xml_modify_graphs.h"

#include "libvornwout/modify/xml/xml_element.h"
#include "libvornwout/modify/xml/xml_utilities.h"

namespace vornwout {

void xmlModifyGraphs::populateGraphInfo(const std::vector<std::string>& chartTemplates,
                                        const std::string& styleSheet) {
  XmlElement element(document_, "modifyGraph");
  if (!styleSheet.empty()) {
    element.attribute("styleSheet", XMLUtilities::genericToUTF8(styleSheet));
  }
  // Without a style sheet the element is written with an end tag even when it is empty,
  // deliberately.
  if (styleSheet.empty() || !chartTemplates.empty()) element.beginContent();
  for (const std::string& content : chartTemplates) {
    appendTextElement(document_, "chartTemplate", XMLUtilities::genericToUTF8(content));
  }
  element.end();
}

}  // namespace vornwout
