#include "platform/adapter/go_to_caller.h"

namespace vornwout {

VornGoToCaller::~VornGoToCaller() = default;

}  // namespace vornwout
