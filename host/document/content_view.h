// A look at an object's content that leaves nothing behind: what was read for it is forgotten
// again.
//
// Who goes through a whole document holds one content at a time this way, however large the
// document is. A content that was in memory before, or lies in no file, stays where it is.
#pragma once

#include "host/document/lazy_content.h"

namespace vornwout {

class ContentView {
 public:
  /// Reads the content if need be; throws StoreError. `content` must outlive the view unchanged.
  explicit ContentView(const LazyContent& content)
      : content_(content), wasLoaded_(content.isLoaded()), viewed_(content.get()) {}
  ~ContentView() {
    if (!wasLoaded_) content_.unload();
  }
  ContentView(const ContentView&) = delete;
  ContentView& operator=(const ContentView&) = delete;

  const ObjectContent& operator*() const { return viewed_; }

 private:
  const LazyContent& content_;
  bool wasLoaded_;
  const ObjectContent& viewed_;
};

}  // namespace vornwout
