#include "libvornwout/modify/xml/xml_modify_table.h"

#include "libvornwout/modify/modify_table.h"
#include "libvornwout/modify/xml/xml_element.h"

namespace vornwout {
namespace {

void textAttribute(XmlElement& element, const char* name, const std::string& text) {
  if (!text.empty()) element.attribute(name, text);
}

template <typename LayerPairs>
void appendLayers(std::string& document, const char* layerName, const char* categoryName,
                  const LayerPairs& pairs) {
  for (const auto& [layer, category] : pairs) {
    XmlElement element(document, "layer");
    element.attribute(layerName, layer);
    element.attribute(categoryName, category);
    element.end();
  }
}

}  // namespace

void xmlModifyTable::populateTableInfo(const ModifyTable& table) {
  XmlElement element(document_, "modifyTable");
  textAttribute(element, "title", table.getTableTitle());
  textAttribute(element, "summary", table.getTableSummary());
  if (table.getTranspose()) element.attribute("transpose", true);
  if (table.isSortSpecified()) {
    if (table.getSortLabel().empty()) {
      element.attribute("sortPosition", table.getSortPosition());
    } else {
      element.attribute("sortLabel", table.getSortLabel());
    }
    element.attribute("ascending", table.getSortAscending());
  }
  textAttribute(element, "format", table.getFormat());
  if (table.useDefaultTableLook()) element.attribute("defaultTableLook", true);

  const std::string look = table.getTableLook();
  if (table.getLayerPositions() || !look.empty()) element.beginContent();
  // By kind of pair, deliberately, in whatever order the pairs were given.
  appendLayers(document_, "layer", "category", table.getLayerStrStr());
  appendLayers(document_, "layer", "categoryInt", table.getLayerStrInt());
  appendLayers(document_, "layerInt", "category", table.getLayerIntStr());
  appendLayers(document_, "layerInt", "categoryInt", table.getLayerIntInt());
  if (!look.empty()) appendTextElement(document_, "tableLook", look);
  element.end();
}

}  // namespace vornwout
