#include "libvornwout/modify/modify_delete.h"

#include <utility>

#include "libvornwout/frame/constants.h"

namespace vornwout {
namespace {

constexpr const char* kDeleteObject = "DELETEOBJECT";
constexpr const char* kDelete = "DELETE";

}  // namespace

ModifyDelete::ModifyDelete(GroupComDescriptor& group) {
  SubComDescriptor subcommand(kDeleteObject, UPSpecTypes::kKeywords, false, false);
  subcommand.allowSubComEmpty(true);
  ParamDescriptor deleted(kDelete, UPSpecTypes::kDeclaredValue, false, false);
  deleted.addStringValue(kYes);
  deleted.addStringValue(kNo);
  subcommand.addParamDesc(std::move(deleted));
  group.addSubComDesc(std::move(subcommand), false);
}

bool ModifyDelete::populateSpecification(const GroupComObj& group,
                                         const ParserMessage& /*messages*/) {
  needsDelete_ = false;
  const SubComObj* subcommand = group.getSubComObj(kDeleteObject);
  if (subcommand == nullptr) return true;
  const ParamObj* deleted = subcommand->getParamObj(kDelete);
  needsDelete_ = deleted == nullptr || deleted->isStringValueCase(kYes);
  return true;
}

}  // namespace vornwout
