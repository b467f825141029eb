#include "host/changes/object_selection.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "host/document/object_index.h"
#include "host/store/member_name.h"
#include "platform/text/utf8.h"

namespace vornwout {
namespace {

bool isBlank(char c) { return c == ' ' || c == '\t'; }

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string withoutBlanks(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (!isBlank(c)) result += c;
  }
  return result;
}

/// A text that others are compared with, without regard to case and, where asked for, to blanks.
class LooseText {
 public:
  LooseText(std::string_view text, bool ignoresBlanks)
      : ignoresBlanks_(ignoresBlanks), folded_(fold(text)) {}

  bool equals(std::string_view other) const {
    // Names are ASCII nearly always, and asked for once for every object.
    std::size_t at = 0;
    for (const char c : other) {
      if (static_cast<unsigned char>(c) >= 0x80) return fold(other) == folded_;
      if (ignoresBlanks_ && isBlank(c)) continue;
      if (at == folded_.size() || folded_[at] != lower(c)) return false;
      ++at;
    }
    return at == folded_.size();
  }

 private:
  std::string fold(std::string_view text) const {
    return caseFoldedName(ignoresBlanks_ ? withoutBlanks(text) : std::string(text));
  }

  bool ignoresBlanks_;
  std::string folded_;
};

bool labelFits(const LabelCondition& condition, std::string_view label) {
  switch (condition.match) {
    case LabelCondition::Match::kExact:
      return label == condition.text;
    case LabelCondition::Match::kBegins:
      return label.starts_with(condition.text);
    case LabelCondition::Match::kEnds:
      return label.ends_with(condition.text);
    case LabelCondition::Match::kContains:
      return label.find(condition.text) != std::string_view::npos;
  }
  return false;
}

class Selector {
 public:
  Selector(Document& document, const ModifyEvent& event, const ObjectSet& gone)
      : index_(document.index()), root_(document.indexedRoot()), event_(event), gone_(gone) {}

  std::vector<DocumentObject*> select();

 private:
  /// What a condition for commands says of a kind of objects.
  struct Runs {
    bool isLast;
    int run;  ///< 0 for any
  };
  /// What the conditions say of a kind of objects.
  struct KindFit {
    bool fits = false;
    bool fitsAnyRun = true;
    std::vector<Runs> runs;  ///< alternatives, unless any run fits
    int lastRun = 0;
  };
  /// A heading that objects stand below.
  struct Above {
    std::uint32_t number;
    DocumentObject* heading;
    bool isShown;
    bool isGone;
  };

  bool isGone(const DocumentObject& object) const {
    return !gone_.empty() && gone_.contains(&object);
  }

  void judgeKinds();
  KindFit judged(const ObjectIndex::Kind& kind) const;
  void findLastRuns();
  bool runFits(const KindFit& kind, int run) const;
  const Above& above(std::uint32_t heading);
  Above found(std::uint32_t heading) const;
  bool labelFitsAny(const std::string& label) const;
  std::vector<DocumentObject*> instances() const;

