#include "libvornwout/modify/xml/xml_modify_text.h"

#include "libvornwout/modify/modify_text.h"
#include "libvornwout/modify/xml/xml_element.h"
#include "libvornwout/modify/xml/xml_utilities.h"

namespace vornwout {

void xmlModifyText::populateTextInfo(const ModifyText& text) {
  XmlElement element(document_, "modifyText");
  if (!text.getTextExpression().empty()) {
    element.attribute("expression", XMLUtilities::genericToUTF8(text.getTextExpression()));
  }
  if (!text.getFontFamily().empty()) {
    element.attribute("fontFamily", XMLUtilities::genericToUTF8(text.getFontFamily()));
  }
  const std::string red = text.getTextRed();
  const std::string green = text.getTextGreen();
  const std::string blue = text.getTextBlue();
  if (!red.empty() && !green.empty() && !blue.empty()) {
    element.attribute("textRed", red);
    element.attribute("textGreen", green);
    element.attribute("textBlue", blue);
  }
  if (text.getFontSize() > 0) element.attribute("fontSize", text.getFontSize());
  // REGULAR itself is never written: it shows through the three parts that it puts out.
  if (text.getBoldSpecified()) element.attribute("fontBold", text.getBold());
  if (text.getItalicSpecified()) element.attribute("fontItalic", text.getItalic());
  if (text.getUnderlineSpecified()) element.attribute("fontUnderline", text.getUnderline());
  element.end();
}

}  // namespace vornwout
