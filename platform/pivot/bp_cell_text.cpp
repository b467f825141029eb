#include "platform/pivot/bp_cell_text.h"

#include "platform/text/encoding.h"

namespace vornwout {
namespace {

CellText textCell(CellText::Kind kind, std::string_view text, bool translatable) {
  CellText cell;
  cell.kind = kind;
  cell.text = currentToUtf8(text);
  cell.translatable = translatable;
  return cell;
}

CellText numberCell(double value, BpFormatSpec format) {
  CellText cell;
  cell.kind = CellText::Kind::kNumber;
  cell.number = value;
  cell.format = format;
  return cell;
}

}  // namespace

BpString::BpString(std::string_view text, bool translatable)
    : BpCellText(textCell(CellText::Kind::kString, text, translatable)) {}

BpString BpString::secret(std::string_view text) {
  BpString string(text, false);
  string.data_.secret = true;
  return string;
}

BpNumber::BpNumber(double value, BpFormatSpec format) : BpCellText(numberCell(value, format)) {}

BpComposite::BpComposite(std::string_view text, bool translatable)
    : BpCellText(textCell(CellText::Kind::kComposite, text, translatable)) {}

BpComposite& BpComposite::Add(const BpCellText& argument) {
  // The copy is taken first: a composite may be added to itself.
  CellText copy = argument.data();
  (inSublist_ ? data_.sublist : data_.arguments).push_back(std::move(copy));
  return *this;
}

BpComposite& BpComposite::Sublist() {
  inSublist_ = true;
  data_.hasSublist = true;
  return *this;
}

BpComposite& BpComposite::EndSublist() {
  inSublist_ = false;
  return *this;
}

BpComposite& BpComposite::Finish() { return EndSublist(); }

}  // namespace vornwout
