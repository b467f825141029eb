#include "host/build/manifest_reader.h"

#include <algorithm>

#include <fmt/format.h>

#include "host/build/build_error.h"
#include "platform/parser/value_shape.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

std::string foundType(const ManifestReader::Json& json) {
  if (json.is_null()) return "null";
  if (json.is_object()) return localized("an object");
  if (json.is_array()) return localized("a list");
  if (json.is_string()) return localized("a text");
  if (json.is_boolean()) return localized("true or false");
  return localized("a number");
}

std::string quotedList(const std::vector<std::string_view>& words) {
  std::string list;
  for (const std::string_view word : words) {
    list += fmt::format("{}\"{}\"", list.empty() ? "" : ", ", word);
  }
  return list;
}

/// What to do about a word that is none of those there are.
std::string remedyFor(std::string_view word, const std::vector<std::string_view>& words) {
  constexpr std::size_t kMaxSuggested = 200;
  const std::string guess = word.size() > kMaxSuggested ? std::string() : suggestion(word, words);
  const std::string known = localized("There are ^1.", quotedList(words));
  return guess.empty() ? known : guess + " " + known;
}

}  // namespace

void ManifestReader::refuseAt(const JsonPath& path, const std::string& message,
                              const std::string& help) const {
  // Of a path that leads nowhere, the part that leads somewhere.
  JsonPath existing = path;
  std::optional<std::size_t> offset = locateJsonValue(text_, existing);
  while (!offset && !existing.empty()) {
    existing.pop_back();
    offset = locateJsonValue(text_, existing);
  }
  throw BuildError(file_, placeInText(text_, offset.value_or(0)), message, help);
}

std::string ManifestReader::currentName() const {
  std::size_t step = path_.size();
  while (step > 0 && elements_[step - 1] > 0) --step;
  if (path_.empty()) return localized("The manifest");
  std::string name = step == 0 ? localized("the manifest") : fmt::format("\"{}\"", path_[step - 1]);
  for (; step < path_.size(); ++step) {
    const bool beginsTheSentence = step + 1 == path_.size();
    name = beginsTheSentence ? localized("Element ^1 of ^2", elements_[step], name)
                             : localized("element ^1 of ^2", elements_[step], name);
  }
  return name;
}

void ManifestReader::refuseType(const Json& json, std::string_view expected) const {
  refuse(localized("^1 is ^2, ^3 is expected.", currentName(), foundType(json), expected));
}

void ManifestReader::readMembers(const Json& json, const std::vector<Member>& members) {
  if (!json.is_object()) refuseType(json, localized("an object"));
  for (const auto& [name, value] : json.items()) {
    const bool isKnown =
        std::any_of(members.begin(), members.end(),
                    [&, &given = name](const Member& m) { return m.name == given; });
    if (isKnown) continue;
    std::vector<std::string_view> words;
    for (const Member& member : members) words.push_back(member.name);
    JsonPath path = path_;
    path.push_back(name);
    throw BuildError(file_, placeInText(text_, locateJsonName(text_, path).value_or(0)),
                     localized("\"^1\" is not known here.", name), remedyFor(name, words));
  }
  for (const Member& member : members) {
    const auto found = json.find(member.name);
    if (found == json.end()) {
      if (member.isRequired) refuse(localized("\"^1\" is missing here.", member.name));
      continue;
    }
    if (member.read) enter(std::string(member.name), [&] { member.read(*found); });
  }
}

void ManifestReader::readList(const Json& json, const std::function<void(const Json&)>& read) {
  if (!json.is_array()) refuseType(json, localized("a list"));
  for (std::size_t i = 0; i < json.size(); ++i) {
    enterAs(std::to_string(i), i + 1, [&] { read(json[i]); });
  }
}

void ManifestReader::readEntries(const Json& json,
                                 const std::function<void(const std::string&, const Json&)>& read) {
  if (!json.is_object()) refuseType(json, localized("an object"));
  for (const auto& [name, value] : json.items()) {
    enter(name, [&, &given = name, &inner = value] { read(given, inner); });
  }
}

std::string ManifestReader::text(const Json& json) const {
  if (!json.is_string()) refuseType(json, localized("a text"));
  return json.get<std::string>();
}

std::string ManifestReader::name(const Json& json) const {
  std::string value = text(json);
  if (value.empty()) refuse(localized("An empty text names nothing."));
  return value;
}

bool ManifestReader::flag(const Json& json) const {
  if (!json.is_boolean()) refuseType(json, localized("true or false"));
  return json.get<bool>();
}

double ManifestReader::number(const Json& json, double least, double most) const {
  if (!json.is_number()) refuseType(json, localized("a number"));
  const auto value = json.get<double>();
  if (!(value >= least && value <= most)) {
    refuse(localized("The number is not between ^1 and ^2.", least, most));
  }
  return value;
}

std::size_t ManifestReader::choice(const Json& json,
                                   std::initializer_list<std::string_view> words) const {
  const std::string word = text(json);
  const auto* const found = std::find(words.begin(), words.end(), word);
  if (found == words.end()) {
    refuse(localized("\"^1\" is not known here.", word), remedyFor(word, words));
  }
  return static_cast<std::size_t>(found - words.begin());
}

}  // namespace vornwout
