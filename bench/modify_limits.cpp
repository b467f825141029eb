// Limits of OUTPUT MODIFY: writing its document, many groups, one group.
#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "bench/limits.h"
#include "bench/statement_yardstick.h"
#include "libvornwout/modify/modify_delete.h"
#include "libvornwout/modify/modify_graphs.h"
#include "libvornwout/modify/modify_if.h"
#include "libvornwout/modify/modify_indexing.h"
#include "libvornwout/modify/modify_properties.h"
#include "libvornwout/modify/modify_select.h"
#include "libvornwout/modify/modify_table.h"
#include "libvornwout/modify/modify_table_cells.h"
#include "libvornwout/modify/modify_text.h"
#include "platform/adapter/host_adapter.h"
#include "platform/parser/current_command.h"
#include "platform/parser/tokenizer.h"
#include "platform/parser/universal_parser.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

/// What a report's author writes: every modifier, texts as long as they are in reports.
constexpr const char* kOrdinaryGroup =
    " /SELECT TABLES /IF COMMANDS=['Regress(LAST)' 'Means'] SUBTYPES=['Coefficients'] "
    "LABELS=[BEGINS('Quarterly figures by region')] "
    "/INDEXING INDEXTYPE=ROMANCAP INDEXSTART=XIV "
    "/OBJECTPROPERTIES OUTLINELABEL='Quarterly figures by region' SIZE=50 50 PERCENT "
    "/TABLE TABLETITLE='Sales of the quarter by region and month, in thousands' "
    "TABLESUMMARY='All branches that were open in the whole of the quarter' "
    "SORT=COLPOSITION(2) SORTDIRECTION=DESCENDING FORMAT=F8.2 SELECTEDLAYER=['Year' LAST] "
    "/TABLECELLS SELECT=[MEAN 'Total of all branches'] SELECTCONDITION=[x>100] STYLE=BOLD "
    "TEXTCOLOR=RGB(255 128 0) BACKGROUNDCOLOR=YELLOW COLUMNWIDTH=3 CENTIMETERS "
    "/TEXTS TEXT='The figures of the last month are preliminary.' FONT='Noto Sans' FONTSIZE=10.5";

/// A group of a hundred bytes.
constexpr std::string_view kShortGroup =
    " /SELECT TABLES /IF SUBTYPES='Coefficients' /TABLE TABLETITLE='Sales by regions' "
    "SORT=COLPOSITION(2)";
static_assert(kShortGroup.size() == 100);

constexpr const char* kName = "OUTPUT MODIFY";
constexpr int kCommandRepeats = 2000;

/// A host that takes what it is sent.
class TakingHost : public HostAdapter {
 public:
  bool IsPathExpansionSuppressed() override { return false; }
  OutputControllerInterface* GetOutputController() override { return nullptr; }
  std::string ExportOutput(const std::string&) override { return {}; }
  std::string ModifyOutput(const std::string& xml) override {
    size = xml.size();
    return "(1,1,0)";
  }

  std::size_t size = 0;
};

/// All modifiers as one group has filled them.
class FilledModifiers {
 public:
  explicit FilledModifiers(const std::string& groupText) : text_(kName + groupText + ".") {
    GroupComDescriptor group(0, true, "");
    SubComDescriptor select("SELECT", UPSpecTypes::kKeywordList, true, false);
    select.addParamDesc("TABLES", UPSpecTypes::kNoValue, false, true);
    group.addSubComDesc(select, true);
    make<ModifyIf>(group);
    make<ModifyIndexing>(group);
    make<ModifyDelete>(group);
    make<ModifyGraphs>(group);
    make<ModifyProperties>(group);
    make<ModifyTable>(group);
    make<ModifyTableCells>(group);
    make<ModifyText>(group);
    CommandDescriptor descriptor(kName);
    descriptor.addGroupDesc(group);
    Tokenizer tokenizer(text_);
    TokenizedCommand command;
    tokenizer.next(command);
    const CurrentCommand current(command, 2);
    CommandSpec spec;
    const VORN_TokenSequence tokens(true);
    UniversalParser parser(tokens, spec, descriptor);
    const ParserMessage messages;
    bool accepted = parser.getCommandSpecifications() == 0;
    for (const auto& modifier : modifiers_) {
      accepted = accepted && modifier->populateSpecification(spec.groups()[0], messages);
    }
    if (!accepted) throw std::runtime_error("the group has errors");
  }

  std::string write(int groups) const {
    std::string document;
    for (int i = 0; i < groups; ++i) {
      reserveForGroups(document, 0, static_cast<std::size_t>(i),
                       static_cast<std::size_t>(groups - i));
      xmlModifyEvent event(document);
      event.setTables();
      event.commitSets();
      for (const auto& modifier : modifiers_) {
        if (modifier->specified()) modifier->write(event);
      }
    }
    return document;
  }

