#include "libvornwout/modify/xml/xml_element.h"

#include <array>
#include <charconv>
#include <cstring>

namespace vornwout {
namespace {

/// Longer than any int, and than any double of six digits.
using NumberBuffer = std::array<char, 32>;

constexpr int kSignificantDigits = 6;

std::string_view written(const NumberBuffer& buffer, std::to_chars_result result) {
  return {buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data())};
}

char* put(char* at, std::string_view text) {
  std::memcpy(at, text.data(), text.size());
  return at + text.size();
}

}  // namespace

void appendAttribute(std::string& document, std::string_view name, std::string_view value) {
  // Grown once and filled in place: five appends for every attribute cost more than their bytes.
  const std::size_t size = document.size();
  document.resize(size + name.size() + value.size() + 4);
  char* at = document.data() + size;
  *at++ = ' ';
  at = put(at, name);
  *at++ = '=';
  *at++ = '"';
  at = put(at, value);
  *at = '"';
}

void appendAttribute(std::string& document, std::string_view name, int value) {
  NumberBuffer buffer;
  appendAttribute(document, name,
                  written(buffer, std::to_chars(buffer.begin(), buffer.end(), value)));
}

void appendAttribute(std::string& document, std::string_view name, double value) {
  NumberBuffer buffer;
  appendAttribute(document, name,
                  written(buffer, std::to_chars(buffer.begin(), buffer.end(), value,
                                                std::chars_format::general, kSignificantDigits)));
}

void appendAttribute(std::string& document, std::string_view name, bool value) {
  appendAttribute(document, name, std::string_view(value ? "true" : "false"));
}

XmlElement::XmlElement(std::string& document, std::string_view name)
    : document_(&document), name_(name) {
  document.append("<").append(name);
}

void XmlElement::beginContent() {
  if (!startTagOpen_) return;
  document_->push_back('>');
  startTagOpen_ = false;
}

void XmlElement::content(std::string_view text) {
  beginContent();
  document_->append(text);
}

void XmlElement::end() {
  if (startTagOpen_) {
    document_->append("/>");
    startTagOpen_ = false;
  } else {
    document_->append("</").append(name_).append(">");
  }
}

void appendTextElement(std::string& document, std::string_view name, std::string_view text) {
  XmlElement element(document, name);
  element.content(text);
  element.end();
}

}  // namespace vornwout
