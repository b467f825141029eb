// The road from the commands up to a host: the adapter, the output controller and their registry.
//
// A host derives from HostAdapter and, where it manages documents, from OutputControllerInterface,
// and registers its adapter for as long as it serves. The commands ask GetAdapter() in every call
// and own neither object. All calls come synchronously on the command thread.
#pragma once

#include <string>

#include "platform/adapter/controller_messages.h"

namespace vornwout {

/// The host's component that owns the open output documents.
class OutputControllerInterface {
 public:
  // The order of the table is part of the interface: the destructor's two entries come first, so
  // SendRequest is the third.
  virtual ~OutputControllerInterface();

  /// Performs the operation synchronously; true when it succeeded. On false the response holds the
  /// error's text, argument and severity.
  virtual bool SendRequest(const VornwMsgOutputControllerRequest& request,
                           VornwMsgOutputControllerResponse& response) = 0;
};

/// What a host offers to the commands. May throw VornGoToCaller from any call.
class HostAdapter {
 public:
  // The order of these operations is part of the interface; the destructor stands behind them.

  /// True when relative paths go to the host as they are.
  virtual bool IsPathExpansionSuppressed() = 0;
  /// The output controller, or null when the host has none; owned by the host.
  virtual OutputControllerInterface* GetOutputController() = 0;
  /// Carries out an export: export XML in, response XML out (empty when nothing came back).
  virtual std::string ExportOutput(const std::string& exportXml) = 0;
  /// Changes documents: modify XML in, result text out; throws on failure.
  virtual std::string ModifyOutput(const std::string& modifyXml) = 0;

  virtual ~HostAdapter();
};

/// The registered host's adapter, or null when none is registered.
HostAdapter* GetAdapter();

/// Registers a host's adapter while it lives; the adapter before it is back afterwards.
class AdapterRegistration {
 public:
  explicit AdapterRegistration(HostAdapter* adapter);
  ~AdapterRegistration();
  AdapterRegistration(const AdapterRegistration&) = delete;
  AdapterRegistration& operator=(const AdapterRegistration&) = delete;

 private:
  HostAdapter* previous_;
};

}  // namespace vornwout
