// DELETEOBJECT: asks the host to delete the selected objects.
#pragma once

#include "libvornwout/modify/modifier.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

class ModifyDelete : public Modifier {
 public:
  explicit ModifyDelete(GroupComDescriptor& group);

  /// Always true.
  bool populateSpecification(const GroupComObj& group, const ParserMessage& messages) override;
  bool specified() const override { return needsDelete(); }
  void write(xmlModifyEvent& event) const override { event.deleteObject(); }

  /// DELETE=NO is the subcommand written out without deleting.
  bool needsDelete() const { return needsDelete_; }

 private:
  bool needsDelete_ = false;
};

}  // namespace vornwout
