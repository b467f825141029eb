#include "host/changes/object_selection.h"

#include <algorithm>
#include <map>
#include <string>
#include <string_view>

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

struct CommandMatch {
  LooseText name;
  bool isAnyCommand;
  bool isLast;
  int run;
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
  Selector(DocumentObject& root, const ModifyEvent& event, const ObjectSet& gone)
      : root_(root), event_(event), gone_(gone) {
    bool needsLastRuns = false;
    for (const CommandCondition& command : event.conditions.commands) {
      commands_.push_back(
          {LooseText(command.name, false), command.name.empty(), command.isLast, command.run});
      needsLastRuns = needsLastRuns || command.isLast;
    }
    for (const std::string& subtype : event.conditions.subtypes) {
      subtypes_.emplace_back(subtype, true);
    }
    if (needsLastRuns) countRuns(root);
  }

  std::vector<DocumentObject*> select() {
    walk(root_, true);
    return event_.conditions.instances.empty() ? std::move(found_) : instances();
  }

 private:
  bool isGone(const DocumentObject& object) const {
    return !gone_.empty() && gone_.contains(&object);
  }

  void countRuns(const DocumentObject& heading) {
    for (const DocumentObject& object : heading.children) {
      if (isGone(object)) continue;
      // Runs are those of one command however its name was written; few spellings are folded.
      const auto [last, isNew] = lastRuns_.try_emplace(object.command, nullptr);
      if (isNew) last->second = &lastRunsByName_[caseFoldedName(object.command)];
      *last->second = std::max(*last->second, object.run);
      countRuns(object);
    }
  }

  void walk(DocumentObject& heading, bool isShown) {
    for (DocumentObject& object : heading.children) {
      if (isGone(object)) continue;
      const bool isThisShown = isShown && object.visible;
      if (fits(object, isThisShown)) found_.push_back(&object);
      if (!object.children.empty()) walk(object, isThisShown);
    }
  }

  bool fits(const DocumentObject& object, bool isShown) const {
    if (!event_.types[static_cast<std::size_t>(object.type)]) return false;
    if (event_.conditions.visibleOnly && !isShown) return false;
    if (!commands_.empty() && !commandFits(object)) return false;
    if (!subtypes_.empty() &&
        std::none_of(subtypes_.begin(), subtypes_.end(),
                     [&](const LooseText& subtype) { return subtype.equals(object.subtype); })) {
      return false;
    }
    const std::vector<LabelCondition>& labels = event_.conditions.labels;
    return labels.empty() || std::any_of(labels.begin(), labels.end(), [&](const auto& label) {
             return labelFits(label, object.label);
           });
  }

  bool commandFits(const DocumentObject& object) const {
    if (object.command.empty()) return false;
    return std::any_of(commands_.begin(), commands_.end(), [&](const CommandMatch& command) {
      if (!command.isAnyCommand && !command.name.equals(object.command)) return false;
      if (command.isLast) return object.run == *lastRuns_.at(object.command);
      return command.run == 0 || command.run == object.run;
    });
  }

  /// In reading order, whatever the order of the positions, and each object once.
  std::vector<DocumentObject*> instances() const {
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

  DocumentObject& root_;
  const ModifyEvent& event_;
  const ObjectSet& gone_;
  std::vector<CommandMatch> commands_;
  std::vector<LooseText> subtypes_;
  std::map<std::string, int> lastRunsByName_;  ///< by the folded name
  std::map<std::string, int*> lastRuns_;       ///< in there, by the name as objects have it
  std::vector<DocumentObject*> found_;
};

}  // namespace

std::vector<DocumentObject*> selectObjects(DocumentObject& root, const ModifyEvent& event,
                                           const ObjectSet& gone) {
  return Selector(root, event, gone).select();
}

}  // namespace vornwout
