// What the commands put into tables, notes and messages: strings, numbers, and texts with
// arguments.
//
// All are a BpCellText, which wraps plain data; the derived classes only build it and add no
// members, so each can be passed on as a BpCellText by value or reference without losing anything.
// Texts are given in the current encoding and are UTF-8 from then on.
#pragma once

#include <string_view>
#include <utility>

#include "platform/pivot/cell_text.h"

namespace vornwout {

/// A content of any kind.
class BpCellText {
 public:
  BpCellText() = default;

  const CellText& data() const { return data_; }
  /// A copy that shares nothing with this one.
  BpCellText Replicate() const { return *this; }

 protected:
  explicit BpCellText(CellText data) : data_(std::move(data)) {}

  CellText data_;
  bool inSublist_ = false;  ///< only a BpComposite under construction is
};

/// A text.
class BpString : public BpCellText {
 public:
  /// `translatable` tells the system's own texts from a user's.
  BpString(std::string_view text, bool translatable);
  /// A user's text that is shown and kept nowhere, such as a password.
  static BpString secret(std::string_view text);
};

/// A number and how it is shown.
class BpNumber : public BpCellText {
 public:
  BpNumber(double value, BpFormatSpec format);
};

/// A text with "^1", "^2" and so on, which are replaced when it is shown.
class BpComposite : public BpCellText {
 public:
  BpComposite(std::string_view text, bool translatable);

  /// Fills the next placeholder, or adds a name to the sublist while one is open.
  BpComposite& Add(const BpCellText& argument);
  /// Opens the list of names behind the text; opened again it goes on with the same list.
  BpComposite& Sublist();
  BpComposite& EndSublist();
  /// Ends the composite, and with it a sublist that is still open.
  BpComposite& Finish();
};

/// A footnote.
class BpAnnotation {
 public:
  explicit BpAnnotation(const BpCellText& text) : text_(text) {}

  const CellText& data() const { return text_.data(); }

 private:
  BpCellText text_;
};

}  // namespace vornwout
