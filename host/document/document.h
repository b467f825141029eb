// An output document in memory: a name, a window state, and a tree of objects below a root.
//
// Entry points: append() for objects of the top level, at() to fill a heading that stands there,
// beginRun() to number the runs of a command. Objects of the top level are addressed by position,
// which stays right while the document grows; a reference from at() lasts until the next append().
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>

#include "host/document/document_object.h"

namespace vornwout {

class Document {
 public:
  /// `number` tells unnamed documents apart: the how-manieth document of its host this is, from 1.
  Document(int number, std::string name, bool minimized);

  int number() const { return number_; }
  /// Empty for an unnamed document; UTF-8.
  const std::string& name() const { return name_; }
  void setName(std::string name);
  bool isMinimized() const { return minimized_; }
  void setMinimized(bool minimized) { minimized_ = minimized; }

  /// The unlabelled heading above all objects.
  const DocumentObject& root() const { return root_; }

  /// Counts a run of `command` in this document and returns its number, from 1.
  int beginRun(const std::string& command);

  /// Puts an object at the end of the top level and returns its position there.
  std::size_t append(DocumentObject object);

  /// The object at `position` of the top level; throws std::out_of_range.
  DocumentObject& at(std::size_t position) { return root_.children.at(position); }

 private:
  int number_;
  std::string name_;
  bool minimized_;
  DocumentObject root_;
  std::unordered_map<std::string, int> runs_;
};

}  // namespace vornwout
