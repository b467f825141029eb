// A content that may still lie in a file: it is read when it is first looked at.
//
// Entry points: get() to look, set() and change() to put another in its place, place() to ask
// whether what a file has is still what the object holds. Copies share what was read until one is
// changed.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "host/document/object_content.h"

namespace vornwout {

/// Gives contents by their numbers, from a file that stays open as long as somebody may ask.
class ContentSource {
 public:
  virtual ~ContentSource();
  /// The content with the number `id`; throws StoreError when the file does not give it.
  virtual ObjectContent load(std::uint64_t id) = 0;
};

class LazyContent {
 public:
  /// Where a content lies unchanged.
  struct Place {
    std::shared_ptr<ContentSource> source;  ///< null when it lies nowhere yet
    std::uint64_t id = 0;
  };

  LazyContent() = default;
  // From a content as it stands, so that an object takes either.
  LazyContent(ObjectContent content) { set(std::move(content)); }
  explicit LazyContent(Place place) : place_(std::move(place)) {}

  /// The content, read now if it was not yet; throws StoreError. The reference lasts until the next
  /// set() or unload().
  const ObjectContent& get() const;
  template <typename Kind>
  const Kind* as() const {
    return std::get_if<Kind>(&get());
  }

  void set(ObjectContent content);
  /// The content to write to, read now if it was not yet; it lies in no file from now on.
  ObjectContent& change();

  const Place& place() const { return place_; }
  /// Says where the content, as it is, now lies too.
  void setPlace(Place place) { place_ = std::move(place); }

  bool isLoaded() const { return content_ != nullptr || place_.source == nullptr; }
  /// Forgets what was read if it can be read again.
  void unload() const;

 private:
  Place place_;
  mutable std::shared_ptr<ObjectContent> content_;
};

}  // namespace vornwout
