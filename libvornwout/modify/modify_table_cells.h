// TABLECELLS: changes chosen cells of the selected tables: which ones, along which dimension, under
// which condition, and what is done to them. It may stand several times in a group; each occurrence
// is one element.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "libvornwout/modify/modifier.h"
#include "libvornwout/modify/modify_values.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

/// What one occurrence asks for. A number that was not given is -1, a text empty.
struct tableCell {
  bool correlation = false;
  bool count = false;
  bool mean = false;
  bool median = false;
  bool percent = false;
  bool residual = false;
  bool significance = false;
  bool body = false;
  bool headers = false;
  bool footnotes = false;
  bool title = false;
  bool caption = false;
  std::vector<std::string> selectLabels;  ///< escaped
  std::vector<std::int32_t> selectPositions;
  bool selectColumns = false;
  bool selectBoth = true;
  bool selectAll = false;
  bool selectMissing = false;
  std::int32_t top = -1;
  std::int32_t bottom = -1;
  std::string selectExpression;   ///< escaped
  std::int32_t columnWidth = -1;  ///< points
  std::string applyTo;
  bool revertToDefault = false;
  std::string format;
  std::string font;
  double fontSize = -1;  ///< points
  FontStyle style;
  RgbColor textColor;
  RgbColor backgroundColor;
  bool replaceSpecified = false;
  bool replaceEmpty = false;
  std::string replaceString;
  double replaceValue = -1;
};

class ModifyTableCells : public Modifier {
 public:
  struct Data {
    std::vector<tableCell> cells;  ///< one for each occurrence, in order

    /// Append one attribute.
    static void append(std::string& document, const char* name, const std::string& value);
    static void append(std::string& document, const char* name, int value);
  };

  explicit ModifyTableCells(GroupComDescriptor& group);

  /// Reads the occurrences in order and stops behind the first that is wrong.
  bool populateSpecification(const GroupComObj& group, const ParserMessage& messages) override;
  bool specified() const override { return !data_.cells.empty(); }
  void write(xmlModifyEvent& event) const override;

  /// Appends one element for each occurrence. Texts are, deliberately, written as they are held, in
  /// the current encoding.
  void populateTableCellsInfo(std::string& document) const;

 private:
  Data data_;
};

}  // namespace vornwout
