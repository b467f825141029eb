// TEXTS: changes the text, font, size, style and colour of the selected text objects.
//
// Only what was given is written, so that a host leaves the rest of a text as it is. The colours
// and styles are read as those of TABLECELLS are; modify_values.h has both.
#pragma once

#include <string>

#include "libvornwout/modify/modifier.h"
#include "libvornwout/modify/modify_values.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

class ModifyText : public Modifier {
 public:
  explicit ModifyText(GroupComDescriptor& group);

  bool populateSpecification(const GroupComObj& group, const ParserMessage& messages) override;
  bool specified() const override { return data_.specified; }
  void write(xmlModifyEvent& event) const override;

  /// The new text, its date and time fields filled in and escaped; empty when none was given.
  const std::string& getTextExpression() const { return data_.textExpression; }
  /// As given.
  const std::string& getFontFamily() const { return data_.fontFamily; }
  /// Points; -1 when none was given, or one that is no number.
  double getFontSize() const { return data_.fontSize; }
  bool getRegular() const { return data_.style.regular; }
  bool getRegularSpecified() const { return data_.style.regularSpecified; }
  bool getBold() const { return data_.style.bold; }
  bool getBoldSpecified() const { return data_.style.boldSpecified; }
  bool getItalic() const { return data_.style.italic; }
  bool getItalicSpecified() const { return data_.style.italicSpecified; }
  bool getUnderline() const { return data_.style.underline; }
  bool getUnderlineSpecified() const { return data_.style.underlineSpecified; }
  /// A component of the colour in decimal; empty when none was given.
  std::string getTextRed() const;
  std::string getTextGreen() const;
  std::string getTextBlue() const;

 private:
  struct Data {
    std::string textExpression;
    std::string fontFamily;
    double fontSize = -1;
    bool specified = false;
    FontStyle style;
    RgbColor textColor;
  };
  Data data_;
};

}  // namespace vornwout
