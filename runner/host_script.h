// Reads the file of a scripted host: the answers that a host shall give, one after another.
//
// The file is JSON and comes from outside. It is refused as a whole, with the place of a
// mistake, for wrong syntax, a member that is unknown or stands twice, a value of the wrong type,
// and for being too large or nested too deep. Which members there are is declared once, where they
// are read; the complaint about an unknown one lists them from there.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/adapter/output_sink.h"

namespace vornwout {

/// The answer to one request to the output controller.
struct ScriptedResponse {
  struct Document {
    std::string name;
    bool active = false;
  };

  bool success = true;
  std::optional<int> severity;
  std::string message;
  std::string argument;
  std::vector<std::optional<Document>> documents;  ///< an empty entry is a gap in the list
};

/// The answer to one call of ModifyOutput or ExportOutput.
struct ScriptedCall {
  enum class Throw { kNothing, kStandard, kString, kOther, kUnwind };

  Throw thrown = Throw::kNothing;
  std::string text;    ///< of what is thrown
  std::string result;  ///< otherwise: the result text, or the response XML byte for byte
};

/// A scripted host's file; all texts are UTF-8.
struct HostScript {
  bool outputController = true;
  bool pathExpansionSuppressed = false;
  std::string workingDirectory;  ///< empty when none is given
  std::map<std::string, std::string> fileHandles;
  std::vector<ScriptedResponse> responses;
  std::vector<ScriptedCall> modifyCalls;
  std::vector<ScriptedCall> exportCalls;
};

/// Why a file was refused.
struct HostScriptError {
  std::string file;
  SourcePlace place;    ///< unknown when the file could not be read at all
  std::string pointer;  ///< JSON pointer to the offending value, empty for the root
  std::string message;

  /// "FILE:LINE:COLUMN: POINTER: MESSAGE", without an empty pointer; a sentence about the file when
  /// it could not be read at all.
  std::string text() const;
};

using HostScriptResult = std::variant<HostScript, HostScriptError>;

/// Reads a script from a text; `file` is what an error calls it.
HostScriptResult parseHostScript(std::string_view text, const std::string& file);

/// Reads a script from a file.
HostScriptResult loadHostScript(const std::string& file);

}  // namespace vornwout
