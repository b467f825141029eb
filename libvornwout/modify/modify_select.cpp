#include "libvornwout/modify/modify_select.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <utility>

#include "libvornwout/modify/modify_delete.h"
#include "libvornwout/modify/modify_graphs.h"
#include "libvornwout/modify/modify_if.h"
#include "libvornwout/modify/modify_indexing.h"
#include "libvornwout/modify/modify_properties.h"
#include "libvornwout/modify/modify_table.h"
#include "libvornwout/modify/modify_table_cells.h"
#include "libvornwout/modify/modify_text.h"
#include "platform/text/multibyte.h"
#include "platform/text/reserve_large.h"

namespace vornwout {
namespace {

constexpr const char* kSelect = "SELECT";
constexpr const char* kAll = "ALL";
constexpr const char* kExcept = "EXCEPT";

template <typename Kind>
std::unique_ptr<Modifier> make(GroupComDescriptor& group) {
  return std::make_unique<Kind>(group);
}

struct ModifierKind {
  std::unique_ptr<Modifier> (*make)(GroupComDescriptor&);
  /// When it acts on a group, and with it the place of its element in the event: before those of
  /// higher turns. There is room between them.
  int turn;
};

/// The modifiers in the order in which their subcommands are declared. Both orders are part of the
/// interface: that of the declarations is the one of the help, that of the turns is the one a host
/// reads.
constexpr std::array kModifiers = {
    ModifierKind{make<ModifyIf>, 10},     ModifierKind{make<ModifyIndexing>, 20},
    ModifierKind{make<ModifyDelete>, 30}, ModifierKind{make<ModifyGraphs>, 40},
    ModifierKind{make<ModifyText>, 80},   ModifierKind{make<ModifyProperties>, 50},
    ModifierKind{make<ModifyTable>, 60},  ModifierKind{make<ModifyTableCells>, 70},
};

/// Two modifiers of one turn would have no order.
constexpr bool turnsDiffer() {
  for (std::size_t i = 0; i < kModifiers.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (kModifiers[i].turn == kModifiers[j].turn) return false;
    }
  }
  return true;
}
static_assert(turnsDiffer());

SubComDescriptor selectDescriptor() {
  SubComDescriptor select(kSelect, UPSpecTypes::kKeywordList, true, false);
  select.addParamDesc(kAll, UPSpecTypes::kNoValue, false, true);
  ParamDescriptor except(kExcept, UPSpecTypes::kDeclaredList, false, true);
  except.setBracketOption(UPSpecTypes::kBracketsOptional);
  for (const ObjectType& type : kObjectTypes) {
    select.addParamDesc(type.keyword, UPSpecTypes::kNoValue, false, true);
    except.addStringValue(type.keyword);
  }
  select.addParamDesc(std::move(except));
  return select;
}

void writeTypes(const SubComObj& select, bool all, xmlModifyEvent& event) {
  if (all) {
    event.setAll();  // the types beside it say nothing
  } else {
    for (const ObjectType& type : kObjectTypes) {
      if (select.getParamObj(type.keyword) != nullptr) (event.*type.set)();
    }
  }
  event.commitSets();
}

bool writeExceptions(const ParamObj& except, const ParserMessage& messages, xmlModifyEvent& event) {
  std::vector<std::string> values;
  bool accepted = except.getStringList(values);
  for (const std::string& value : values) {
    const auto* type = std::find_if(
        kObjectTypes.begin(), kObjectTypes.end(),
        [&](const ObjectType& known) { return AreStringsEqualCase(value, known.keyword); });
    if (type == kObjectTypes.end()) {
      messages.InvalidParamValue(value, kExcept, kSelect);
      accepted = false;
      continue;
    }
    (event.*type->except)();
  }
  return accepted;
}

}  // namespace

void reserveForGroups(std::string& document, std::size_t start, std::size_t done,
                      std::size_t left) {
  if (done == 0) return;
  const std::size_t size = document.size();
  const std::size_t average = (size - start) / done;
  if (document.capacity() - size >= 2 * average) return;
  // A few groups with much in them say little about the others; what is not used is not touched.
  constexpr std::size_t kMostGuessed = std::size_t{256} << 20;
  const std::size_t guess = average * left + average * left / 16;
  reserveLarge(document, size + std::min(guess, std::max(size, kMostGuessed)));
}

ModifySelect::ModifySelect(CommandDescriptor& command) {
  GroupComDescriptor group(0, true, "Select command ^1...");
  group.addSubComDesc(selectDescriptor(), true);
  std::map<int, std::unique_ptr<Modifier>> byTurn;
  for (const ModifierKind& kind : kModifiers) byTurn[kind.turn] = kind.make(group);
  for (auto& [turn, modifier] : byTurn) modifiers_.push_back(std::move(modifier));
  command.addGroupDesc(std::move(group));
}

bool ModifySelect::populateSpecification(const CommandSpec& spec, const ParserMessage& messages,
                                         std::string& document) {
  std::vector<const GroupComObj*> groups;
  spec.getGroupObj(groups, kSelect);
  bool accepted = true;
  const std::size_t start = document.size();
  for (std::size_t i = 0; i < groups.size(); ++i) {
    reserveForGroups(document, start, i, groups.size() - i);
    xmlModifyEvent event(document);
    accepted = populateGroup(*groups[i], messages, accepted, event);
  }
  return accepted;
}

bool ModifySelect::populateGroup(const GroupComObj& group, const ParserMessage& messages,
                                 bool accepted, xmlModifyEvent& event) {
  // Present, for it is what starts a group.
  const SubComObj& select = *group.getSubComObj(kSelect);
  const bool all = select.getParamObj(kAll) != nullptr;
  writeTypes(select, all, event);
  if (const ParamObj* except = select.getParamObj(kExcept)) {
    if (!all) {
      messages.GenericError("Subcommand ^1 invalid keyword ^2 unless ^3...", kSelect, kExcept,
                            kAll);
      accepted = false;
    } else if (accepted) {
      accepted = writeExceptions(*except, messages, event);
    }
  }
  if (!accepted) return false;
  for (const std::unique_ptr<Modifier>& modifier : modifiers_) {
    if (!modifier->populateSpecification(group, messages)) return false;
    if (modifier->specified()) modifier->write(event);
  }
  return true;
}

}  // namespace vornwout
