#include "platform/trace/tracing_adapter.h"

namespace vornwout {

TracingAdapter::TracingAdapter(HostAdapter& host, TraceWriter& trace)
    : host_(host), trace_(trace), controller_(trace) {}

bool TracingAdapter::IsPathExpansionSuppressed() { return host_.IsPathExpansionSuppressed(); }

OutputControllerInterface* TracingAdapter::GetOutputController() {
  OutputControllerInterface* controller = host_.GetOutputController();
  if (controller == nullptr) return nullptr;
  controller_.forwardTo(controller);
  return &controller_;
}

std::string TracingAdapter::ExportOutput(const std::string& exportXml) {
  trace_.exportXml(exportXml);
  return host_.ExportOutput(exportXml);
}

std::string TracingAdapter::ModifyOutput(const std::string& modifyXml) {
  trace_.modify(modifyXml);
  return host_.ModifyOutput(modifyXml);
}

bool TracingAdapter::Controller::SendRequest(const VornwMsgOutputControllerRequest& request,
                                             VornwMsgOutputControllerResponse& response) {
  trace_.request(request);
  return controller_->SendRequest(request, response);
}

}  // namespace vornwout
