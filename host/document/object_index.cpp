#include "host/document/object_index.h"

#include <stdexcept>

#include "platform/strings/localized.h"

namespace vornwout {

void ObjectIndex::update(const DocumentObject& root) {
  for (std::size_t position = tops_.size(); position < root.children.size(); ++position) {
    tops_.push_back(places_.size());
    add(root.children[position], kRoot, position);
  }
}

void ObjectIndex::forgetFrom(std::size_t position) {
  if (position >= tops_.size()) return;
  places_.resize(tops_[position]);
  kindOfObjects_.resize(tops_[position]);
  tops_.resize(position);
}

void ObjectIndex::add(const DocumentObject& object, std::uint32_t heading, std::size_t position) {
  if (places_.size() >= kRoot)
    throw std::length_error(localized("a document has too many objects"));
  const auto number = static_cast<std::uint32_t>(places_.size());
  places_.push_back({heading, static_cast<std::uint32_t>(position), object.run});
  kindOfObjects_.push_back(kindOf(object));
  for (std::size_t i = 0; i < object.children.size(); ++i) add(object.children[i], number, i);
}

std::uint32_t ObjectIndex::kindOf(const DocumentObject& object) {
  if (const auto known = known_.find(object); known != known_.end()) return known->second;
  const auto number = static_cast<std::uint32_t>(kinds_.size());
  kinds_.push_back({object.type, object.command, object.subtype});
  known_.emplace(kinds_.back(), number);
  return number;
}

}  // namespace vornwout
