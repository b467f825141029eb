// ModifySelect: the groups of OUTPUT MODIFY. Each begins with SELECT, which names the types of the
// objects to act on, and goes on with the subcommands of the modifiers.
//
// The constructor declares the grammar of a group; populateSpecification walks the groups that were
// parsed and writes one modify event for each.
//
// A new modifier is a class of its own, included and listed in modify_select.cpp: the line's
// place is that of its declaration, its turn that of its element. The element takes the same place
// in docs/modify-document.md and its schema, and a host must know it.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "libvornwout/modify/modifier.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

/// Grows the document for the groups that are left, guessed from those that were written: growing
/// by doubling copies a large document, and touches fresh memory, more often than its text takes.
void reserveForGroups(std::string& document, std::size_t start, std::size_t done, std::size_t left);

class ModifySelect {
 public:
  /// Declares the group with all its subcommands and adds it to the command.
  explicit ModifySelect(CommandDescriptor& command);

  /// Appends one modify event per group; true when every group was accepted.
  ///
  /// A failure is sticky, deliberately: later groups still get their events with their types, but
  /// neither their exceptions nor their modifiers are read, so one mistake is not followed by
  /// messages about the rest of the command. Every event is closed in any case.
  bool populateSpecification(const CommandSpec& spec, const ParserMessage& messages,
                             std::string& document);

 private:
  bool populateGroup(const GroupComObj& group, const ParserMessage& messages, bool accepted,
                     xmlModifyEvent& event);

  /// In the order in which they act on a group.
  std::vector<std::unique_ptr<Modifier>> modifiers_;
};

}  // namespace vornwout
