#include "libvornwout/modify/xml/xml_modify_event.h"

#include <exception>

namespace vornwout {

xmlModifyEvent::xmlModifyEvent(std::string& document)
    : element_(document, "modifyEvent"), exceptions_(std::uncaught_exceptions()) {
  static_assert(kObjectTypes.size() == kTypeCount);
}

xmlModifyEvent::~xmlModifyEvent() noexcept(false) {
  if (std::uncaught_exceptions() > exceptions_) return;
  element_.beginContent();
  element_.end();
}

void xmlModifyEvent::commitSets() {
  if (all_) return element_.attribute("all", true);
  for (std::size_t i = 0; i < kTypeCount; ++i) {
    if (selected_[i]) element_.attribute(kObjectTypes[i].attribute, true);
  }
}

void xmlModifyEvent::except(Type type) { element_.attribute(kObjectTypes[type].attribute, false); }

void xmlModifyEvent::addVisibleOnly() { element_.attribute("visibleOnly", true); }

void xmlModifyEvent::deleteObject() {
  element_.beginContent();
  XmlElement(document(), "deleteObject").end();
}

}  // namespace vornwout