  const ObjectIndex& index_;
  DocumentObject& root_;
  const ModifyEvent& event_;
  const ObjectSet& gone_;
  std::vector<std::pair<LooseText, const CommandCondition*>> commands_;
  std::vector<LooseText> subtypes_;
  std::vector<KindFit> kinds_;
  std::optional<Above> above_;
  std::vector<DocumentObject*> found_;
};

void Selector::judgeKinds() {
  for (const CommandCondition& command : event_.conditions.commands) {
    commands_.emplace_back(LooseText(command.name, false), &command);
  }
  for (const std::string& subtype : event_.conditions.subtypes) {
    subtypes_.emplace_back(subtype, true);
  }
  for (const ObjectIndex::Kind& kind : index_.kinds()) kinds_.push_back(judged(kind));
  const auto& commands = event_.conditions.commands;
  if (std::any_of(commands.begin(), commands.end(), [](const auto& c) { return c.isLast; })) {
    findLastRuns();
  }
}

Selector::KindFit Selector::judged(const ObjectIndex::Kind& kind) const {
  KindFit fit;
  if (!event_.types[static_cast<std::size_t>(kind.type)]) return fit;
  fit.fits = subtypes_.empty() ||
             std::any_of(subtypes_.begin(), subtypes_.end(),
                         [&](const LooseText& subtype) { return subtype.equals(kind.subtype); });
  if (!fit.fits || commands_.empty()) return fit;
  fit.fitsAnyRun = false;
  // What no command made meets no condition for commands.
  for (const auto& [name, command] : commands_) {
    if (kind.command.empty() || !(command->name.empty() || name.equals(kind.command))) continue;
    if (!command->isLast && command->run == 0) fit.fitsAnyRun = true;
    fit.runs.push_back({command->isLast, command->run});
  }
  fit.fits = !fit.runs.empty();
  return fit;
}

/// Runs are those of one command however its name was written.
void Selector::findLastRuns() {
  std::map<std::string, int> lastRuns;
  std::vector<int*> lastOfKinds;
  for (const ObjectIndex::Kind& kind : index_.kinds()) {
    lastOfKinds.push_back(&lastRuns[caseFoldedName(kind.command)]);
  }
  const std::vector<std::uint32_t>& kindOfObjects = index_.kindOfObjects();
  for (std::size_t i = 0; i < kindOfObjects.size(); ++i) {
    const ObjectIndex::Place& place = index_.placeOf(i);
    int& last = *lastOfKinds[kindOfObjects[i]];
    if (place.run <= last) continue;
    if (!gone_.empty()) {
      const Above& headings = above(place.heading);
      if (headings.isGone || isGone(headings.heading->children[place.position])) continue;
    }
    last = place.run;
  }
  for (std::size_t i = 0; i < kinds_.size(); ++i) kinds_[i].lastRun = *lastOfKinds[i];
}

bool Selector::runFits(const KindFit& kind, int run) const {
  return kind.fitsAnyRun || std::any_of(kind.runs.begin(), kind.runs.end(), [&](const Runs& runs) {
           return run == (runs.isLast ? kind.lastRun : runs.run);
         });
}

const Selector::Above& Selector::above(std::uint32_t heading) {
  // Objects that follow each other mostly stand below the same heading.
  if (!above_ || above_->number != heading) above_ = found(heading);
  return *above_;
}

Selector::Above Selector::found(std::uint32_t heading) const {
  if (heading == ObjectIndex::kRoot) return {heading, &root_, true, false};
  const ObjectIndex::Place& place = index_.placeOf(heading);
  const Above higher = found(place.heading);
  DocumentObject& object = higher.heading->children[place.position];
  return {heading, &object, higher.isShown && object.visible, higher.isGone || isGone(object)};
}

bool Selector::labelFitsAny(const std::string& label) const {
  const std::vector<LabelCondition>& labels = event_.conditions.labels;
  return labels.empty() || std::any_of(labels.begin(), labels.end(), [&](const auto& condition) {
           return labelFits(condition, label);
         });
}

std::vector<DocumentObject*> Selector::select() {
  judgeKinds();
  const std::vector<std::uint32_t>& kindOfObjects = index_.kindOfObjects();
  for (std::size_t i = 0; i < kindOfObjects.size(); ++i) {
    const KindFit& kind = kinds_[kindOfObjects[i]];
    if (!kind.fits) continue;
    const ObjectIndex::Place& place = index_.placeOf(i);
    if (!runFits(kind, place.run)) continue;
    const Above& headings = above(place.heading);
    DocumentObject& object = headings.heading->children[place.position];
    if (headings.isGone || isGone(object)) continue;
    if (event_.conditions.visibleOnly && !(headings.isShown && object.visible)) continue;
    if (labelFitsAny(object.label)) found_.push_back(&object);
  }
  return event_.conditions.instances.empty() ? std::move(found_) : instances();
}

/// In reading order, whatever the order of the positions, and each object once.
std::vector<DocumentObject*> Selector::instances() const {
  std::vector<bool> isWanted(found_.size(), false);
  for (const int instance : event_.conditions.instances) {
    const std::size_t index =
        instance == 0 ? found_.size() - 1 : static_cast<std::size_t>(instance) - 1;
    if (index < found_.size()) isWanted[index] = true;
  }
  std::vector<DocumentObject*> wanted;
  for (std::size_t i = 0; i < found_.size(); ++i) {
    if (isWanted[i]) wanted.push_back(found_[i]);
  }
  return wanted;
}

}  // namespace

std::vector<DocumentObject*> selectObjects(Document& document, const ModifyEvent& event,
                                           const ObjectSet& gone) {
  return Selector(document, event, gone).select();
}

}  // namespace vornwout
