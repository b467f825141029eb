// An object of an output document: what stands in its outline, and a content that may lie in a
// file.
//
// Objects are values that own what stands below them; only headings have children. All texts are
// UTF-8.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/document/lazy_content.h"

namespace vornwout {

/// What an object is to the commands that select objects.
enum class ObjectType {
  kTable,
  kChart,
  kText,
  kLog,
  kWarning,
  kNotes,
  kPageTitle,
  kModel,
  kTree,
  kHeading,
  kOther,
  kUnknown,
};

inline constexpr std::size_t kObjectTypeCount = 12;

/// How large an object is shown; a side that is 0 keeps its natural size.
struct ObjectSize {
  double width = 0;
  double height = 0;
  bool percent = false;  ///< of the natural size; otherwise points
  friend bool operator==(const ObjectSize&, const ObjectSize&) = default;
};

struct DocumentObject {
  ObjectType type = ObjectType::kUnknown;
  std::string command;  ///< upper-case name of the command that produced it
  int run = 0;          ///< which run of that command in its document, from 1
  std::string subtype;
  std::string label;  ///< the text in the outline
  bool visible = true;
  std::optional<ObjectSize> size;
  std::string index;  ///< the number that the outline shows before the label; empty for none
  LazyContent content;
  std::vector<DocumentObject> children;  ///< of a heading
};

/// The type's name in files: "table", "page-title".
std::string_view objectTypeName(ObjectType type);
std::optional<ObjectType> findObjectType(std::string_view name);

/// Whether two objects are the same with all that stands below them; reads their contents.
bool sameObject(const DocumentObject& a, const DocumentObject& b);

}  // namespace vornwout
