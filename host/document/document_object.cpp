#include "host/document/document_object.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "platform/strings/localized.h"

namespace vornwout {
namespace {

constexpr std::array<std::string_view, 12> kTypeNames = {
    localizable("table"),      localizable("chart"),   localizable("text"),
    localizable("log"),        localizable("warning"), localizable("notes"),
    localizable("page-title"), localizable("model"),   localizable("tree"),
    localizable("heading"),    localizable("other"),   localizable("unknown")};

}  // namespace

std::string_view objectTypeName(ObjectType type) {
  return kTypeNames.at(static_cast<std::size_t>(type));
}

std::optional<ObjectType> findObjectType(std::string_view name) {
  const auto* found = std::find(kTypeNames.begin(), kTypeNames.end(), name);
  if (found == kTypeNames.end()) return std::nullopt;
  return static_cast<ObjectType>(found - kTypeNames.begin());
}

bool sameObject(const DocumentObject& a, const DocumentObject& b) {
  return a.type == b.type && a.command == b.command && a.run == b.run && a.subtype == b.subtype &&
         a.label == b.label && a.visible == b.visible && a.size == b.size && a.index == b.index &&
         sameContent(a.content.get(), b.content.get()) &&
         std::equal(a.children.begin(), a.children.end(), b.children.begin(), b.children.end(),
                    sameObject);
}

}  // namespace vornwout
