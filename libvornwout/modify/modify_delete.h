// DELETEOBJECT: asks the host to delete the selected objects.
//
// The subcommand alone deletes; its one keyword, DELETE, can only take that back. The element it
// writes is empty, and is written only when something is to be deleted.
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
