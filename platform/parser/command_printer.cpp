#include "platform/parser/command_printer.h"

namespace vornwout {
namespace {

void printSubcommand(std::string& text, const SubComObj& subcommand) {
  if (!subcommand.name().empty()) text += " /" + subcommand.name();
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
  for (const SubComObj& subcommand : spec.getGlobalGroupObj().subcommands()) {
    printSubcommand(text, subcommand);
  }
  for (const GroupComObj& group : spec.groups()) {
    for (const SubComObj& subcommand : group.subcommands()) printSubcommand(text, subcommand);
  }
  // A period of its own, for the last token may end with one.
  return text + " .";
}

}  // namespace vornwout
