// xmlModifyEvent: the element of one SELECT group in the modify document.
//
// Attributes may be written only while the start tag is open, that is until the first element is
// added; so the walk sets and commits the types, writes the exceptions and the visible-only mark,
// and only then adds elements. The destructor closes the element, whatever became of the group.
#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "libvornwout/modify/xml/xml_element.h"

namespace vornwout {

class xmlModifyEvent {
 public:
  /// Begins the element.
  explicit xmlModifyEvent(std::string& document);
  /// Ends it. While an exception passes nothing is written, for nobody reads that document;
  /// otherwise growing the document may throw.
  ~xmlModifyEvent() noexcept(false);
  xmlModifyEvent(const xmlModifyEvent&) = delete;
  xmlModifyEvent& operator=(const xmlModifyEvent&) = delete;

  /// These remember a type for commitSets().
  void setAll() { all_ = true; }
  void setCharts() { set(kCharts); }
  void setHeadings() { set(kHeadings); }
  void setLogs() { set(kLogs); }
  void setModels() { set(kModels); }
  void setTables() { set(kTables); }
  void setTexts() { set(kTexts); }
  void setTrees() { set(kTrees); }
  void setWarnings() { set(kWarnings); }
  void setOutlineHeaders() { set(kOutlineHeaders); }
  void setNotes() { set(kNotes); }
  void setUnknowns() { set(kUnknowns); }
  void setOthers() { set(kOthers); }
  void setPageTitles() { set(kPageTitles); }

  /// Writes the types that were set: ALL alone, else each in the order of the list.
  void commitSets();

  /// These write their attribute at once.
  void exceptCharts() { except(kCharts); }
  void exceptHeadings() { except(kHeadings); }
  void exceptLogs() { except(kLogs); }
  void exceptModels() { except(kModels); }
  void exceptTables() { except(kTables); }
  void exceptTexts() { except(kTexts); }
  void exceptTrees() { except(kTrees); }
  void exceptWarnings() { except(kWarnings); }
  void exceptOutlineHeaders() { except(kOutlineHeaders); }
  void exceptNotes() { except(kNotes); }
  void exceptUnknowns() { except(kUnknowns); }
  void exceptOthers() { except(kOthers); }
  void exceptPageTitles() { except(kPageTitles); }

  /// Marks the event as being about visible objects only.
  void addVisibleOnly();

  /// These end the start tag; the caller then appends its element to document(). An index is added
  /// by addConditionObject too.
  void addConditionObject() { element_.beginContent(); }
  void addTableObject() { element_.beginContent(); }
  void addTableCellsObject() { element_.beginContent(); }
  void addTextObject() { element_.beginContent(); }
  void addGraphsObject() { element_.beginContent(); }
  void addObjectPropertiesObject() { element_.beginContent(); }
  /// Adds the element that deletes the selected objects.
  void deleteObject();

  std::string& document() { return element_.document(); }

 private:
  /// In the order of kObjectTypes.
  enum Type : std::size_t {
    kCharts,
    kHeadings,
    kLogs,
    kModels,
    kTables,
    kTexts,
    kTrees,
    kWarnings,
    kOutlineHeaders,
    kNotes,
    kUnknowns,
    kOthers,
    kPageTitles,
    kTypeCount
  };

  void set(Type type) { selected_[type] = true; }
  void except(Type type);

  XmlElement element_;
  bool all_ = false;
  std::array<bool, kTypeCount> selected_{};
  int exceptions_;  ///< in flight when the event was begun
};

/// A type of object as the command and the modify document call it.
struct ObjectType {
  const char* keyword;
  /// "unknown" and "other" are singular, deliberately: a host reads these names.
  const char* attribute;
  void (xmlModifyEvent::*set)();
  void (xmlModifyEvent::*except)();
};

/// The types in the order in which they are declared, tested and written.
inline constexpr std::array kObjectTypes = {
    ObjectType{"CHARTS", "charts", &xmlModifyEvent::setCharts, &xmlModifyEvent::exceptCharts},
    ObjectType{"HEADINGS", "headings", &xmlModifyEvent::setHeadings,
               &xmlModifyEvent::exceptHeadings},
    ObjectType{"LOGS", "logs", &xmlModifyEvent::setLogs, &xmlModifyEvent::exceptLogs},
    ObjectType{"MODELS", "models", &xmlModifyEvent::setModels, &xmlModifyEvent::exceptModels},
    ObjectType{"TABLES", "tables", &xmlModifyEvent::setTables, &xmlModifyEvent::exceptTables},
    ObjectType{"TEXTS", "texts", &xmlModifyEvent::setTexts, &xmlModifyEvent::exceptTexts},
    ObjectType{"TREES", "trees", &xmlModifyEvent::setTrees, &xmlModifyEvent::exceptTrees},
    ObjectType{"WARNINGS", "warnings", &xmlModifyEvent::setWarnings,
               &xmlModifyEvent::exceptWarnings},
    ObjectType{"OUTLINEHEADERS", "outlineheaders", &xmlModifyEvent::setOutlineHeaders,
               &xmlModifyEvent::exceptOutlineHeaders},
    ObjectType{"NOTES", "notes", &xmlModifyEvent::setNotes, &xmlModifyEvent::exceptNotes},
    ObjectType{"UNKNOWN", "unknown", &xmlModifyEvent::setUnknowns, &xmlModifyEvent::exceptUnknowns},
    ObjectType{"OTHER", "other", &xmlModifyEvent::setOthers, &xmlModifyEvent::exceptOthers},
    ObjectType{"PAGETITLES", "pagetitles", &xmlModifyEvent::setPageTitles,
               &xmlModifyEvent::exceptPageTitles},
};

}  // namespace vornwout
