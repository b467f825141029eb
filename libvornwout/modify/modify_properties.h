// OBJECTPROPERTIES: what every kind of object has: whether it is shown, its label in the outline,
// its size.
//
// Mistakes in a size are of two kinds: one that is too large, or is no pair, refuses the command;
// a member that is no size at all, or too small, is only reported, deliberately, and what was read
// of the pair is sent.
#pragma once

#include <string>

#include "libvornwout/modify/modifier.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

class ModifyProperties : public Modifier {
 public:
  enum class Visible { kNotGiven, kAsIs, kYes, kNo };

  struct Data {
    bool specified = false;
    Visible visible = Visible::kNotGiven;
    std::string label;  ///< escaped, in the current encoding
    /// Points and percent; 0 keeps the proportions, -1 was not given.
    double width = -1;
    double height = -1;
    double widthPCT = -1;
    double heightPCT = -1;

    /// Reads a size of two tokens; `factor` turns its unit into points, and is 100 for percent.
    /// False after reporting a bad member; a bad width ends the reading.
    bool getSize(const TokenInfoObj& widthToken, const TokenInfoObj& heightToken,
                 const ParserMessage& messages, double factor);
  };

  explicit ModifyProperties(GroupComDescriptor& group);

  bool populateSpecification(const GroupComObj& group, const ParserMessage& messages) override;
  bool specified() const override { return data_.specified; }
  void write(xmlModifyEvent& event) const override;

  /// Appends the element.
  void populateObjectProperties(std::string& document) const;

 private:
  bool readSize(const ParamObj& size, const ParserMessage& messages);

  Data data_;
};

}  // namespace vornwout
