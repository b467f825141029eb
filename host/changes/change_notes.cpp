#include "host/changes/change_notes.h"

#include <algorithm>

namespace vornwout {

void ChangeNotes::add(const char* what, const std::string& value) {
  std::string note = std::string(what) + " (" + value + ")";
  if (std::find(notes_.begin(), notes_.end(), note) == notes_.end()) {
    notes_.push_back(std::move(note));
  }
}

}  // namespace vornwout
