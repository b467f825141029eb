// Reads stored XML, which may be hostile: parseXml() for a whole part, the rest for what stands in
// it.
//
// Everything that is not as docs/file-format.md has it is a StoreError of the kind kDamaged whose
// text names the element; whoever reads a part adds the part's name. There is no document type
// declaration, so there are no entities but those of XML itself, and nothing is ever fetched.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include <pugixml.hpp>

namespace vornwout {

/// Elements and attributes of one part, which bounds the memory that reading it takes.
inline constexpr std::size_t kMaxXmlNodes = std::size_t{16} << 20;

/// Parses `bytes` in place: `document` points into them afterwards. Refuses what is not well-formed
/// UTF-8, has a document type declaration, or more than `maxNodes` elements and attributes.
void parseXml(std::string& bytes, pugi::xml_document& document,
              std::size_t maxNodes = kMaxXmlNodes);

/// Throws the error for an element that is not as it must be: "table: <what>".
[[noreturn]] void refuseElement(pugi::xml_node node, const std::string& what);

/// The only element of the document; refuses another name or namespace.
pugi::xml_node rootElement(const pugi::xml_document& document, const char* name);

/// A text as XmlWriter::attribute() wrote it; empty when it is absent. Refuses one in both forms.
std::string textAttribute(pugi::xml_node node, const char* name);
bool flagAttribute(pugi::xml_node node, const char* name, bool absent = false);
std::int64_t integerAttribute(pugi::xml_node node, const char* name, std::int64_t absent,
                              std::int64_t min = std::numeric_limits<int>::min(),
                              std::int64_t max = std::numeric_limits<int>::max());

/// As XML Schema has a boolean: "true", "false", "1" or "0".
bool parseFlag(pugi::xml_node node, pugi::xml_attribute attribute);
double parseDouble(pugi::xml_node node, std::string_view text);
/// An integer of at least `min` and at most `max` that is the whole of `text`.
std::int64_t parseInteger(pugi::xml_node node, std::string_view text, std::int64_t min,
                          std::int64_t max);

/// The text of an element as XmlWriter::text() or bytes() wrote it, whole also where comments or
/// CDATA sections part it. Refuses elements within it.
std::string elementText(pugi::xml_node node);

/// Refuses an element or a text that has no place in its parent. Blanks are passed over.
void refuseChild(pugi::xml_node child);

/// Reads base64, which may have blanks in it; refuses anything else in the name of `node`.
std::string decodeBase64(pugi::xml_node node, std::string_view text);

}  // namespace vornwout
