// INDEXING: numbers the selected objects with numbers, letters or roman numerals.
//
// The start value is given in the style of the index and written as a number. Letters count in
// base 26 without a zero: a is 1, z 26, aa 27. Roman numerals are read from the left:
//  - a subtractive pair (CM, CD, XC, XL, IX, IV) is taken before a single letter;
//  - a single letter stands four times at most; behind CM an M, and behind CD a C, once at most;
//  - behind XC, XL, IX and IV only letters and pairs stand whose first letter is worth less than
//    the pair's smaller one, as is usual: XCV and XCIX are numerals, XCX, XLX, IXI and IVI are not.
// An empty start value, INDEXSTART="", is a text that was given: letters and numerals of none are
// 0. L is worth 500 like D, deliberately: hosts have been sent these numbers ever since.
#pragma once

#include <string>

#include "libvornwout/modify/modifier.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

class ModifyIndexing : public Modifier {
 public:
  explicit ModifyIndexing(GroupComDescriptor& group);

  bool populateSpecification(const GroupComObj& group, const ParserMessage& messages) override;
  bool specified() const override { return data_.specified; }
  void write(xmlModifyEvent& event) const override;

  /// Appends the element.
  void populateIndexing(std::string& document) const;

 private:
  struct Data {
    bool specified = false;
    int indexType = 0;
    /// The one value that a group without INDEXSTART deliberately keeps from the group before.
    int indexStart = 1;
  };

  /// `typeGiven` may be null, for numbers.
  bool readStart(const ParamObj* typeGiven, const ParamObj& start, const ParserMessage& messages);

  Data data_;
};

}  // namespace vornwout
