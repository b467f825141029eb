// One transaction over the objects of a document: every change can be taken back until commit().
//
// An object's state is kept when it is changed first, its content by reference, so the memory is in
// proportion to what changes. Deleted objects stay where they are until commit(): until then every
// reference to an object holds, and taking back is forgetting.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/changes/object_selection.h"
#include "host/document/document.h"

namespace vornwout {

class ChangeLog {
 public:
  explicit ChangeLog(Document& document) : document_(document) {}
  /// Takes back what was not committed.
  ~ChangeLog();
  ChangeLog(const ChangeLog&) = delete;
  ChangeLog& operator=(const ChangeLog&) = delete;

  Document& document() { return document_; }

  /// To be called before an object is written to. Its children are not to be changed.
  void willChange(DocumentObject& object);
  /// Deletes an object with all that stands below it; once, whatever is above it.
  void remove(DocumentObject& object);

  const ObjectSet& gone() const { return gone_; }
  /// Objects that were changed and are not gone.
  std::size_t changedCount() const;
  /// Objects that are gone, those below deleted headings too.
  std::size_t removedCount() const;

  /// Makes everything final and returns the positions, in the top level as it was, of the objects
  /// that are gone there, ascending.
  std::vector<std::size_t> commit();

 private:
  struct State {
    DocumentObject* object;
    bool visible;
    std::optional<ObjectSize> size;
    std::string label;
    std::string index;
    LazyContent content;
  };

  Document& document_;
  std::unordered_map<const DocumentObject*, State> before_;
  ObjectSet gone_;
};

}  // namespace vornwout
