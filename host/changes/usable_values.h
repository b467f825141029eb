// Formats and fonts that a change asks for: what cannot be used is noted and left.
#pragma once

#include <optional>
#include <string>

#include "host/changes/change_notes.h"
#include "host/changes/font_check.h"
#include "platform/pivot/display_format.h"

namespace vornwout {

/// Nothing for an empty text, and for one that is no format, which is noted.
inline std::optional<DisplayFormat> usableFormat(const std::string& text, ChangeNotes& notes) {
  if (text.empty()) return std::nullopt;
  const std::optional<DisplayFormat> format = parseDisplayFormat(text);
  if (!format) notes.invalidFormat(text);
  return format;
}

/// Empty for an empty name, and for that of a font that the system does not have, which is noted.
inline std::string usableFont(const std::string& name, ChangeNotes& notes,
                              const FontCheck& isFont) {
  if (name.empty() || !isFont || isFont(name)) return name;
  notes.invalidFont(name);
  return {};
}

}  // namespace vornwout
