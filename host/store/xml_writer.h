// Writes XML into a string: elements, attributes and texts, with the one escaper of stored
// documents.
//
// XML cannot hold every text: control characters and what is not UTF-8 have no place in it. Such a
// text is written as base64, an attribute under its name with "-base64" behind it, an element's
// text with the attribute `encoding="base64"`. Line breaks are kept, which is why a carriage return
// is always escaped, and in an attribute every blank but the space.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace vornwout {

class XmlWriter {
 public:
  /// Appends to `out`, which must outlive the writer.
  explicit XmlWriter(std::string& out) : out_(out) {}

  void declaration() { out_ += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"; }

  /// Starts an element; attributes may follow until something stands in it.
  void start(std::string_view name);
  /// Ends the innermost element, whose name is said again.
  void end(std::string_view name);

  void attribute(std::string_view name, std::string_view value);
  /// Leaves out what is empty.
  void optionalAttribute(std::string_view name, std::string_view value) {
    if (!value.empty()) attribute(name, value);
  }
  void attribute(std::string_view name, std::int64_t value);
  /// A list of integers, with blanks between them.
  void attribute(std::string_view name, std::span<const int> values);
  /// The shortest text that reads back as the same number; "NaN", "INF" and "-INF" as in XML
  /// Schema.
  void attribute(std::string_view name, double value);
  /// Written only where it is true.
  void flag(std::string_view name, bool value) {
    if (value) attribute(name, "true");
  }

  /// The text of the innermost element, which has nothing in it yet.
  void text(std::string_view value);
  /// Bytes as base64 text of the innermost element, with `encoding="base64"`.
  void bytes(std::string_view value);

  /// Well-formed XML, as it stands, into the innermost element.
  void raw(std::string_view xml);
  /// A line break, where nothing but elements stands in the innermost element.
  void newLine();

 private:
  void close();
  void beginAttribute(std::string_view name);

  std::string& out_;
  bool isOpen_ = false;  ///< the innermost start tag still takes attributes
};

/// Base64 without line breaks.
void appendBase64(std::string& out, std::string_view bytes);

}  // namespace vornwout
