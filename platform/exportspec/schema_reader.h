// Reads the XML of an export, whoever wrote it: held against a schema, element by element.
//
// The parser stands in a module of its own, which is loaded when it is first needed: most runs read
// no such XML, and it costs more to load than they take. Document type declarations, and with them
// entities, are refused, and so is what is larger, deeper or wider than any document can be;
// nothing is ever fetched. The schemas are compiled once.
//
// Entry points: readValidXml(), initializeXmlPlatform().
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vornwout {

/// Why a document was refused: where, then what, in one line.
class XmlError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

enum class XmlSchema { kExportDocument, kExportResponse };

struct XmlAttribute {
  std::string name;
  std::string value;
};

/// Gets each element as it begins, with its attributes, in UTF-8.
using ElementReceiver =
    std::function<void(std::string_view name, std::span<const XmlAttribute> attributes)>;

/// Largest document, in bytes: names of ten thousands of tables fit, and the parser needs several
/// times as much memory for a text of this length.
inline constexpr std::size_t kMaxXmlBytes = std::size_t{4} << 20U;

/// Makes the parser ready, which the first reading does as well. Throws std::runtime_error when its
/// module cannot be loaded, saying why.
void initializeXmlPlatform();

/// Throws XmlError for what is not valid, and what initializeXmlPlatform() throws. `receive` may
/// have got elements of a document that turns out to be invalid.
void readValidXml(XmlSchema schema, std::string_view xml, const ElementReceiver& receive);

}  // namespace vornwout
