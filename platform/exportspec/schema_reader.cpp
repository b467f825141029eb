#include "platform/exportspec/schema_reader.h"

#include <array>

#include "platform/exportspec/schema_texts.h"
#include "platform/exportspec/xml_bounds.h"
#include "platform/exportspec/xml_module.h"
#include "platform/files/loaded_module.h"

namespace vornwout {
namespace {

XmlModule& loadModule() {
  try {
    return *reinterpret_cast<XmlModuleEntry>(moduleFunction("libvornxml.so", kXmlModuleEntry))();
  } catch (const ModuleError& error) {
    throw std::runtime_error(std::string("the XML parser cannot be loaded: ") + error.what());
  }
}

XmlModule& module() {
  // Its compiled schemas serve the whole process.
  static XmlModule& loaded = loadModule();
  return loaded;
}

}  // namespace

void initializeXmlPlatform() { module().initialize(); }

void readValidXml(XmlSchema schema, std::string_view xml, const ElementReceiver& receive) {
  checkXmlBounds(xml);
  const int number = static_cast<int>(schema);
  const std::array texts{exportDocumentSchema(), exportResponseSchema()};
  module().initialize();
  module().read(number, texts.at(static_cast<std::size_t>(number)), xml, receive);
}

}  // namespace vornwout
