// The outline of a document: its objects in reading order, numbered.
//
// An object's number is its place in the outline from 1, depth first, hidden objects included, so
// that it stays the same whether they are shown or not. Making an outline reads no contents.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/document/document_object.h"

namespace vornwout {

struct OutlineEntry {
  const DocumentObject* object = nullptr;
  std::size_t number = 0;
  int depth = 0;               ///< headings above the object, the root not counted
  bool isLast = false;         ///< nothing follows below the same heading
  bool isShown = true;         ///< neither the object nor a heading above it is hidden
  std::size_t nextNumber = 0;  ///< of what comes behind the object and all that stands below it
};

/// All objects below `root`, which itself is none of them. The entries refer to it.
std::vector<OutlineEntry> outlineOf(const DocumentObject& root);

/// What the outline calls an object: its label, or what it is, behind its index.
std::string outlineLabel(const DocumentObject& object);

}  // namespace vornwout
