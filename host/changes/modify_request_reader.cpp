#include "host/changes/modify_request_reader.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <map>
#include <sstream>
#include <string_view>
#include <utility>

#include <fmt/format.h>
#include <pugixml.hpp>

#include "host/changes/change_notes.h"
#include "host/changes/request_xml.h"
#include "host/store/content_names.h"
#include "platform/strings/localized.h"
#include "platform/text/display_width.h"
#include "platform/text/encoding.h"
#include "platform/text/shortened_text.h"
#include "platform/text/utf8.h"

namespace vornwout {
namespace {

struct TypeAttribute {
  std::string_view name;
  ObjectType type;
};

/// The outline's headings have two names: what a command writes as a heading, and what the outline
/// shows as one, are the same objects here.
constexpr std::array kTypeAttributes = {
    TypeAttribute{"charts", ObjectType::kChart},
    TypeAttribute{"headings", ObjectType::kHeading},
    TypeAttribute{"logs", ObjectType::kLog},
    TypeAttribute{"models", ObjectType::kModel},
    TypeAttribute{"tables", ObjectType::kTable},
    TypeAttribute{"texts", ObjectType::kText},
    TypeAttribute{"trees", ObjectType::kTree},
    TypeAttribute{"warnings", ObjectType::kWarning},
    TypeAttribute{"outlineheaders", ObjectType::kHeading},
    TypeAttribute{"notes", ObjectType::kNotes},
    TypeAttribute{"unknown", ObjectType::kUnknown},
    TypeAttribute{"other", ObjectType::kOther},
    TypeAttribute{"pagetitles", ObjectType::kPageTitle},
};

struct IndexStyleName {
  std::string_view name;
  IndexChange::Style style;
};

constexpr std::array kIndexStyles = {
    IndexStyleName{"number", IndexChange::Style::kNumber},
    IndexStyleName{"letter", IndexChange::Style::kLetter},
    IndexStyleName{"letterCAP", IndexChange::Style::kCapitalLetter},
    IndexStyleName{"roman", IndexChange::Style::kRoman},
    IndexStyleName{"romanCap", IndexChange::Style::kCapitalRoman},
};

struct CellKindName {
  std::string_view name;
  bool CellsChange::*flag;
};

constexpr std::array kCellKinds = {
    CellKindName{"correlation", &CellsChange::correlation},
    CellKindName{"count", &CellsChange::count},
    CellKindName{"mean", &CellsChange::mean},
    CellKindName{"median", &CellsChange::median},
    CellKindName{"percent", &CellsChange::percent},
    CellKindName{"residual", &CellsChange::residual},
    CellKindName{"body", &CellsChange::body},
    CellKindName{"significance", &CellsChange::significance},
    CellKindName{"headers", &CellsChange::headers},
    CellKindName{"footnotes", &CellsChange::footnotes},
    CellKindName{"title", &CellsChange::title},
    CellKindName{"caption", &CellsChange::caption},
};

constexpr double kMaxPoints = 2000;
constexpr double kMaxPercent = 400;
constexpr double kMaxFontSize = 1000;
constexpr int kMostNumber = std::numeric_limits<int>::max();
constexpr int kNameColumns = 16;  ///< of an attribute that no command writes

/// Resolves the five entities that the writers make, once; nothing else is one.
std::string withoutEscapes(std::string text) {
  constexpr std::array<std::pair<std::string_view, char>, 5> kEntities = {
      {{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}}};
  std::size_t written = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::string_view rest = std::string_view(text).substr(at);
    const auto* const entity =
        std::find_if(kEntities.begin(), kEntities.end(),
                     [&](const auto& known) { return rest.starts_with(known.first); });
    const bool isEntity = entity != kEntities.end();
    text[written++] = isEntity ? entity->second : text[at];
    at += isEntity ? entity->first.size() : 1;
  }
  text.resize(written);
  return text;
}

std::string placeOf(pugi::xml_node node) { return localized("at byte ^1: ", node.offset_debug()); }

/// An attribute with what an error about it has to say.
class Attribute {
 public:
  Attribute(pugi::xml_node element, pugi::xml_attribute attribute)
      : element_(element), attribute_(attribute) {}

  std::string_view name() const { return attribute_.name(); }
  std::string_view value() const { return attribute_.value(); }

  // Which texts are escaped, and in which encoding they come, goes by the attribute: a text that
  // happens to look like the other kind is not.

