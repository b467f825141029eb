#include "libvornwout/frame/yes_or_no.h"

#include "libvornwout/frame/constants.h"

namespace vornwout {

ParamDescriptor yesOrNo(const char* keyword) {
  ParamDescriptor param(keyword, UPSpecTypes::kDeclaredValue, false, true);
  param.addStringValue(kYes);
  param.addStringValue(kNo);
  return param;
}

}  // namespace vornwout
