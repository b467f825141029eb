#include "libvornwout/modify/xml/xml_modify_if.h"

#include <vector>

#include "libvornwout/modify/modify_if.h"
#include "libvornwout/modify/xml/xml_element.h"
#include "libvornwout/modify/xml/xml_utilities.h"

namespace vornwout {
namespace {

void appendCommand(std::string& document, const ModifyIf::Command& command) {
  const auto& [name, run] = command;
  // The element's name has a blank of its own behind it: a nameless entry, which the word LAST
  // makes as well as '' and '(2)', has two before its attribute. Deliberate, as hosts have seen it.
  XmlElement element(document, name.empty() ? "command " : "command");
  if (!name.empty()) element.attribute("commandName", XMLUtilities::genericToUTF8(name));
  if (run == ModifyIf::kLastRun) {
    element.attribute("last", true);
  } else if (run != ModifyIf::kAnyRun) {
    element.attribute("instance", run);
  }
  element.end();
}

void appendLabels(std::string& document, const std::vector<std::string>& labels,
                  const char* match) {
  for (const std::string& label : labels) {
    XmlElement element(document, "label");
    element.attribute("expression", XMLUtilities::genericToUTF8(label));
    element.attribute(match, true);
    element.end();
  }
}

}  // namespace

void xmlModifyIf::populateConditionInfo(const ModifyIf& condition) {
  for (const ModifyIf::Command& command : condition.getCommands()) {
    appendCommand(document_, command);
  }
  for (const std::string& subtype : condition.getSubtypes()) {
    XmlElement element(document_, "subtype");
    element.attribute("subtype", XMLUtilities::genericToUTF8(subtype));
    element.end();
  }
  appendLabels(document_, condition.getExactLabels(), "exact");
  appendLabels(document_, condition.getBeginsLabels(), "begins");
  appendLabels(document_, condition.getEndsLabels(), "ends");
  appendLabels(document_, condition.getContainsLabels(), "contains");
  for (const int instance : condition.getInstances()) {
    XmlElement element(document_, "instance");
    // INSTANCES=0 and below mean the last, deliberately.
    if (instance > 0) {
      element.attribute("instance", instance);
    } else {
      element.attribute("last", true);
    }
    element.end();
  }
}

}  // namespace vornwout