  /// A text in UTF-8 that is as its user wrote it.
  std::string plainText() const {
    if (!isValidUtf8(value())) refuse(localized("not UTF-8"));
    return std::string(value());
  }
  std::string escapedText() const { return withoutEscapes(plainText()); }
  /// A text in the job's encoding.
  std::string jobText() const { return currentToUtf8(value()); }
  std::string escapedJobText() const { return withoutEscapes(jobText()); }

  /// "<name> of <element> is "<value>", <what>", without the element where there is no room for it.
  [[noreturn]] void refuse(std::string_view what) const {
    constexpr int kMostOfValue = 8;
    const std::string place = placeOf(element_);
    const std::string known = textHead(name(), kNameColumns);
    const std::string whole = localized("^1 of ^2 is \"{}\", ^3", known, element_.name(), what);
    const std::string shown = textHead(shownBytes(value()), kMostOfValue);
    const int room = kReasonColumns - displayWidth(place + whole) + 2;
    refuseAt(place,
             displayWidth(shown) <= room ? whole : localized("^1 is \"{}\", ^2", known, what),
             value());
  }
  [[noreturn]] void refuseUnknown() const {
    refuseAt(placeOf(element_), localized("^1 has an unknown attribute {}", element_.name()),
             name());
  }
  [[noreturn]] void refuseRepetition() const {
    refuseAt(placeOf(element_), localized("{} of ^1 stands there twice", element_.name()), name());
  }

  bool flag() const {
    if (value() == "true") return true;
    if (value() == "false") return false;
    refuse(localized("not true or false"));
  }
  /// An attribute that is never written as false.
  bool mark() const {
    if (value() != "true") refuse(localized("not true"));
    return true;
  }
  int integer(int min, int max = kMostNumber) const {
    int number = 0;
    const std::string_view digits = value();
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    if (stop != end || error == std::errc::invalid_argument) refuse(localized("no integer"));
    const bool isTooLarge = error != std::errc() ? !digits.starts_with('-') : number > max;
    if (isTooLarge) refuse(localized("at most ^1 is allowed", max));
    if (error != std::errc() || number < min) refuse(localized("at least ^1 is allowed", min));
    return number;
  }
  double number() const {
    double result = 0;
    const std::string_view digits = value();
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, result);
    if (stop != end || error != std::errc() || !std::isfinite(result))
      refuse(localized("no number"));
    return result;
  }
  /// A number above 0.
  double positiveNumber(double max) const {
    const double result = number();
    if (result <= 0) refuse(localized("only above 0 is allowed"));
    if (result > max) refuse(localized("at most ^1 is allowed", max));
    return result;
  }

 private:
  pugi::xml_node element_;
  pugi::xml_attribute attribute_;
};

/// The writers repeat conditions, and types that are excepted twice.
bool mayRepeat(const Attribute& attribute, std::string_view valueBefore) {
  if (attribute.name() == "selectCondition") return true;
  return attribute.value() == "false" && valueBefore == "false" &&
         std::any_of(kTypeAttributes.begin(), kTypeAttributes.end(),
                     [&](const auto& known) { return known.name == attribute.name(); });
}

template <typename Visit>
void forEachAttribute(pugi::xml_node element, const Visit& visit) {
  std::map<std::string_view, std::string_view> values;
  for (const pugi::xml_attribute item : element.attributes()) {
    const Attribute attribute(element, item);
    const auto [before, isNew] = values.try_emplace(attribute.name(), attribute.value());
    if (!isNew && !mayRepeat(attribute, before->second)) {
      attribute.refuseRepetition();
    }
    visit(attribute);
  }
}

[[noreturn]] void refuseElement(pugi::xml_node parent, pugi::xml_node element) {
  const bool isElement = element.type() == pugi::node_element;
  refuseAt(placeOf(element),
           isElement ? localized("^1 must not hold an element {}", parent.name())
                     : localized("^1 must not hold a text", parent.name()),
           isElement ? element.name() : "");
}

/// For attributes that are always written.
void expectAttributes(pugi::xml_node element, std::initializer_list<const char*> names) {
  for (const char* const name : names) {
    if (!element.attribute(name)) {
      refuseAt(placeOf(element), localized("^1 has no ^2", element.name(), name));
    }
  }
}

/// For attributes of which one says what the other would say, too.
void expectNotBoth(pugi::xml_node element, const char* one, const char* other) {
  if (element.attribute(one) && element.attribute(other)) {
    refuseAt(placeOf(element), localized("^1 has both ^2 and ^3", element.name(), one, other));
  }
}

