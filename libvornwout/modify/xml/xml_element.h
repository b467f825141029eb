// XmlElement: the one way in which elements and attributes of the modify document are written.
//
// It appends to the document at once: "<name", a blank before each attribute, and at the end either
// "/>" or "</name>". Nothing is escaped here: what is text of the user was escaped when it was
// read, or is deliberately written as it stands, and each writer says which.
#pragma once

#include <string>
#include <string_view>

namespace vornwout {

/// Appends one attribute: a blank, the name, "=" and the value between double quotes.
void appendAttribute(std::string& document, std::string_view name, std::string_view value);
/// A number in plain decimal.
void appendAttribute(std::string& document, std::string_view name, int value);
/// A number with six significant digits at most, without trailing zeros.
void appendAttribute(std::string& document, std::string_view name, double value);
/// "true" or "false".
void appendAttribute(std::string& document, std::string_view name, bool value);
// A text constant would else become a bool.
inline void appendAttribute(std::string& document, std::string_view name, const char* value) {
  appendAttribute(document, name, std::string_view(value));
}

class XmlElement {
 public:
  /// Begins the element. `name` must outlive it, `document` too.
  XmlElement(std::string& document, std::string_view name);

  /// One attribute, as appendAttribute() writes it.
  template <typename Value>
  void attribute(std::string_view name, const Value& value) {
    appendAttribute(*document_, name, value);
  }

  /// Ends the start tag with ">", after which content may be appended; further calls do nothing.
  void beginContent();
  /// Appends content as it stands, behind the start tag.
  void content(std::string_view text);
  /// Ends the element: with "/>" when it has had no content, with its end tag otherwise.
  void end();

  std::string& document() { return *document_; }

 private:
  std::string* document_;
  std::string_view name_;
  bool startTagOpen_ = true;
};

/// Appends an element without attributes around `text`.
void appendTextElement(std::string& document, std::string_view name, std::string_view text);

}  // namespace vornwout
