// The contract of the modifiers: what a subcommand of an OUTPUT MODIFY group is to the group's
// walk.
//
// A modifier is made on the group's descriptor, where its constructor declares its subcommand, and
// then serves every group of the command in turn: populateSpecification replaces what it held for
// the group before. ModifySelect owns the modifiers and calls them in its own order.
#pragma once

#include "libvornwout/modify/xml/xml_modify_event.h"
#include "platform/message/parser_message.h"
#include "platform/parser/command_spec.h"

namespace vornwout {

class Modifier {
 public:
  Modifier() = default;
  Modifier(const Modifier&) = delete;
  Modifier& operator=(const Modifier&) = delete;
  virtual ~Modifier() = default;

  /// Reads the modifier's subcommand from one group. False, after reporting it, when something in
  /// it is wrong; true for a group without it.
  virtual bool populateSpecification(const GroupComObj& group, const ParserMessage& messages) = 0;

  /// True when the last group has something for this modifier to write.
  virtual bool specified() const = 0;

  /// Appends what the last group asked for to the event, which takes its elements in the order in
  /// which it is given them.
  virtual void write(xmlModifyEvent& event) const = 0;
};

}  // namespace vornwout
