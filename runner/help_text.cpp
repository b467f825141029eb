#include "runner/help_text.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

#include "platform/message/catalogue.h"
#include "platform/parser/grammar_capture.h"
#include "platform/strings/localized.h"
#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

std::string joined(const std::vector<std::string>& words, std::string_view separator) {
  return fmt::format("{}", fmt::join(words, separator));
}

/// "from 1", "up to 200", "from 0 to 200", or nothing.
std::string bounds(const ParamDescriptor& param) {
  std::string text;
  if (const auto& lower = param.lowerBoundary()) {
    text = fmt::format(" {} {}", lower->inclusive ? "from" : "above", lower->value);
  }
  if (const auto& upper = param.upperBoundary()) {
    text += fmt::format(" {} {}", upper->inclusive ? "to" : "below", upper->value);
  }
  return text;
}

std::string alternatives(const ParamDescriptor& param) {
  return param.values().size() == 1 ? param.values().front()
                                    : "{" + joined(param.values(), " | ") + "}";
}

std::string valueForm(const ParamDescriptor& param);

/// "NAME(value)", or the name of a qualifier that stands alone.
std::string qualifierForm(const ParamDescriptor& qualifier) {
  if (qualifier.spec() == UPSpecTypes::kNoValue) return qualifier.name();
  const std::string inner = valueForm(qualifier);
  return qualifier.name() + "(" + (inner.empty() ? "value ..." : inner) + ")";
}

/// What may stand in a free list of tokens, as far as it is declared.
std::string rawForm(const ParamDescriptor& param) {
  std::vector<std::string> forms(param.values());
  for (const ParamDescriptor& qualifier : param.qualifiers()) {
    forms.push_back(qualifierForm(qualifier));
  }
  if (forms.empty()) return param.required() ? "'file'" : "value";
  return forms.size() == 1 ? forms.front() : "{" + joined(forms, " | ") + "}";
}

/// A keyword's value as it is written, for a reader.
std::string valueForm(const ParamDescriptor& param) {
  switch (param.spec()) {
    case UPSpecTypes::kNoValue:
      return "";
    case UPSpecTypes::kRawTokens:
      return rawForm(param);
    case UPSpecTypes::kDeclaredValue:
      return param.values().empty() ? "name" : alternatives(param);
    case UPSpecTypes::kString:
      return "'text'";
    case UPSpecTypes::kDeclaredList:
      return alternatives(param) + " ...";
    case UPSpecTypes::kLiteralList:
      return "'text' ...";
    case UPSpecTypes::kNumber:
      return "number" + bounds(param);
    case UPSpecTypes::kNumberList:
      return "number ..." + bounds(param);
    case UPSpecTypes::kInteger:
      return "integer" + bounds(param);
    case UPSpecTypes::kQualifiers:
    case UPSpecTypes::kQualifierLists: {
      std::vector<std::string> forms;
      for (const ParamDescriptor& qualifier : param.qualifiers()) {
        forms.push_back(qualifierForm(qualifier));
      }
      return joined(forms, " ");
    }
    case UPSpecTypes::kMeasure: {
      std::vector<std::string> forms(param.values());
      for (const ParamDescriptor& unit : param.qualifiers())
        forms.push_back(unit.name() + "(value)");
      return "{" + joined(forms, " | ") + "}";
    }
  }
  return "";
}

std::string keywordForm(const ParamDescriptor& param) {
  const std::string value = valueForm(param);
  const bool bracketed = param.brackets() != UPSpecTypes::kBracketsRaw;
  std::string form = param.name();
  if (!value.empty()) form += "=" + (bracketed ? "[" + value + "]" : value);
  return param.required() ? form : "[" + form + "]";
}

void appendSubcommand(std::string& text, const SubComDescriptor& subcommand, int indent) {
  const std::string margin(static_cast<std::size_t>(indent), ' ');
  std::string keywordMargin = margin;
  if (!subcommand.name().empty()) {
    const bool optional = !subcommand.required();
    text += fmt::format("{}{}/{}{}{}\n", margin, optional ? "[" : "", subcommand.name(),
                        optional ? "]" : "", subcommand.repeatable() ? " ..." : "");
    keywordMargin += "    ";
  }
  for (const ParamDescriptor& param : subcommand.params()) {
    text += keywordMargin + keywordForm(param) + "\n";
  }
}

std::string usageFromGrammar(const CommandDescriptor& grammar) {
  std::string text = grammar.name() + "\n";
  for (const SubComDescriptor& subcommand : grammar.subcommands()) {
    appendSubcommand(text, subcommand, 2);
  }
  for (const GroupComDescriptor& group : grammar.groups()) {
    text += "  one or more groups of:\n";
    for (const SubComDescriptor& subcommand : group.subcommands()) {
      appendSubcommand(text, subcommand, 4);
    }
  }
  text.insert(text.size() - 1, ".");
  return text;
}

bool isAvailable(const Command& command) { return command.run != nullptr; }

std::string_view severityName(MessageSeverity severity) {
  switch (severity) {
    case MessageSeverity::kError:
      return "error";
    case MessageSeverity::kWarning:
      return "warning";
    case MessageSeverity::kInformation:
      break;
  }
  return "note";
}

}  // namespace

std::string usageOf(const Command& command) {
  if (!command.usage.empty()) return std::string(command.usage) + "\n";
  return usageFromGrammar(grammarOf(command.run));
}

std::string commandOverview(std::string_view start) {
  const std::string words = start.empty() ? std::string() : toUpperCase(start) + " ";
  std::string text;
  for (const Command& command : commandTable()) {
    if (isAvailable(command) && command.name.starts_with(words))
      text += fmt::format("  {:<16} {}\n", command.name, localizedText(command.summary));
  }
  return text;
}

std::string languageReference() {
  std::string text =
      "# Language reference\n\n"
      "Printed by `vornwout help --markdown` from the grammar that each command declares. Keywords "
      "in\n"
      "square brackets may be left out, of values in braces one is chosen, `...` means that what\n"
      "stands before it may repeat. Keywords and their values are written in any case; a command "
      "ends\n"
      "with a period at the end of a line or with an empty line.\n";
  for (const Command& command : commandTable()) {
    if (!isAvailable(command)) continue;
    text += fmt::format("\n## {}\n\n{}\n\n```\n{}```\n", command.name, command.summary,
                        usageOf(command));
    if (!command.details.empty()) text += fmt::format("\n{}", command.details);
  }
  return text;
}

std::string messageReference() {
  std::string text =
      "# Messages\n\n"
      "Printed by `vornwout help --messages` from the message catalogue. `^1`, `^2` and so on "
      "stand\n"
      "for what a message is about; the operation is what traces call it.\n\n"
      "| Operation | Severity | Text | What to do |\n|---|---|---|---|\n";
  for (const MessageEntry& entry : messageCatalogue()) {
    const std::string_view shown = entry.text.empty() ? "the command's own text" : entry.text;
    std::string cell(shown);
    for (std::size_t bar = cell.find('|'); bar != std::string::npos;
         bar = cell.find('|', bar + 2)) {
      cell.insert(bar, "\\");
    }
    text += fmt::format("| `{}` | {} | {} | {} |\n", entry.operation, severityName(entry.severity),
                        cell, documentedRemedy(entry));
  }
  return text;
}

}  // namespace vornwout
