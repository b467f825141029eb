// IF: which objects of the selected types a group is about: by the command that made them, subtype,
// label or position, and whether only visible ones.
//
// COMMANDS and INSTANCES are raw token lists, read here by their tokens: a quoted name of a command
// may carry the numbers of its runs in parentheses. A token of COMMANDS that is neither a quoted
// text nor LAST is no condition and is passed over, deliberately.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "libvornwout/modify/modifier.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

class ModifyIf : public Modifier {
 public:
  /// The run of a command: its number from 1, or one of these.
  static constexpr int kAnyRun = 0;
  static constexpr int kLastRun = -1;
  using Command = std::pair<std::string, int>;

  explicit ModifyIf(GroupComDescriptor& group);

  bool populateSpecification(const GroupComObj& group, const ParserMessage& messages) override;
  bool specified() const override { return data_.specified; }
  /// Writes the visible-only mark before the elements, while the event's start tag is open.
  void write(xmlModifyEvent& event) const override;

  /// Texts are in the current encoding, as they were given.
  const std::vector<Command>& getCommands() const { return data_.commands; }
  const std::vector<std::string>& getSubtypes() const { return data_.subtypes; }
  const std::vector<std::string>& getExactLabels() const { return data_.exactLabels; }
  const std::vector<std::string>& getBeginsLabels() const { return data_.beginsLabels; }
  const std::vector<std::string>& getEndsLabels() const { return data_.endsLabels; }
  const std::vector<std::string>& getContainsLabels() const { return data_.containsLabels; }
  /// Positions among the objects that the other conditions leave; -1 for the last.
  const std::vector<int>& getInstances() const { return data_.instances; }
  bool getVisibleOnly() const { return data_.visibleOnly; }

 private:
  struct Data {
    bool specified = false;
    bool visibleOnly = false;
    std::vector<Command> commands;
    std::vector<std::string> subtypes;
    std::vector<std::string> exactLabels;
    std::vector<std::string> beginsLabels;
    std::vector<std::string> endsLabels;
    std::vector<std::string> containsLabels;
    std::vector<int> instances;
  };

  void clear();
  bool readCommands(const ParamObj& commands, const ParserMessage& messages);
  bool readCommand(const std::string& literal, const ParserMessage& messages, bool& goOn);
  bool readLabels(const ParamObj& labels, const ParserMessage& messages);
  bool readInstances(const ParamObj& instances, const ParserMessage& messages);

  /// Kept, for its qualifiers are what the value is read back with.
  ParamDescriptor labelsDescriptor_;
  Data data_;
};

}  // namespace vornwout
