// TABLE: changes whole pivot tables: title and summary, transposition, sorting by one column, value
// format, table look, the layer that is shown.
//
// Reading a group stops at the first mistake but for SELECTEDLAYER, which is looked at in any case.
// The table look is found when it is read and embedded, as its file stands, when it is written.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "libvornwout/modify/modifier.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

class ModifyTable : public Modifier {
 public:
  /// A layer and one of its categories, each by label or by position: 0 stands for all layers and
  /// for the last category.
  template <typename Layer, typename Category>
  using LayerPairs = std::vector<std::pair<Layer, Category>>;

  explicit ModifyTable(GroupComDescriptor& group);

  bool populateSpecification(const GroupComObj& group, const ParserMessage& messages) override;
  bool specified() const override { return data_.specified; }
  void write(xmlModifyEvent& event) const override;

  /// Texts are escaped already where they are text of the user, and in the current encoding.
  const std::string& getTableTitle() const { return data_.tableTitle; }
  const std::string& getTableSummary() const { return data_.tableSummary; }
  bool getTranspose() const { return data_.transpose; }
  /// In upper case, unchecked: the host knows the formats.
  const std::string& getFormat() const { return data_.format; }
  bool useDefaultTableLook() const { return data_.useDefaultTableLook; }
  /// The content of the table-look file from its "<tableProperties" on, or the whole of it; empty
  /// when no file was given. Read anew with every call.
  std::string getTableLook() const;
  bool isSortSpecified() const { return data_.sortSpecified; }
  const std::string& getSortLabel() const { return data_.sortLabel; }
  /// -1 when none was given.
  std::int32_t getSortPosition() const { return data_.sortPosition; }
  bool getSortAscending() const { return data_.sortAscending; }
  const LayerPairs<std::string, std::string>& getLayerStrStr() const { return data_.layerStrStr; }
  const LayerPairs<std::int32_t, std::string>& getLayerIntStr() const { return data_.layerIntStr; }
  const LayerPairs<std::string, std::int32_t>& getLayerStrInt() const { return data_.layerStrInt; }
  const LayerPairs<std::int32_t, std::int32_t>& getLayerIntInt() const { return data_.layerIntInt; }
  /// True when a layer was given in any way.
  bool getLayerPositions() const;

 private:
  struct Data {
    bool specified = false;
    bool transpose = false;
    bool sortAscending = true;
    bool sortSpecified = false;
    bool useDefaultTableLook = false;
    std::string tableLook;  ///< a path
    std::string tableTitle;
    std::string tableSummary;
    std::string sortLabel;
    std::string format;
    std::int32_t sortPosition = -1;
    LayerPairs<std::string, std::string> layerStrStr;
    LayerPairs<std::int32_t, std::string> layerIntStr;
    LayerPairs<std::string, std::int32_t> layerStrInt;
    LayerPairs<std::int32_t, std::int32_t> layerIntInt;
  };

  bool readLook(const ParamObj& look, const ParserMessage& messages);
  bool readSort(const ParamObj& sort, const ParserMessage& messages);
  bool readSortDirection(const ParamObj& direction, const ParserMessage& messages);
  bool readLayers(const ParamObj& layers, const ParserMessage& messages, bool accepted);

  /// Kept, for its qualifiers are what SORT is read back with.
  ParamDescriptor sortDescriptor_;
  Data data_;
};

}  // namespace vornwout
