#include "libvornwout/modify/modify_if.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <string_view>

#include "libvornwout/frame/constants.h"
#include "libvornwout/modify/modify_values.h"
#include "libvornwout/modify/xml/xml_modify_if.h"
#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

constexpr const char* kIf = "IF";
constexpr const char* kCommands = "COMMANDS";
constexpr const char* kSubtypes = "SUBTYPES";
constexpr const char* kLabels = "LABELS";
constexpr const char* kInstances = "INSTANCES";
constexpr const char* kVisibleOnly = "VISIBLEONLY";
constexpr const char* kExact = "EXACT";
constexpr const char* kBegins = "BEGINS";
constexpr const char* kContains = "CONTAINS";
constexpr const char* kEnds = "ENDS";
constexpr const char* kLast = "LAST";

constexpr std::string_view kRunCharacters = "0123456789,";

ParamDescriptor bracketedList(const char* name, UPSpecTypes::ParamSpec spec,
                              UPSpecTypes::BracketOptions brackets) {
  ParamDescriptor list = modifierKeyword(name, spec);
  list.setBracketOption(brackets);
  return list;
}

ParamDescriptor labelsDescriptor() {
  ParamDescriptor labels =
      bracketedList(kLabels, UPSpecTypes::kQualifierLists, UPSpecTypes::kBracketsOptionalList);
  for (const char* qualifier : {kExact, kBegins, kContains, kEnds}) {
    labels.addQualifDesc(modifierKeyword(qualifier, UPSpecTypes::kLiteralList));
  }
  return labels;
}

bool isWord(const TokenInfoObj& token, std::string_view word) {
  return token.IsWord() && AreStringsEqualCase(token.getUpperString(), word);
}

/// A run's number; 0 for an empty piece, for zero and for a number that is too large for a run.
int runNumber(const std::string& piece) {
  const long number = std::strtol(piece.c_str(), nullptr, 10);
  return number > std::numeric_limits<int>::max() ? 0 : static_cast<int>(number);
}

void addTo(std::vector<std::string>& list, std::vector<std::string> added) {
  for (std::string& text : added) list.push_back(std::move(text));
}

}  // namespace

ModifyIf::ModifyIf(GroupComDescriptor& group) : labelsDescriptor_(labelsDescriptor()) {
  SubComDescriptor subcommand(kIf, UPSpecTypes::kKeywords, false, false);
  subcommand.addParamDesc(
      bracketedList(kCommands, UPSpecTypes::kRawTokens, UPSpecTypes::kBracketsOptional));
  subcommand.addParamDesc(
      bracketedList(kSubtypes, UPSpecTypes::kLiteralList, UPSpecTypes::kBracketsOptionalList));
  subcommand.addParamDesc(labelsDescriptor_);
  subcommand.addParamDesc(
      bracketedList(kInstances, UPSpecTypes::kRawTokens, UPSpecTypes::kBracketsOptionalList));
  ParamDescriptor visibleOnly(kVisibleOnly, UPSpecTypes::kDeclaredValue, false, false);
  visibleOnly.addStringValue(kNo);
  visibleOnly.addStringValue(kYes);
  subcommand.addParamDesc(std::move(visibleOnly));
  group.addSubComDesc(std::move(subcommand), false);
}

bool ModifyIf::populateSpecification(const GroupComObj& group, const ParserMessage& messages) {
  clear();
  const SubComObj* subcommand = group.getSubComObj(kIf);
  if (subcommand == nullptr) return true;
  data_.specified = true;
  bool accepted = true;
  if (const ParamObj* commands = subcommand->getParamObj(kCommands)) {
    accepted = readCommands(*commands, messages);
  }
  if (const ParamObj* subtypes = subcommand->getParamObj(kSubtypes)) {
    subtypes->getLiteralList(data_.subtypes);
  }
  if (const ParamObj* labels = subcommand->getParamObj(kLabels)) {
    accepted = readLabels(*labels, messages) && accepted;
  }
  if (const ParamObj* instances = subcommand->getParamObj(kInstances)) {
    accepted = readInstances(*instances, messages) && accepted;
  }
  if (const ParamObj* visibleOnly = subcommand->getParamObj(kVisibleOnly)) {
    data_.visibleOnly = visibleOnly->isStringValueCase(kYes);
  }
  return accepted;
}