void expectOneOf(pugi::xml_node element, const char* one, const char* other) {
  expectNotBoth(element, one, other);
  if (!element.attribute(one) && !element.attribute(other)) {
    refuseAt(placeOf(element), localized("^1 has neither ^2 nor ^3", element.name(), one, other));
  }
}

/// For elements that hold nothing.
void expectEmpty(pugi::xml_node element) {
  if (const pugi::xml_node child = element.first_child()) refuseElement(element, child);
}

void expectNoAttributes(pugi::xml_node element) {
  forEachAttribute(element, [](const Attribute& attribute) { attribute.refuseUnknown(); });
}

/// "#rrggbb" of three components that come one by one.
class ColorReader {
 public:
  /// Of the attributes whose names begin with `prefix`.
  explicit ColorReader(std::string_view prefix) : prefix_(prefix) {}

  /// True when the attribute was a component.
  bool take(const Attribute& attribute) {
    if (!attribute.name().starts_with(prefix_)) return false;
    const std::string_view component = attribute.name().substr(prefix_.size());
    int* target = component == "Red"     ? &red_
                  : component == "Green" ? &green_
                  : component == "Blue"  ? &blue_
                                         : nullptr;
    if (target == nullptr) return false;
    constexpr int kMostComponent = 255;
    *target = attribute.integer(0, kMostComponent);
    return true;
  }
  /// Empty without any component. One or two are no color.
  std::string color(pugi::xml_node element) const {
    if (red_ < 0 && green_ < 0 && blue_ < 0) return {};
    for (const auto& [name, value] : {std::pair("Red", red_), {"Green", green_}, {"Blue", blue_}}) {
      if (value >= 0) continue;
      refuseAt(placeOf(element), localized("^1 has no ^2^3", element.name(), prefix_, name));
    }
    return fmt::format("#{:02x}{:02x}{:02x}", red_, green_, blue_);
  }

 private:
  std::string_view prefix_;
  int red_ = -1;
  int green_ = -1;
  int blue_ = -1;
};

CommandCondition readCommand(pugi::xml_node element) {
  CommandCondition condition;
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (attribute.name() == "commandName") {
      condition.name = attribute.plainText();
    } else if (attribute.name() == "last") {
      condition.isLast = attribute.mark();
    } else if (attribute.name() == "instance") {
      condition.run = attribute.integer(1);
    } else {
      attribute.refuseUnknown();
    }
  });
  expectNotBoth(element, "last", "instance");
  expectEmpty(element);
  return condition;
}

LabelCondition readLabel(pugi::xml_node element) {
  LabelCondition condition;
  int matches = 0;
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (attribute.name() == "expression") {
      condition.text = attribute.plainText();
      return;
    }
    ++matches;
    if (attribute.name() == "exact" && attribute.mark()) {
      condition.match = LabelCondition::Match::kExact;
    } else if (attribute.name() == "begins" && attribute.mark()) {
      condition.match = LabelCondition::Match::kBegins;
    } else if (attribute.name() == "ends" && attribute.mark()) {
      condition.match = LabelCondition::Match::kEnds;
    } else if (attribute.name() == "contains" && attribute.mark()) {
      condition.match = LabelCondition::Match::kContains;
    } else {
      attribute.refuseUnknown();
    }
  });
  expectAttributes(element, {"expression"});
  if (matches != 1) refuseAt(placeOf(element), localized("label has not just one way to match"));
  expectEmpty(element);
  return condition;
}

int readInstance(pugi::xml_node element) {
  int instance = 0;
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (attribute.name() == "instance") {
      instance = attribute.integer(1);
    } else if (attribute.name() != "last" || !attribute.mark()) {
      attribute.refuseUnknown();
    }
  });
  expectOneOf(element, "instance", "last");
  expectEmpty(element);
  return instance;
}

std::string readSubtype(pugi::xml_node element) {
  std::string subtype;
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (attribute.name() != "subtype") attribute.refuseUnknown();
    subtype = attribute.plainText();
  });
  expectAttributes(element, {"subtype"});
  expectEmpty(element);
  return subtype;
}

IndexChange readIndex(pugi::xml_node element) {
  IndexChange change;
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (attribute.name() == "type") {
      const auto* style = std::find_if(
          kIndexStyles.begin(), kIndexStyles.end(),
          [&](const IndexStyleName& known) { return known.name == attribute.value(); });
      if (style == kIndexStyles.end()) attribute.refuse(localized("no type of an index"));
      change.style = style->style;
    } else if (attribute.name() == "indexStart") {
      change.start = attribute.integer(std::numeric_limits<int>::min());
    } else {
      attribute.refuseUnknown();
    }
  });
  expectAttributes(element, {"type", "indexStart"});
  expectEmpty(element);
  return change;
}

