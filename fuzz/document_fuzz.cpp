// Feeds bytes to the readers of a stored document's XML: the manifest and the parts.
//
// What is read must come back the same when it is written and read again, and refused input must be
// refused by a StoreError.
#include <cstdint>
#include <memory>
#include <string>

#include "fuzz/fuzz_check.h"
#include "host/store/content_reader.h"
#include "host/store/content_writer.h"
#include "host/store/manifest.h"
#include "host/store/store_error.h"
#include "host/store/xml_reader.h"

namespace vornwout {
namespace {

class NoSource : public ContentSource {
 public:
  ObjectContent load(std::uint64_t) override {
    throw StoreError(StoreError::Kind::kDamaged, "there is no file");
  }
};

std::string written(const ObjectContent& content) {
  std::string out;
  XmlWriter xml(out);
  writeContent(xml, 1, content);
  return out;
}

/// Texts, not contents, are compared: a value that is not a number is never equal to itself.
void readPart(std::string bytes) {
  pugi::xml_document xml;
  parseXml(bytes, xml);
  for (const pugi::xml_node node : rootElement(xml, "objects").children()) {
    const std::string first = written(readContent(node));
    std::string copy = first;
    pugi::xml_document again;
    parseXml(copy, again);
    VORN_FUZZ_CHECK(written(readContent(again.document_element())) == first);
  }
}

void readOutline(std::string bytes) {
  DocumentObject root;
  Manifest manifest;
  readManifest(std::move(bytes), std::make_shared<NoSource>(), root, manifest);
}

}  // namespace
}  // namespace vornwout

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  try {
    if (bytes.find("<objects") != std::string::npos) {
      vornwout::readPart(bytes);
    } else {
      vornwout::readOutline(bytes);
    }
  } catch (const vornwout::StoreError&) {
    // Refused, as hostile input is.
  }
  return 0;
}
