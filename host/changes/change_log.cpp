#include "host/changes/change_log.h"

#include <algorithm>
#include <utility>

namespace vornwout {
namespace {

std::size_t countAll(const DocumentObject& object) {
  std::size_t count = 1;
  for (const DocumentObject& child : object.children) count += countAll(child);
  return count;
}

/// Objects below `heading` that are gone, each counted with all below it.
std::size_t countGone(const DocumentObject& heading, const ObjectSet& gone) {
  std::size_t count = 0;
  for (const DocumentObject& object : heading.children) {
    count += gone.contains(&object) ? countAll(object) : countGone(object, gone);
  }
  return count;
}

void dropGone(DocumentObject& heading, ObjectSet& gone) {
  std::vector<DocumentObject>& children = heading.children;
  const auto isGone = [&](const DocumentObject& object) { return gone.erase(&object) != 0; };
  const bool anyGone = std::any_of(children.begin(), children.end(),
                                   [&](const DocumentObject& o) { return gone.contains(&o); });
  for (DocumentObject& object : children) {
    if (gone.empty()) return;
    if (!gone.contains(&object)) dropGone(object, gone);
  }
  if (!anyGone) return;
  // Objects move down as others go, so what is gone is told by place.
  std::vector<bool> goes(children.size());
  for (std::size_t i = 0; i < children.size(); ++i) goes[i] = isGone(children[i]);
  std::size_t kept = 0;
  for (std::size_t i = 0; i < children.size(); ++i) {
    if (goes[i]) continue;
    if (kept != i) children[kept] = std::move(children[i]);
    ++kept;
  }
  children.resize(kept);
}

/// Objects below `heading` that are not gone and fit.
template <typename Fits>
std::size_t countKept(const DocumentObject& heading, const ObjectSet& gone, const Fits& fits) {
  std::size_t count = 0;
  for (const DocumentObject& object : heading.children) {
    if (gone.contains(&object)) continue;
    count += (fits(object) ? 1U : 0U) + countKept(object, gone, fits);
  }
  return count;
}

}  // namespace

ChangeLog::~ChangeLog() {
  for (auto& [key, state] : before_) {
    DocumentObject* const object = state.object;
    object->visible = state.visible;
    object->size = state.size;
    object->label = std::move(state.label);
    object->index = std::move(state.index);
    object->content = std::move(state.content);
  }
}

void ChangeLog::willChange(DocumentObject& object) {
  before_.try_emplace(&object, State{&object, object.visible, object.size, object.label,
                                     object.index, object.content});
}

void ChangeLog::remove(DocumentObject& object) { gone_.insert(&object); }

std::size_t ChangeLog::changedCount() const {
  if (gone_.empty()) return before_.size();
  return countKept(document_.root(), gone_,
                   [&](const DocumentObject& object) { return before_.contains(&object); });
}

std::size_t ChangeLog::removedCount() const {
  return gone_.empty() ? 0 : countGone(document_.root(), gone_);
}

std::vector<std::size_t> ChangeLog::commit() {
  std::vector<std::size_t> positions;
  const std::vector<DocumentObject>& top = document_.root().children;
  if (!gone_.empty()) {
    for (std::size_t i = 0; i < top.size(); ++i) {
      if (gone_.contains(&top[i])) positions.push_back(i);
    }
    dropGone(document_.editRoot(), gone_);
    gone_.clear();
  }
  before_.clear();
  return positions;
}

}  // namespace vornwout