/// Makes the values of a part that is read as it stands fit for double quotes.
void quoteValues(pugi::xml_node part) {
  struct Quoter : pugi::xml_tree_walker {
    bool for_each(pugi::xml_node& node) override {
      for (pugi::xml_attribute attribute : node.attributes()) {
        std::string value = attribute.value();
        for (std::size_t at = 0; (at = value.find('"', at)) != std::string::npos;) {
          value.replace(at, 1, "&quot;");
        }
        if (value != attribute.value()) attribute.set_value(value.c_str());
      }
      return true;
    }
  } quoter;
  part.traverse(quoter);
}

/// The one element that an element holds, as XML. A file that ends its own element, or this one,
/// and goes on with others would pass for what the command says.
std::string innerXml(pugi::xml_node element, const std::string& name) {
  expectNoAttributes(element);
  const pugi::xml_node root = element.first_child();
  if (root.type() != pugi::node_element || root.next_sibling()) {
    refuseAt(inFile(name), localized("there is not just one element"));
  }
  quoteValues(element);
  std::ostringstream inner;
  root.print(inner, "", pugi::format_raw | pugi::format_no_declaration | pugi::format_no_escapes);
  return inner.str();
}

GraphChange readGraph(pugi::xml_node element) {
  GraphChange change;
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (attribute.name() != "styleSheet") attribute.refuseUnknown();
    change.styleSheet = attribute.plainText();
  });
  for (const pugi::xml_node child : element.children()) {
    if (std::strcmp(child.name(), "chartTemplate") != 0) refuseElement(element, child);
    const std::size_t number = change.chartTemplates.size() + 1;
    change.chartTemplates.push_back(innerXml(child, chartTemplateName(number)));
  }
  return change;
}

PropertiesChange readProperties(pugi::xml_node element) {
  PropertiesChange change;
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (attribute.name() == "visible") {
      if (attribute.value() == "yes") {
        change.visible = true;
      } else if (attribute.value() == "no") {
        change.visible = false;
      } else if (attribute.value() != "asis") {
        attribute.refuse(localized("none of yes, no and asis"));
      }
    } else if (attribute.name() == "sizeWidth") {
      change.width = attribute.positiveNumber(kMaxPoints);
    } else if (attribute.name() == "sizeHeight") {
      change.height = attribute.positiveNumber(kMaxPoints);
    } else if (attribute.name() == "sizeWidthPCT") {
      change.widthPercent = attribute.positiveNumber(kMaxPercent);
    } else if (attribute.name() == "sizeHeightPCT") {
      change.heightPercent = attribute.positiveNumber(kMaxPercent);
    } else if (attribute.name() == "label") {
      change.label = attribute.escapedText();
    } else {
      attribute.refuseUnknown();
    }
  });
  expectEmpty(element);
  return change;
}

LayerChoice readLayer(pugi::xml_node element) {
  LayerChoice choice;
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (attribute.name() == "layer") {
      choice.layer = attribute.escapedJobText();
    } else if (attribute.name() == "layerInt") {
      choice.layerPosition = attribute.integer(-1);
    } else if (attribute.name() == "category") {
      choice.category = attribute.escapedJobText();
    } else if (attribute.name() == "categoryInt") {
      choice.categoryPosition = attribute.integer(-1);
    } else {
      attribute.refuseUnknown();
    }
  });
  expectOneOf(element, "layer", "layerInt");
  expectOneOf(element, "category", "categoryInt");
  expectEmpty(element);
  return choice;
}

