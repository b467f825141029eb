// Puts a trace between the commands and a host: what goes up is reported, then forwarded.
//
// Answers, exceptions and the host's unwinding pass through unchanged. A host without an output
// controller stays one.
#pragma once

#include <string>

#include "platform/adapter/host_adapter.h"
#include "platform/trace/trace_writer.h"

namespace vornwout {

/// Decorates a host's adapter; owns neither it nor the trace, both must outlive it.
class TracingAdapter : public HostAdapter {
 public:
  TracingAdapter(HostAdapter& host, TraceWriter& trace);

  bool IsPathExpansionSuppressed() override;
  /// The host's controller behind the trace, null when the host has none.
  OutputControllerInterface* GetOutputController() override;
  std::string ExportOutput(const std::string& exportXml) override;
  std::string ModifyOutput(const std::string& modifyXml) override;

 private:
  class Controller : public OutputControllerInterface {
   public:
    explicit Controller(TraceWriter& trace) : trace_(trace) {}
    void forwardTo(OutputControllerInterface* controller) { controller_ = controller; }
    bool SendRequest(const VornwMsgOutputControllerRequest& request,
                     VornwMsgOutputControllerResponse& response) override;

   private:
    TraceWriter& trace_;
    OutputControllerInterface* controller_ = nullptr;
  };

  HostAdapter& host_;
  TraceWriter& trace_;
  Controller controller_;
};

}  // namespace vornwout
