#include "platform/exportspec/schema_reader.h"

#include <array>

#include <dlfcn.h>

#include "platform/exportspec/schema_texts.h"
#include "platform/exportspec/xml_bounds.h"
#include "platform/exportspec/xml_module.h"

namespace vornwout {
namespace {

constexpr const char* kModule = "libvornxml.so";

XmlModule& loadModule() {
  // Found beside this library, and never closed: its compiled schemas serve the whole process.
  void* const library = dlopen(kModule, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    throw std::runtime_error(std::string("the XML parser cannot be loaded: ") + dlerror());
  }
  const auto entry = reinterpret_cast<XmlModuleEntry>(dlsym(library, kXmlModuleEntry));
  if (entry == nullptr) {
    throw std::runtime_error(std::string(kModule) + " is not the XML parser of this system");
  }
  return *entry();
}

XmlModule& module() {
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
