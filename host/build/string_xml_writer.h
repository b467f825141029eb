// Where an XML tree is printed to when a string is wanted.
#pragma once

#include <cstddef>
#include <string>

#include <pugixml.hpp>

namespace vornwout {

class StringXmlWriter : public pugi::xml_writer {
 public:
  /// Appends to `out`, which must outlive the writer.
  explicit StringXmlWriter(std::string& out) : out_(out) {}
  void write(const void* data, std::size_t size) override {
    out_.append(static_cast<const char*>(data), size);
  }

 private:
  std::string& out_;
};

}  // namespace vornwout