TableChange readTable(pugi::xml_node element) {
  TableChange change;
  const auto sort = [&]() -> SortChange& {
    return change.sort ? *change.sort : change.sort.emplace();
  };
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (attribute.name() == "title") {
      change.title = attribute.escapedJobText();
    } else if (attribute.name() == "summary") {
      change.summary = attribute.escapedJobText();
    } else if (attribute.name() == "transpose") {
      change.transposes = attribute.mark();
    } else if (attribute.name() == "sortLabel") {
      sort().label = attribute.escapedJobText();
    } else if (attribute.name() == "sortPosition") {
      sort().position = attribute.integer(std::numeric_limits<int>::min());
    } else if (attribute.name() == "ascending") {
      sort().isAscending = attribute.flag();
    } else if (attribute.name() == "format") {
      change.format = attribute.jobText();
    } else if (attribute.name() == "defaultTableLook") {
      change.usesDefaultLook = attribute.mark();
    } else {
      attribute.refuseUnknown();
    }
  });
  if (change.sort) {
    expectOneOf(element, "sortLabel", "sortPosition");
    expectAttributes(element, {"ascending"});
  }
  for (const pugi::xml_node child : element.children()) {
    // The look comes last, and there is one.
    const bool isLayer = std::strcmp(child.name(), "layer") == 0;
    if ((!isLayer && std::strcmp(child.name(), "tableLook") != 0) || !change.look.empty()) {
      refuseElement(element, child);
    }
    if (isLayer) {
      change.layers.push_back(readLayer(child));
    } else {
      change.look = innerXml(child, localized(kTableLookName));
    }
  }
  return change;
}

std::vector<std::string> parts(const std::string& joined) {
  std::vector<std::string> all;
  for (std::size_t begin = 0; begin <= joined.size();) {
    const std::size_t end = std::min(joined.find(';', begin), joined.size());
    all.push_back(joined.substr(begin, end - begin));
    begin = end + 1;
  }
  return all;
}

/// The attributes that say which cells; false for one that does not.
bool readCellSelection(const Attribute& attribute, CellsChange& change) {
  for (const CellKindName& kind : kCellKinds) {
    if (attribute.name() != kind.name) continue;
    change.*kind.flag = attribute.mark();
    return true;
  }
  if (attribute.name() == "selectExpression") {
    change.labels = parts(attribute.escapedJobText());
  } else if (attribute.name() == "selectPosition") {
    for (const std::string& position : parts(std::string(attribute.value()))) {
      int number = 0;
      const auto read = std::from_chars(position.data(), position.data() + position.size(), number);
      if (read.ec != std::errc() || read.ptr != position.data() + position.size()) {
        attribute.refuse(localized("no list of positions"));
      }
      change.positions.push_back(number);
    }
  } else if (attribute.name() == "selectColumns") {
    change.dimension = attribute.value() == "both" ? CellsChange::Dimension::kBoth
                       : attribute.flag()          ? CellsChange::Dimension::kColumns
                                                   : CellsChange::Dimension::kRows;
  } else if (attribute.name() == "selectCondition") {
    change.conditions.push_back(attribute.escapedJobText());
  } else {
    return false;
  }
  return true;
}

CellsChange readCells(pugi::xml_node element) {
  CellsChange change;
  ColorReader textColor("text");
  ColorReader backgroundColor("background");
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (readCellSelection(attribute, change) || textColor.take(attribute) ||
        backgroundColor.take(attribute)) {
      return;
    }
    if (attribute.name() == "revertToDefault") {
      change.revertsToDefault = attribute.mark();
    } else if (attribute.name() == "bold") {
      change.bold = attribute.flag();
    } else if (attribute.name() == "italic") {
      change.italic = attribute.flag();
    } else if (attribute.name() == "underline") {
      change.underline = attribute.flag();
    } else if (attribute.name() == "columnWidth") {
      change.columnWidth = attribute.integer(1, kMaxColumnWidth);
    } else if (attribute.name() == "fontSize") {
      change.fontSize = attribute.positiveNumber(kMaxFontSize);
    } else if (attribute.name() == "applyTo") {
      change.applyTo = attribute.plainText();
    } else if (attribute.name() == "format") {
      change.format = attribute.jobText();
    } else if (attribute.name() == "font") {
      change.font = attribute.jobText();
    } else if (attribute.name() == "replace") {
      change.replacement = attribute.jobText();
    } else if (attribute.name() == "replaceValue") {
      change.replacementValue = attribute.number();
    } else {
      attribute.refuseUnknown();
    }
  });
  expectAttributes(element, {"selectColumns"});
  expectNotBoth(element, "replace", "replaceValue");
  change.textColor = textColor.color(element);
  change.backgroundColor = backgroundColor.color(element);
  expectEmpty(element);
  return change;
}

