// OUTPUT CLOSE: closes one output document by name, or all of them.
//
// Neither the length nor the letters of the name are checked, deliberately: a name that no document
// has is the output controller's to refuse.
#include <optional>

#include "libvornwout/frame/command_frame.h"
#include "libvornwout/frame/constants.h"
#include "libvornwout/frame/output_request.h"
#include "platform/text/multibyte.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

/// By this name the output controller understands every open document.
constexpr const char* kAllDocuments = "ALL";

/// A single token, or exactly NAME = name; empty for any other shape. The second token is told by
/// its text, deliberately: a quoted "=" does as well.
std::optional<std::string> readName(const CommandSpec& spec) {
  const SubComObj* main = spec.getSubComObj("");
  const ParamObj* list = main == nullptr ? nullptr : main->exportParamObj();
  std::vector<TokenInfoObj> tokens;
  if (list == nullptr || !list->getTokenList(tokens) || tokens.empty()) return std::nullopt;
  if (tokens[0].getUpperString() != kKeywordName) {
    if (tokens.size() != 1) return std::nullopt;
    return tokens[0].getString();
  }
  if (tokens.size() != 3 || tokens[1].getString() != "=") return std::nullopt;
  return tokens[2].getString();
}

void outputClose() {
  CommandFrame frame({"OUTPUT CLOSE", "Output Close", "Output Close"});
  frame.grammar().addSubComDesc(SubComDescriptor("", UPSpecTypes::kTokenList, true, false));
  if (!frame.parseForController()) return;

  std::optional<std::string> name = readName(frame.spec());
  if (!name) {
    frame.messages().WrongValueType(kKeywordName, "");
    return;
  }
  // A document that is literally named "all" is therefore closed only with all the others.
  if (VORNMBstricmp_A(name->c_str(), "all") == 0) name = kAllDocuments;
  sendShortRequest(frame.controller(), OutputControllerCommand::kClose, *name,
                   OutputDocumentMinimized::kNotApplicable);
}

}  // namespace
}  // namespace vornwout

void outclose_() { vornwout::outputClose(); }
