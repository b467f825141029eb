#include "runner/scripted_host.h"

#include <stdexcept>
#include <string_view>
#include <utility>

#include "platform/adapter/go_to_caller.h"
#include "platform/exportspec/response_spec.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

constexpr int kErrorSeverity = 3;
constexpr int kThrownNumber = 1;

std::string inCurrentEncoding(std::string_view text) { return currentEncoding().fromUtf8(text); }

}  // namespace

ScriptedHost::ScriptedHost(HostScript script)
    : script_(std::move(script)), controller_(script_.responses) {}

std::variant<std::unique_ptr<ScriptedHost>, HostScriptError> ScriptedHost::load(
    const std::string& file) {
  HostScriptResult result = loadHostScript(file);
  if (auto* error = std::get_if<HostScriptError>(&result)) return std::move(*error);
  return std::make_unique<ScriptedHost>(std::get<HostScript>(std::move(result)));
}

OutputControllerInterface* ScriptedHost::GetOutputController() {
  return script_.outputController ? &controller_ : nullptr;
}

std::string ScriptedHost::ExportOutput(const std::string& /*exportXml*/) {
  const ScriptedCall* call = nextCall(script_.exportCalls, nextExport_);
  return call != nullptr ? call->result : exportResponseXml(ExportResponse());
}

std::string ScriptedHost::ModifyOutput(const std::string& /*modifyXml*/) {
  const ScriptedCall* call = nextCall(script_.modifyCalls, nextModify_);
  return call != nullptr ? inCurrentEncoding(call->result) : std::string();
}

std::string ScriptedHost::workingDirectory() const {
  return inCurrentEncoding(script_.workingDirectory);
}

std::map<std::string, std::string> ScriptedHost::fileHandles() const {
  std::map<std::string, std::string> handles;
  for (const auto& [name, directory] : script_.fileHandles) {
    handles.emplace(inCurrentEncoding(name), inCurrentEncoding(directory));
  }
  return handles;
}

const ScriptedCall* ScriptedHost::nextCall(const std::vector<ScriptedCall>& calls,
                                           std::size_t& next) {
  if (next >= calls.size()) return nullptr;
  const ScriptedCall& call = calls[next++];
  switch (call.thrown) {
    case ScriptedCall::Throw::kNothing:
      break;
    case ScriptedCall::Throw::kStandard:
      throw std::runtime_error(inCurrentEncoding(call.text));
    case ScriptedCall::Throw::kString:
      thrownText_ = inCurrentEncoding(call.text);
      throw thrownText_.c_str();
    case ScriptedCall::Throw::kOther:
      throw kThrownNumber;
    case ScriptedCall::Throw::kUnwind:
      throw VornGoToCaller();
  }
  return &call;
}

bool ScriptedHost::Controller::SendRequest(const VornwMsgOutputControllerRequest& /*request*/,
                                           VornwMsgOutputControllerResponse& response) {
  if (next_ >= responses_.size()) return true;
  const ScriptedResponse& scripted = responses_[next_++];
  response.setError(scripted.severity.value_or(scripted.success ? 0 : kErrorSeverity),
                    inCurrentEncoding(scripted.message), inCurrentEncoding(scripted.argument));
  for (const auto& document : scripted.documents) {
    if (document) {
      response.addDocument(OutputDocumentItem{inCurrentEncoding(document->name), document->active});
    } else {
      response.addDocument(std::nullopt);
    }
  }
  return scripted.success;
}

}  // namespace vornwout
