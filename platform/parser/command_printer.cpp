#include "platform/parser/command_printer.h"

namespace vornwout {
namespace {

/// True for a named subcommand whose list is the rest of the command.
bool takesTheRest(const SubComObj& subcommand) {
  return !subcommand.name().empty() && subcommand.exportParamObj() != nullptr;
}

void printSubcommand(std::string& text, const SubComObj& subcommand) {
  if (!subcommand.name().empty()) text += " /" + subcommand.name();
  // The "=" behind a subcommand's name means nothing, so a list may itself begin with one.
  if (takesTheRest(subcommand)) text += " =";
  for (const ParamObj& param : subcommand.params()) {
    const std::string value = param.sourceText();
    if (!param.getParamName().empty()) {
      text += ' ';
      text += param.getParamName();
      if (!value.empty()) text += " =";
    }
    // A blank before every token: a sign stays with its number, and none is joined to the next.
    if (!value.empty()) text += ' ' + value;
  }
}

}  // namespace

std::string printCommand(const CommandDescriptor& descriptor, const CommandSpec& spec) {
  std::string text = descriptor.name();
  const std::span<const SubComObj> own = spec.getGlobalGroupObj().subcommands();
  for (const SubComObj& subcommand : own) {
    if (!takesTheRest(subcommand)) printSubcommand(text, subcommand);
  }
  for (const GroupComObj& group : spec.groups()) {
    for (const SubComObj& subcommand : group.subcommands()) printSubcommand(text, subcommand);
  }
  for (const SubComObj& subcommand : own) {
    if (takesTheRest(subcommand)) printSubcommand(text, subcommand);
  }
  // A period of its own, for the last token may end with one.
  return text + " .";
}

}  // namespace vornwout
