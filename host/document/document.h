// An output document in memory: a name, a window state, and a tree of objects below a root.
//
// Entry points: append() for objects of the top level, at() to fill a heading that stands there,
// beginRun() to number the runs of a command, index() to find objects. Objects of the top level are
// addressed by position, which stays right while the document grows; a reference from at() lasts
// until the next append().
#pragma once

#include <cstddef>
#include <map>
#include <string>

#include "host/document/document_object.h"
#include "host/document/object_index.h"

namespace vornwout {

class Document {
 public:
  /// `number` tells unnamed documents apart: the how-manieth document of its host this is, from 1.
  Document(int number, std::string name, bool minimized);

  /// Takes over what a file had: the objects, and how often each command had run.
  void setContents(DocumentObject root, std::map<std::string, int> runs);

  /// Whether a file that the document was read from or saved to was encrypted.
  bool wasEncrypted() const { return wasEncrypted_; }
  void setWasEncrypted(bool wasEncrypted) { wasEncrypted_ = wasEncrypted; }

  int number() const { return number_; }
  /// Empty for an unnamed document; UTF-8.
  const std::string& name() const { return name_; }
  void setName(std::string name);
  bool isMinimized() const { return minimized_; }
  void setMinimized(bool minimized) { minimized_ = minimized; }

  /// The unlabelled heading above all objects.
  const DocumentObject& root() const { return root_; }
  /// To write to, objects may come and go; references from at() end when some of the top level do.
  DocumentObject& editRoot() {
    index_.forgetFrom(0);
    return root_;
  }

  /// The objects as they now stand. Holds until an object comes or goes, or gets another type,
  /// command, run or subtype; the next call takes in what has come meanwhile.
  const ObjectIndex& index() {
    index_.update(root_);
    return index_;
  }
  /// To change what the index does not have: label, visibility, number, size and content.
  DocumentObject& indexedRoot() { return root_; }

  /// Counts a run of `command` in this document and returns its number, from 1. A file can say that
  /// there were as many as can be counted; it stays at that.
  int beginRun(const std::string& command);
  /// How often each command has run in this document.
  const std::map<std::string, int>& runs() const { return runs_; }

  /// Puts an object at the end of the top level and returns its position there.
  std::size_t append(DocumentObject object);

  /// The object at `position` of the top level, to write to; throws std::out_of_range.
  DocumentObject& at(std::size_t position) {
    index_.forgetFrom(position);
    return root_.children.at(position);
  }

 private:
  int number_;
  std::string name_;
  bool minimized_;
  bool wasEncrypted_ = false;
  DocumentObject root_;
  ObjectIndex index_;  ///< of those objects that index() has met
  std::map<std::string, int> runs_;
};

}  // namespace vornwout
