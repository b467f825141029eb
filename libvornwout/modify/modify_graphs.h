// GRAPHS: applies chart templates and a style sheet to the selected charts.
//
// Reading a group finds the template files, so that a missing one refuses the command; writing it
// embeds their contents in the document, for a host may not see the user's files. The style sheet
// is a name that the host knows, and goes as it is.
#pragma once

#include <string>
#include <vector>

#include "libvornwout/modify/modifier.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

class ModifyGraphs : public Modifier {
 public:
  explicit ModifyGraphs(GroupComDescriptor& group);

  bool populateSpecification(const GroupComObj& group, const ParserMessage& messages) override;
  bool specified() const override { return data_.specified; }
  void write(xmlModifyEvent& event) const override;

  /// The contents of the template files, in the order given, each from its "<template" on; a file
  /// without one is taken whole. Read anew with every call.
  std::vector<std::string> getChartTemplates() const;
  /// In the current encoding; empty when none was given.
  const std::string& getStyleSheet() const { return data_.styleSheet; }

 private:
  struct Data {
    bool specified = false;
    std::vector<std::string> templatePaths;
    std::string styleSheet;
  };
  Data data_;
};

}  // namespace vornwout
