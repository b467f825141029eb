// Carries out a modify request on documents: ChangeEngine::apply() for each, then commit().
//
// The groups act in their order, each on what those before it have left. Everything is taken back
// when an error passes, in every document: nothing is final before commit().
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "host/changes/change_log.h"
#include "host/changes/change_notes.h"
#include "host/changes/font_check.h"
#include "host/changes/modify_request.h"
#include "host/document/document.h"
#include "host/looks/chart_template.h"

namespace vornwout {

/// How many objects a request has met.
struct ChangeCounts {
  std::size_t selected = 0;  ///< by any of the groups, each object once
  std::size_t modified = 0;
  std::size_t deleted = 0;  ///< with those below deleted headings
};

class ChangeEngine {
 public:
  /// `isFont` says which font families the system has.
  explicit ChangeEngine(FontCheck isFont) : isFont_(std::move(isFont)) {}

  /// Throws ChangeError, and StoreError for a content that cannot be read; nothing has changed
  /// then, once the engine is gone.
  void apply(const ModifyRequest& request, Document& document);

  ChangeCounts counts() const;
  const std::vector<std::string>& notes() const { return notes_.notes(); }

  /// What went from the top level of a document: positions as they were, ascending.
  struct Removed {
    int documentNumber;
    std::vector<std::size_t> positions;
  };
  std::vector<Removed> commit();

 private:
  void applyEvent(const ModifyEvent& event, ChangeLog& log);
  /// What is wrong with a group is said also when it meets nothing that it could change.
  void check(const ModifyEvent& event);
  /// What a group asks for, with what is read once for all its objects.
  struct Task {
    const ModifyEvent& event;
    std::vector<ChartStyle> chartStyles;
  };

  void changeObject(const Task& task, DocumentObject& object, ChangeLog& log);
  void changeProperties(const PropertiesChange& change, DocumentObject& object, ChangeLog& log);
  void changeContent(const Task& task, DocumentObject& object, ChangeLog& log);
  /// The content with the changes, or nothing when it stays as it is.
  std::optional<ObjectContent> changedContent(const Task& task, const ObjectContent& content);

  FontCheck isFont_;
  std::deque<ChangeLog> logs_;  ///< one for each document
  std::unordered_set<const DocumentObject*> selected_;
  ChangeNotes notes_;
};

}  // namespace vornwout
