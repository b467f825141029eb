// A host that owns no documents and gives the answers that a script says, one per call.
//
// It lets a job be tried against answers that a real host rarely gives. The script (host_script.h)
// is UTF-8; its texts are converted to the current encoding when they are handed out, except a
// response XML, which is UTF-8 by itself. When the script is used up a request succeeds with no
// documents, ModifyOutput returns an empty text, and ExportOutput a plain success.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <variant>

#include "platform/adapter/host_adapter.h"
#include "runner/host_script.h"

namespace vornwout {

/// The scripted host.
class ScriptedHost : public HostAdapter {
 public:
  explicit ScriptedHost(HostScript script);
  ScriptedHost(const ScriptedHost&) = delete;
  ScriptedHost& operator=(const ScriptedHost&) = delete;

  /// Makes a host from a script's file.
  static std::variant<std::unique_ptr<ScriptedHost>, HostScriptError> load(const std::string& file);

  bool IsPathExpansionSuppressed() override { return script_.pathExpansionSuppressed; }
  OutputControllerInterface* GetOutputController() override;
  /// Throws what the script says: std::runtime_error, a `const char*` (valid until the next call
  /// that throws one), an int, or VornGoToCaller.
  std::string ExportOutput(const std::string& exportXml) override;
  std::string ModifyOutput(const std::string& modifyXml) override;

  /// The directory that relative paths of the job start from, empty when the script gives none; in
  /// the current encoding, as the handles.
  std::string workingDirectory() const;
  std::map<std::string, std::string> fileHandles() const;

 private:
  class Controller : public OutputControllerInterface {
   public:
    explicit Controller(const std::vector<ScriptedResponse>& responses) : responses_(responses) {}
    bool SendRequest(const VornwMsgOutputControllerRequest& request,
                     VornwMsgOutputControllerResponse& response) override;

   private:
    const std::vector<ScriptedResponse>& responses_;
    std::size_t next_ = 0;
  };

  /// The scripted call, after it has thrown what it is to throw; null when the script is used up.
  const ScriptedCall* nextCall(const std::vector<ScriptedCall>& calls, std::size_t& next);

  HostScript script_;
  Controller controller_;
  std::size_t nextModify_ = 0;
  std::size_t nextExport_ = 0;
  std::string thrownText_;  ///< what a thrown `const char*` points to
};

}  // namespace vornwout
