// Carries out a modify request on documents: ChangeEngine::apply() for each, then commit().
//
// The groups act in their order, each on what those before it have left. What they ask for is read
// once, for all documents. Everything is taken back when an error passes, in every document:
// nothing is final before commit().
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "host/changes/cell_changes.h"
#include "host/changes/change_log.h"
#include "host/changes/change_notes.h"
#include "host/changes/chart_changes.h"
#include "host/changes/font_check.h"
#include "host/changes/modify_request.h"
#include "host/changes/table_changes.h"
#include "host/changes/text_changes.h"
#include "host/document/document.h"

namespace vornwout {

/// How many objects a request has met.
struct ChangeCounts {
  std::size_t selected = 0;  ///< by any of the groups, each object once
  std::size_t modified = 0;
  std::size_t deleted = 0;  ///< with those below deleted headings
};

class ChangeEngine {
 public:
  /// Keeps a reference to `request`. `isFont` says which font families the system has. What is
  /// wrong with a group is said also when it will meet nothing that it could change: notes formats
  /// and fonts that cannot be used, throws ChangeError for what else cannot be read.
  ChangeEngine(const ModifyRequest& request, const FontCheck& isFont);

  /// Throws ChangeError, also for a content that cannot be read, with the label of the object that
  /// it is about; nothing has changed then, once the engine is gone.
  void apply(Document& document);

  ChangeCounts counts() const;
  const std::vector<std::string>& notes() const { return notes_.notes(); }

  /// What went from the top level of a document: positions as they were, ascending.
  struct Removed {
    int documentNumber;
    std::vector<std::size_t> positions;
  };
  std::vector<Removed> commit();

 private:
  /// What a group asks for, read.
  struct Task {
    Task(const ModifyEvent& group, ChangeNotes& notes, const FontCheck& isFont);

    const ModifyEvent& event;
    std::optional<TableChanger> table;
    std::vector<CellsChanger> cells;
    std::optional<TextChanger> text;
    std::optional<ChartChanger> chart;
  };

  void carryOut(const Task& task, ChangeLog& log);
  static void changeObject(const Task& task, DocumentObject& object, ChangeLog& log);
  static void changeProperties(const PropertiesChange& change, DocumentObject& object,
                               ChangeLog& log);
  static void changeContent(const Task& task, DocumentObject& object, ChangeLog& log);
  static void tryChangeContent(const Task& task, DocumentObject& object, ChangeLog& log);
  /// The content with the changes, or nothing when it stays as it is.
  static std::optional<ObjectContent> changedContent(const Task& task,
                                                     const ObjectContent& content);

  ChangeNotes notes_;
  std::vector<Task> tasks_;
  std::deque<ChangeLog> logs_;  ///< one for each document
  std::unordered_set<const DocumentObject*> selected_;
};

}  // namespace vornwout
