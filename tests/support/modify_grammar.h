// What OUTPUT MODIFY declares, as text that a test can compare at once.
#pragma once

#include <string>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "platform/parser/grammar_capture.h"
#include "vornwout/entry_points.h"

namespace vornwout {

/// "SIZE 27 ft 0 >=1 {A B} (POINTS 2 ft 0)": name, kind, the two flags, bracket option, and where
/// there are any the bounds, the declared values and the qualifiers.
inline std::string describe(const ParamDescriptor& param) {
  const auto flag = [](bool set) { return set ? 't' : 'f'; };
  std::string text = fmt::format("{} {} {}{} {}", param.name(), static_cast<int>(param.spec()),
                                 flag(param.required()), flag(param.standard()),
                                 static_cast<int>(param.brackets()));
  if (const auto& bound = param.lowerBoundary()) {
    text += fmt::format(" {}{}", bound->inclusive ? ">=" : ">", bound->value);
  }
  if (const auto& bound = param.upperBoundary()) {
    text += fmt::format(" {}{}", bound->inclusive ? "<=" : "<", bound->value);
  }
  if (!param.values().empty()) text += fmt::format(" {{{}}}", fmt::join(param.values(), " "));
  for (const ParamDescriptor& qualifier : param.qualifiers()) {
    text += " (" + describe(qualifier) + ")";
  }
  return text;
}

/// A subcommand of OUTPUT MODIFY's group: first "TABLE 1 ff" (kind, required, repeatable), then its
/// keywords in order.
inline std::vector<std::string> modifyGrammarOf(const std::string& subcommand) {
  const CommandDescriptor grammar = grammarOf(outmodify_);
  if (grammar.groups().size() != 1) {
    ADD_FAILURE() << grammar.groups().size() << " groups";
    return {};
  }
  const SubComDescriptor* declared = grammar.groups().front().findSubCom(subcommand);
  if (declared == nullptr) return {};
  std::vector<std::string> lines = {
      fmt::format("{} {} {}{}", declared->name(), static_cast<int>(declared->spec()),
                  declared->required() ? 't' : 'f', declared->repeatable() ? 't' : 'f')};
  for (const ParamDescriptor& param : declared->params()) lines.push_back(describe(param));
  return lines;
}

}  // namespace vornwout