TextChange readText(pugi::xml_node element) {
  TextChange change;
  ColorReader color("text");
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (color.take(attribute)) return;
    if (attribute.name() == "expression") {
      change.text = attribute.escapedText();
    } else if (attribute.name() == "fontFamily") {
      change.font = attribute.plainText();
    } else if (attribute.name() == "fontSize") {
      change.fontSize = attribute.positiveNumber(kMaxFontSize);
    } else if (attribute.name() == "fontBold") {
      change.bold = attribute.flag();
    } else if (attribute.name() == "fontItalic") {
      change.italic = attribute.flag();
    } else if (attribute.name() == "fontUnderline") {
      change.underline = attribute.flag();
    } else {
      attribute.refuseUnknown();
    }
  });
  change.color = color.color(element);
  expectEmpty(element);
  return change;
}

void readTypes(pugi::xml_node element, ModifyEvent& event) {
  forEachAttribute(element, [&](const Attribute& attribute) {
    if (attribute.name() == "all") {
      event.types.fill(attribute.mark());
      return;
    }
    if (attribute.name() == "visibleOnly") {
      event.conditions.visibleOnly = attribute.mark();
      return;
    }
    const auto* type =
        std::find_if(kTypeAttributes.begin(), kTypeAttributes.end(),
                     [&](const TypeAttribute& known) { return known.name == attribute.name(); });
    if (type == kTypeAttributes.end()) attribute.refuseUnknown();
    event.types[static_cast<std::size_t>(type->type)] = attribute.flag();
  });
}

/// What stands in a modifyEvent, in its order.
struct EventElement {
  std::string_view name;
  bool mayRepeat;
};

constexpr std::array kEventElements = {
    EventElement{"command", true},      EventElement{"subtype", true},
    EventElement{"label", true},        EventElement{"instance", true},
    EventElement{"indexObject", false}, EventElement{"deleteObject", false},
    EventElement{"modifyGraph", false}, EventElement{"objectProperties", false},
    EventElement{"modifyTable", false}, EventElement{"tableCells", true},
    EventElement{"modifyText", false},
};

/// Holds elements to the order of the format: what stands out of it comes from no command.
class EventOrder {
 public:
  void expect(pugi::xml_node element, pugi::xml_node child) {
    const std::string_view name = child.name();
    const auto* const known = std::find_if(kEventElements.begin(), kEventElements.end(),
                                           [&](const auto& one) { return one.name == name; });
    if (known == kEventElements.end()) refuseElement(element, child);
    if (known < next_) {
      refuseAt(placeOf(child), localized("^1 is out of order or doubled", name));
    }
    next_ = known->mayRepeat ? known : known + 1;
  }

 private:
  const EventElement* next_ = kEventElements.begin();
};

ModifyEvent readEvent(pugi::xml_node element) {
  ModifyEvent event;
  readTypes(element, event);
  EventOrder order;
  for (const pugi::xml_node child : element.children()) {
    order.expect(element, child);
    const std::string_view name = child.name();
    if (name == "command") {
      event.conditions.commands.push_back(readCommand(child));
    } else if (name == "subtype") {
      event.conditions.subtypes.push_back(readSubtype(child));
    } else if (name == "label") {
      event.conditions.labels.push_back(readLabel(child));
    } else if (name == "instance") {
      event.conditions.instances.push_back(readInstance(child));
    } else if (name == "indexObject") {
      event.index = readIndex(child);
    } else if (name == "deleteObject") {
      expectNoAttributes(child);
      expectEmpty(child);
      event.deletes = true;
    } else if (name == "modifyGraph") {
      event.graph = readGraph(child);
    } else if (name == "objectProperties") {
      event.properties = readProperties(child);
    } else if (name == "modifyTable") {
      event.table = readTable(child);
    } else if (name == "tableCells") {
      event.cells.push_back(readCells(child));
    } else {
      event.text = readText(child);
    }
  }
  return event;
}

}  // namespace

ModifyRequest readModifyRequest(const std::string& xml) {
  pugi::xml_document document;
  parseRequest(xml, document);
  const pugi::xml_node root = document.document_element();
  if (std::strcmp(root.name(), "modifyOutputObject") != 0) {
    throw ChangeError(localized("what came is no modify document"));
  }
  ModifyRequest request;
  forEachAttribute(root, [&](const Attribute& attribute) {
    if (attribute.name() == "documentName") {
      request.documentName = attribute.escapedText();
    } else if (attribute.name() != "debug" || !attribute.mark()) {
      attribute.refuseUnknown();
    }
  });
  expectAttributes(root, {"documentName"});
  for (const pugi::xml_node child : root.children()) {
    if (std::strcmp(child.name(), "modifyEvent") != 0) refuseElement(root, child);
    request.events.push_back(readEvent(child));
  }
  return request;
}

}  // namespace vornwout
