#include "platform/adapter/host_adapter.h"

namespace vornwout {
namespace {

HostAdapter* registeredAdapter = nullptr;

}  // namespace

OutputControllerInterface::~OutputControllerInterface() = default;

HostAdapter::~HostAdapter() = default;

HostAdapter* GetAdapter() { return registeredAdapter; }

AdapterRegistration::AdapterRegistration(HostAdapter* adapter) : previous_(registeredAdapter) {
  registeredAdapter = adapter;
}

AdapterRegistration::~AdapterRegistration() { registeredAdapter = previous_; }

}  // namespace vornwout
