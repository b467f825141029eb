#include "host/document/lazy_content.h"

namespace vornwout {

ContentSource::~ContentSource() = default;

const ObjectContent& LazyContent::get() const {
  static const ObjectContent kNothing;
  if (content_ == nullptr) {
    if (place_.source == nullptr) return kNothing;
    content_ = std::make_shared<ObjectContent>(place_.source->load(place_.id));
  }
  return *content_;
}

void LazyContent::set(ObjectContent content) {
  content_ = std::make_shared<ObjectContent>(std::move(content));
  place_ = {};
}

ObjectContent& LazyContent::change() {
  // A copy of its own where another object shares it; there is one thread.
  if (content_.use_count() != 1) content_ = std::make_shared<ObjectContent>(get());
  place_ = {};
  return *content_;
}

void LazyContent::unload() const {
  if (place_.source != nullptr) content_.reset();
}

}  // namespace vornwout
