// The declaration that most of the commands' flags share.
#pragma once

#include "platform/parser/descriptor.h"

namespace vornwout {

/// An optional keyword whose value is YES or NO.
ParamDescriptor yesOrNo(const char* keyword);

}  // namespace vornwout
