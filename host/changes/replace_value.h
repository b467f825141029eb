// The step that every change takes: putting a value in the place of another, and telling whether it
// was another.
#pragma once

namespace vornwout {

/// Whether `value` was another one before.
template <typename Value>
bool replaceValue(Value& value, const Value& wanted) {
  if (value == wanted) return false;
  value = wanted;
  return true;
}

}  // namespace vornwout
