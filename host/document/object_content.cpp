#include "host/document/object_content.h"

namespace vornwout {

bool sameContent(const ObjectContent& a, const ObjectContent& b) {
  const auto* first = std::get_if<TableContent>(&a);
  const auto* second = std::get_if<TableContent>(&b);
  if (first != nullptr && second != nullptr) return *first == *second || **first == **second;
  return a == b;
}

}  // namespace vornwout
