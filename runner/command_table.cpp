#include "runner/command_table.h"

#include <array>

#include "platform/text/multibyte.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

constexpr std::array kCommands = {
    Command{"OUTPUT NEW", "outnew_", outnew_,
            "Makes a new, empty output document, which takes the output from then on.", ""},
    Command{"OUTPUT NAME", "outname_", outname_,
            "Gives the active output document a name.",
            "OUTPUT NAME [NAME=]name [MINIMIZED={YES | NO}]."},
    Command{"OUTPUT ACTIVATE", "outactiv8_", outactiv8_,
            "Makes an open output document the active one.",
            "OUTPUT ACTIVATE [NAME=]{name | *} [MINIMIZED={YES | NO}]."},
    Command{"OUTPUT CLOSE", "outclose_", outclose_,
            "Closes an output document, the active one (*) or all of them (ALL).",
            "OUTPUT CLOSE [NAME=]{name | * | ALL}."},
    Command{"OUTPUT DISPLAY", "outdisp_", outdisp_,
            "Lists the open output documents and marks the active one.", ""},
    Command{"OUTPUT COMMENT", "outcomnt_", outcomnt_,
            "Writes lines of text into the output.", ""},
    Command{"OUTPUT OPEN", "outopen_", nullptr, "Opens an output document's file.", ""},
    Command{"OUTPUT SAVE", "outsave_", nullptr, "Saves an output document to a file.", ""},
    Command{"OUTPUT MODIFY", "outmodify_", nullptr, "Changes objects of output documents.", ""},
    Command{"OUTPUT EXPORT", "outexport_", nullptr, "Exports an output document.", ""},
    Command{"STB PRINT", "stbprint_", nullptr, "Lists the texts of the string tables.", ""},
};

}  // namespace

std::span<const Command> commandTable() { return kCommands; }

const Command* findCommand(const TokenizedCommand& command) {
  const std::vector<Token>& tokens = command.tokens();
  if (tokens.size() < kNameTokens) return nullptr;
  if (tokens[0].kind != TokenKind::kWord || tokens[1].kind != TokenKind::kWord) return nullptr;
  for (const Command& known : kCommands) {
    const std::size_t blank = known.name.find(' ');
    if (AreStringsEqualCase(command.sourceText(tokens[0]), known.name.substr(0, blank)) &&
        AreStringsEqualCase(command.sourceText(tokens[1]), known.name.substr(blank + 1))) {
      return &known;
    }
  }
  return nullptr;
}

const Command* findCommand(std::string_view name) {
  for (const Command& known : kCommands) {
    if (AreStringsEqualCase(known.name, name)) return &known;
  }
  return nullptr;
}

}  // namespace vornwout
