// What the module with the XML parser gives the platform; see schema_reader.h.
#pragma once

#include "platform/exportspec/schema_reader.h"

namespace vornwout {

class XmlModule {
 public:
  virtual ~XmlModule() = default;
  /// Throws std::runtime_error when the parser cannot be made ready.
  virtual void initialize() = 0;
  /// `schema` is the text of the schema; the compiled one is kept under `number`.
  virtual void read(int number, std::string_view schema, std::string_view xml,
                    const ElementReceiver& receive) = 0;
};

/// The one function of the module, by this name.
inline constexpr const char* kXmlModuleEntry = "vornXmlModule";
using XmlModuleEntry = XmlModule* (*)();

}  // namespace vornwout
