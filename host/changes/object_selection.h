// Which objects of a document a group of the command is about: selectObjects().
//
// Types first, then the conditions: those of one kind are alternatives, different kinds must all
// hold, and positions are counted among the objects that all the others leave. Commands are
// compared without regard to case, subtypes without regard to case and blanks, labels exactly. No
// content is read for it. A selection by types, commands and subtypes costs a comparison of numbers
// for each object; only one by nothing but labels has to look at all of them.
#pragma once

#include <unordered_set>
#include <vector>

#include "host/changes/modify_request.h"
#include "host/document/document.h"

namespace vornwout {

using ObjectSet = std::unordered_set<const DocumentObject*>;

/// In reading order. `gone` are objects that are deleted already, with all below them.
std::vector<DocumentObject*> selectObjects(Document& document, const ModifyEvent& event,
                                           const ObjectSet& gone);

}  // namespace vornwout
