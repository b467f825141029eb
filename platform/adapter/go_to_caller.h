// The exception by which a host leaves a command: thrown by the host inside a host call, it passes
// through the command unchanged and is caught by the command processor.
#pragma once

namespace vornwout {

/// Unwinds a command back to the command processor.
///
/// No command catches it; the objects of the command's frame are destroyed as it passes. The
/// destructor is the key function, so that its type identity lives in the platform library alone.
class VornGoToCaller {
 public:
  VornGoToCaller() = default;
  VornGoToCaller(const VornGoToCaller&) = default;
  VornGoToCaller& operator=(const VornGoToCaller&) = default;
  virtual ~VornGoToCaller();
};

}  // namespace vornwout