void ModifyIf::write(xmlModifyEvent& event) const {
  if (data_.visibleOnly) event.addVisibleOnly();
  event.addConditionObject();
  xmlModifyIf(event.document()).populateConditionInfo(*this);
}

void ModifyIf::clear() {
  data_.specified = false;
  data_.visibleOnly = false;
  data_.commands.clear();
  data_.subtypes.clear();
  data_.exactLabels.clear();
  data_.beginsLabels.clear();
  data_.endsLabels.clear();
  data_.containsLabels.clear();
  data_.instances.clear();
}

bool ModifyIf::readCommands(const ParamObj& commands, const ParserMessage& messages) {
  std::vector<TokenInfoObj> tokens;
  commands.getTokenList(tokens);
  bool accepted = true;
  bool goOn = true;
  for (std::size_t i = 0; i < tokens.size() && goOn; ++i) {
    if (tokens[i].IsLiteral()) {
      blame(tokens[i]);
      accepted = readCommand(tokens[i].getString(), messages, goOn) && accepted;
    } else if (isWord(tokens[i], kLast)) {
      // Deliberately an entry of its own: it is not tied to the command named before it.
      data_.commands.emplace_back(std::string(), kLastRun);
    }
  }
  return accepted;
}

bool ModifyIf::readCommand(const std::string& literal, const ParserMessage& messages, bool& goOn) {
  const char* const start = literal.c_str();
  const char* const open = VORNMBstrchr_A(start, '(');
  if (open == nullptr) {
    data_.commands.emplace_back(literal, kAnyRun);
    return true;
  }
  const std::string name(start, open);
  const std::string_view rest(open + 1);
  if (rest.size() < 2 || rest.back() != ')') {
    messages.GenericError("Unbalanced parentheses in effect, parameter ^1, subcommand ^2 ...",
                          kCommands, kIf);
    return false;
  }
  const std::string_view runs = rest.substr(0, rest.size() - 1);
  if (AreStringsEqualCase(runs, kLast)) {
    data_.commands.emplace_back(name, kLastRun);
    return true;
  }
  if (runs.find_first_not_of(kRunCharacters) != std::string_view::npos) {
    messages.ParamNeedIntegerList(kIf);
    goOn = false;
    return false;
  }
  bool any = false;
  for (std::size_t begin = 0; begin <= runs.size();) {
    const std::size_t end = std::min(runs.find(',', begin), runs.size());
    const int run = runNumber(std::string(runs.substr(begin, end - begin)));
    begin = end + 1;
    if (run == 0) {
      messages.ParamNeedInteger(literal, kIf);
      continue;
    }
    data_.commands.emplace_back(name, run);
    any = true;
  }
  if (!any) data_.commands.emplace_back(name, kAnyRun);
  return true;
}

bool ModifyIf::readLabels(const ParamObj& labels, const ParserMessage& messages) {
  std::vector<ParamObj> qualifiers;
  const bool known = labels.getStringQualList(labelsDescriptor_, messages, qualifiers);
  const std::array<std::pair<const char*, std::vector<std::string>*>, 4> lists = {{
      {kExact, &data_.exactLabels},
      {kBegins, &data_.beginsLabels},
      {kEnds, &data_.endsLabels},
      {kContains, &data_.containsLabels},
  }};
  for (const ParamObj& qualifier : qualifiers) {
    std::vector<std::string> texts;
    qualifier.getLiteralList(texts);
    for (const auto& [name, list] : lists) {
      if (AreStringsEqualCase(qualifier.getParamName(), name)) {
        addTo(*list, std::move(texts));
        break;
      }
    }
  }
  return known;
}

bool ModifyIf::readInstances(const ParamObj& instances, const ParserMessage& messages) {
  std::vector<TokenInfoObj> tokens;
  instances.getTokenList(tokens);
  bool accepted = true;
  for (const TokenInfoObj& token : tokens) {
    if (token.IsInteger()) {
      data_.instances.push_back(token.getInteger());
    } else if (isWord(token, kLast)) {
      data_.instances.push_back(kLastRun);
    } else {
      blame(token);
      // The subcommand's name in the third place is deliberately not IF but the keyword's singular.
      messages.InvalidParamValue(token.messageText(), kInstances, "INSTANCE");
      accepted = false;
    }
  }
  return accepted;
}

}  // namespace vornwout