 private:
  template <typename Kind>
  void make(GroupComDescriptor& group) {
    modifiers_.push_back(std::make_unique<Kind>(group));
  }

  std::string text_;
  std::vector<std::unique_ptr<Modifier>> modifiers_;
};

/// Seconds for writing one group of a document of so many, and its bytes.
struct Writing {
  double secondsPerGroup = 0;
  double bytesPerSecond = 0;
};

Writing timeWriting(const Effort& effort, const FilledModifiers& modifiers, int groups) {
  // So often that the clock does not matter.
  const int repeats = std::max(1, 10'000 / groups);
  std::vector<double> times;
  std::size_t size = 0;
  for (int i = 0; i < effort.rounds; ++i) {
    times.push_back(secondsOf([&] {
      for (int j = 0; j < repeats; ++j) size = modifiers.write(groups).size();
    }));
  }
  const double seconds = median(times) / repeats;
  return {seconds / groups, static_cast<double>(size) / seconds};
}

void writingLimits(const Effort& effort, std::vector<LimitResult>& results) {
  const FilledModifiers modifiers(kOrdinaryGroup);
  const Writing few = timeWriting(effort, modifiers, 10);
  for (const int groups : {10, 1000, effort.isSmoke ? 10'000 : 100'000}) {
    const Writing many = timeWriting(effort, modifiers, groups);
    LimitResult rate;
    rate.name = fmt::format("writing a modify document of {} groups, MB/s", groups);
    rate.measured = many.bytesPerSecond / 1e6;
    rate.limit = 900;
    rate.isMinimum = true;
    results.push_back(rate);
    LimitResult growth;
    growth.name = fmt::format("a group among {} groups : one among 10", groups);
    growth.measured = many.secondsPerGroup / few.secondsPerGroup;
    growth.limit = 1.5;
    growth.detail = fmt::format("{:.0f} ns against {:.0f} ns", many.secondsPerGroup * 1e9,
                                few.secondsPerGroup * 1e9);
    results.push_back(growth);
  }
}

void runCommand(const std::string& text, const TakingHost& host) {
  Tokenizer tokenizer(text);
  TokenizedCommand command;
  tokenizer.next(command);
  const CurrentCommand current(command, 2);
  outmodify_();
  if (host.size == 0) throw std::runtime_error("the command was refused");
}

void manyGroups(const Effort& effort, TakingHost& host, std::vector<LimitResult>& results) {
  StatementYardstick yardstick;
  const std::string statement = statementOf(kShortGroup.size());
  for (const int groups : effort.isSmoke ? std::vector{100} : std::vector{1000, 10'000, 100'000}) {
    std::string text = kName;
    for (int i = 0; i < groups; ++i) text += kShortGroup;
    text += '.';
    const Medians medians = mediansInTurn(
        effort, [&] { runCommand(text, host); }, [&] { yardstick.prepare(statement, groups); });
    LimitResult result;
    result.name = fmt::format("{} groups of 100 bytes : preparing as many statements", groups);
    result.measured = medians.first / medians.second;
    result.limit = 1.0;
    result.detail = fmt::format("{:.2f} us against {:.2f} us", medians.first / groups * 1e6,
                                medians.second / groups * 1e6);
    results.push_back(result);
  }
}

void oneGroup(const Effort& effort, TakingHost& host, std::vector<LimitResult>& results) {
  const int repeats = effort.isSmoke ? 10 : kCommandRepeats;
  const std::string text = kName + std::string(kOrdinaryGroup) + ".";
  const Medians medians = mediansInTurn(
      effort,
      [&] {
        for (int i = 0; i < repeats; ++i) runCommand(text, host);
      },
      [&] {
        for (int i = 0; i < repeats; ++i) {
          CommandDescriptor descriptor(kName);
          const ModifySelect select(descriptor);
        }
      });
  LimitResult result;
  result.name = "an ordinary command of one group, us";
  result.measured = medians.first / repeats * 1e6;
  result.limit = 40;
  result.detail = fmt::format("of which {:.1f} us declare the grammar ({:.0f} %)",
                              medians.second / repeats * 1e6, medians.second / medians.first * 100);
  results.push_back(result);
}

}  // namespace

std::vector<LimitResult> modifyLimits(const Effort& effort) {
  std::vector<LimitResult> results;
  writingLimits(effort, results);
  TakingHost host;
  const AdapterRegistration adapter(&host);
  manyGroups(effort, host, results);
  oneGroup(effort, host, results);
  return results;
}

}  // namespace vornwout
